// From the time that has gone by to the fields that are due.
#include <simulator/field_clock_p.h>

#include <algorithm>

namespace simulator {

namespace {
constexpr quint64 most_at_once = 500; // a server that was held up for longer does not hurry after its time
}

FieldClock::FieldClock(double pace, FieldRate rate, Listener listener)
    : pace_(pace), listener_(std::move(listener))
{
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout([this] { tick(); });
    set_rate(rate);
}

void FieldClock::set_rate(FieldRate rate)
{
    const double seconds = rate.seconds / (rate.fields * std::max(pace_, 1e-6));
    length_ =
        std::max(std::chrono::nanoseconds(1), std::chrono::nanoseconds(static_cast<qint64>(seconds * 1e9)));
    beginning_ = Clock::now();
    passed_ = 0;
    if (timer_.isActive())
        sleep_until_due();
}

void FieldClock::wake()
{
    if (pace_ <= 0 || timer_.isActive())
        return;
    const quint64 unseen = due() - passed_;
    passed_ += unseen;
    listener_.passed_unseen(unseen);
    sleep_until_due();
}

void FieldClock::step()
{
    listener_.field();
}

quint64 FieldClock::due() const
{
    return static_cast<quint64>((Clock::now() - beginning_) / length_);
}

// What is told of a field may take longer than a field does.
void FieldClock::tick()
{
    const quint64 late = due() - passed_;
    if (late > most_at_once) {
        passed_ += late - most_at_once;
        listener_.passed_unseen(late - most_at_once);
    }
    bool wanted = true;
    for (quint64 left = std::min(late, most_at_once); left > 0 && wanted; --left) {
        ++passed_;
        wanted = listener_.field();
    }
    if (wanted)
        sleep_until_due();
}

void FieldClock::sleep_until_due()
{
    using namespace std::chrono;
    const auto left = beginning_ + length_ * static_cast<qint64>(passed_ + 1) - Clock::now();
    timer_.start(std::max(milliseconds(0), ceil<milliseconds>(left)));
}

} // namespace simulator
