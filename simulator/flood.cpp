// Pacing the flood by the client or by the clock.
#include <simulator/flood_p.h>

#include <simulator/wire_p.h>

#include <algorithm>
#include <limits>

namespace simulator {

namespace {
constexpr qint64 block_size = 64 * 1024;
constexpr qint64 full_backlog = 256 * 1024; // no more is added to that; the client has to read first
} // namespace

Flood::Flood(Wire& wire) : wire_(wire)
{
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { tick(); });
    connect(&wire_, &Wire::sent, this, [this] {
        if (faults_.flood && faults_.flood_rate == 0 && !is_over() && !timer_.isActive())
            timer_.start(0);
    });
}

void Flood::set_faults(const Faults& faults)
{
    faults_ = faults;
    timer_.stop();
    if (!faults_.flood || is_over())
        return;
    const QByteArray report = faults_.flood_report.isEmpty() ? default_flood_report() : faults_.flood_report;
    block_reports_ = static_cast<quint64>(std::max<qint64>(1, block_size / report.size()));
    block_ = report.repeated(static_cast<int>(block_reports_));
    sent_in_run_ = 0;
    clock_.start();
    timer_.start(faults_.flood_rate == 0 ? 0 : static_cast<int>(std::max(1u, 1000u / faults_.flood_rate)));
}

void Flood::tick()
{
    if (faults_.flood_rate == 0)
        fill();
    else
        catch_up();
    if (is_over())
        timer_.stop();
}

// A few blocks at a time, so that other clients have their turn; a client whose backlog is full starts
// the timer again when it has taken something.
void Flood::fill()
{
    for (int i = 0; i < full_backlog / block_size && wire_.backlog() < full_backlog; ++i)
        send(block_reports_);
    if (wire_.backlog() >= full_backlog)
        timer_.stop();
}

// Reports that a client had no room for are left out, not made up for.
void Flood::catch_up()
{
    const quint64 due = static_cast<quint64>(clock_.nsecsElapsed() / 1000) * faults_.flood_rate / 1'000'000;
    if (wire_.backlog() < full_backlog)
        send(due - sent_in_run_);
    sent_in_run_ = due;
    wire_.flush();
}

bool Flood::is_over() const
{
    return left() == 0 || wire_.is_ended();
}

quint64 Flood::left() const
{
    return faults_.flood_count == 0 ? std::numeric_limits<quint64>::max()
                                    : faults_.flood_count - std::min(sent_, faults_.flood_count);
}

void Flood::send(quint64 reports)
{
    const quint64 count = std::min({reports, block_reports_, left()});
    const auto bytes = static_cast<int>(static_cast<quint64>(block_.size()) / block_reports_ * count);
    if (count == 0)
        return;
    sent_ += count;
    wire_.write(count == block_reports_ ? block_ : block_.left(bytes));
}

} // namespace simulator
