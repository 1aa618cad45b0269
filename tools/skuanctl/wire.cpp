// Moves bytes when the socket is ready for them, never more than asked.
#include <skuanctl/platform_socket.h>
#include <skuanctl/wire.h>

#include <utility>

namespace {
constexpr int most_pieces = 16; // before others have their turn
}

Wire::Wire(qintptr socket)
    : socket_(socket), readable_(socket, QSocketNotifier::Read), writable_(socket, QSocketNotifier::Write)
{
    prepare_socket(socket);
    writable_.setEnabled(false);
    connect(&readable_, &QSocketNotifier::activated, this, &Wire::read_on);
    connect(&looking_, &QTimer::timeout, this, &Wire::read_on);
    looking_.start(50); // ms
    connect(&writable_, &QSocketNotifier::activated, this, [this] {
        if (write())
            Q_EMIT sent();
        else
            lose();
    });
}

Wire::~Wire()
{
    readable_.setEnabled(false);
    writable_.setEnabled(false);
    close_socket(socket_);
}

void Wire::send(const QByteArray& bytes)
{
    if (lost_ || ends_ || bytes.isEmpty())
        return;
    waiting_.push_back(bytes);
    unsent_ += bytes.size();
    // A loss is told from the event loop, not from within this call.
    if (!writable_.isEnabled() && (!write() || unsent_ > 0))
        writable_.setEnabled(true);
}

void Wire::end()
{
    if (!std::exchange(ends_, true) && waiting_.empty() && !lost_)
        end_writing(socket_);
}

void Wire::set_reading(bool on)
{
    readable_.setEnabled(on && !has_ended_ && !lost_);
}

/// A notifier may miss the end where its system tells of that once only; so it is looked for, too.
void Wire::read_on()
{
    for (int pieces = 0; pieces < most_pieces && readable_.isEnabled() && read(); ++pieces) {
    }
    if (has_ended_ || lost_)
        looking_.stop();
}

/// False if there is nothing more to be read for now, or for ever.
bool Wire::read()
{
    QByteArray bytes(most_read, Qt::Uninitialized);
    const qint64 size = read_socket(socket_, bytes.data(), bytes.size());
    if (size == socket_would_wait)
        return false;
    if (size > 0) {
        bytes.resize(static_cast<int>(size));
        bytes.squeeze(); // it may be kept
        Q_EMIT received(bytes);
        return true;
    }
    if (size == socket_lost) {
        lose();
    } else {
        has_ended_ = true;
        readable_.setEnabled(false);
        Q_EMIT ended();
    }
    return false;
}

/// False if the connection is lost.
bool Wire::write()
{
    while (!waiting_.empty()) {
        QByteArray& bytes = waiting_.front();
        const qint64 size = write_socket(socket_, bytes.constData(), bytes.size());
        if (size == socket_lost)
            return false;
        if (size == socket_would_wait)
            return true;
        unsent_ -= size;
        if (size < bytes.size())
            bytes.remove(0, static_cast<int>(size));
        else
            waiting_.pop_front();
    }
    writable_.setEnabled(false);
    if (ends_)
        end_writing(socket_);
    return true;
}

void Wire::lose()
{
    lost_ = true;
    readable_.setEnabled(false);
    writable_.setEnabled(false);
    waiting_.clear();
    unsent_ = 0;
    Q_EMIT lost();
}
