// Writing with and without cuts, and the ways to end.
#include <simulator/wire_p.h>

#include <simulator/platform_p.h>

#include <QTcpSocket>

#include <algorithm>
#include <utility>

namespace simulator {

Wire::Wire(QTcpSocket& socket, qint64 backlog_limit, Budget& all)
    : socket_(socket), backlog_limit_(backlog_limit), share_(all)
{
    pause_.setSingleShot(true);
    pause_.setTimerType(Qt::PreciseTimer);
    connect(&pause_, &QTimer::timeout, this, [this] { write_segments(); });
    connect(&socket_, &QTcpSocket::bytesWritten, this, [this](qint64 bytes) {
        Q_EMIT sent(bytes);
        end_when_written();
        share_.resize(backlog());
    });
}

void Wire::set_faults(const Faults& faults)
{
    faults_ = faults;
    next_cut_ = static_cast<std::size_t>(
        std::upper_bound(faults_.split_at.begin(), faults_.split_at.end(), written_) -
        faults_.split_at.begin());
    if (faults_.split_pause.count() == 0)
        pause_.stop();
    write_segments();
    if (faults_.close_after_bytes >= 0 && accepted_ >= faults_.close_after_bytes)
        end();
}

void Wire::write(const QByteArray& bytes)
{
    if (ended_)
        return;
    const qint64 room = faults_.close_after_bytes < 0
                            ? bytes.size()
                            : std::max<qint64>(0, faults_.close_after_bytes - accepted_);
    const bool reaches_end = faults_.close_after_bytes >= 0 && bytes.size() >= room;
    const QByteArray kept = room < bytes.size() ? bytes.left(static_cast<int>(room)) : bytes;
    const qint64 more = backlog() + kept.size();
    if (more > backlog_limit_ || !share_.resize(more)) {
        Q_EMIT overrun();
        return;
    }
    accepted_ += kept.size();
    if (pending_.isEmpty() && !cuts()) {
        socket_.write(kept);
        written_ += kept.size();
    } else {
        pending_ += kept;
        write_segments();
    }
    if (reaches_end)
        end();
}

void Wire::flush()
{
    if (socket_.bytesToWrite() > 0)
        socket_.flush();
}

void Wire::end()
{
    ended_ = true;
    end_when_written();
}

void Wire::abandon()
{
    ended_ = true;
    closed_ = true;
    pending_.clear();
    pending_start_ = 0;
    pause_.stop();
    share_.release();
}

qint64 Wire::backlog() const
{
    return socket_.bytesToWrite() + pending_.size() - pending_start_;
}

qint64 Wire::segment_length()
{
    qint64 length = pending_.size() - pending_start_;
    if (faults_.split != 0)
        length = std::min<qint64>(length, faults_.split);
    while (next_cut_ < faults_.split_at.size() && faults_.split_at[next_cut_] <= written_)
        ++next_cut_;
    if (next_cut_ < faults_.split_at.size())
        length = std::min(length, faults_.split_at[next_cut_] - written_);
    return length;
}

// Each segment goes to the system in a write of its own. TCP_NODELAY is set, so it travels alone while
// the client keeps up; only a pause makes sure that the client also reads it alone.
void Wire::write_segments()
{
    if (pause_.isActive())
        return;
    while (pending_start_ < pending_.size()) {
        const qint64 length = segment_length();
        socket_.write(pending_.constData() + pending_start_, length);
        pending_start_ += static_cast<int>(length);
        written_ += length;
        socket_.flush(); // may find the client gone, and abandon
        if (faults_.split_pause.count() > 0 && !closed_) {
            pause_.start(faults_.split_pause);
            break;
        }
    }
    if (pending_start_ == pending_.size()) {
        pending_.clear();
        pending_start_ = 0;
    }
    end_when_written();
}

void Wire::end_when_written()
{
    if (!ended_ || closed_)
        return;
    flush();
    if (backlog() > 0)
        return;
    closed_ = true;
    if (faults_.half_close)
        shut_down_sending(socket_.socketDescriptor());
    else
        socket_.disconnectFromHost();
}

} // namespace simulator
