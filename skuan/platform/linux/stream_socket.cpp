// A socket that blocks only in `recv`, which is the call that has to be fast, with the system's own time
// limit. The other waits watch an event descriptor beside it, which a cancel raises.
#include <skuan/platform/stream_socket.h>

#include <skuan/platform/clock.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

namespace skuan::platform {
namespace {

/// What `poll` takes for the time left until `deadline` (of the monotonic clock, in ns), rounded up.
int poll_time(std::int64_t deadline)
{
    const std::int64_t left_ms = (deadline - monotonic_ns() + 999'999) / 1'000'000;
    return static_cast<int>(std::clamp<std::int64_t>(left_ms, 0, 0x7fffffff));
}

timeval time_of(unsigned ms)
{
    return {static_cast<time_t>(ms / 1000), static_cast<suseconds_t>(ms % 1000 * 1000)};
}

bool would_block()
{
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

} // namespace

struct StreamSocket::Wake
{
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

    ~Wake()
    {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    bool works() const { return descriptor >= 0; }
    void raise() const { eventfd_write(descriptor, 1); }
};

StreamSocket::StreamSocket() : wake_(new Wake) {}

StreamSocket::~StreamSocket()
{
    close();
}

bool StreamSocket::connect(std::uint32_t address, std::uint16_t port)
{
    close();
    if (cancelled_ || !wake_->works())
        return false;
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP);
    if (socket < 0)
        return false;

    const int no_delay = 1;
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_addr.s_addr = htonl(address);
    server.sin_port = htons(port);
    bool connected = setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &no_delay, sizeof no_delay) == 0;
    if (connected && ::connect(socket, reinterpret_cast<const sockaddr*>(&server), sizeof server) != 0) {
        int error = errno; // an interrupted connect goes on by itself, like one in progress
        socklen_t size = sizeof error;
        connected = (error == EINPROGRESS || error == EINTR) &&
                    wait(socket, Event::connected, no_limit) == Wait::ready &&
                    getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
    }
    if (!connected) {
        ::close(socket);
        return false;
    }
    fcntl(socket, F_SETFL, 0); // connecting was not to block
    limit_ms_ = no_limit;
    set_handle(socket);
    return true;
}

void StreamSocket::set_handle(Handle socket)
{
    const std::scoped_lock lock(sending_, handle_);
    socket_ = socket;
}

std::ptrdiff_t StreamSocket::receive(void* buffer, std::size_t n, unsigned ms)
{
    const int socket = static_cast<int>(socket_);
    if (socket_ != none && ms != std::exchange(limit_ms_, ms)) {
        const timeval limit = ms == no_limit ? timeval{} : time_of(std::max(ms, 1u));
        setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    }
    while (socket_ != none && !cancelled_) {
        const ssize_t got = recv(socket, buffer, n, 0);
        if (got > 0 || (got == 0 && !cancelled_)) // a cancel looks like the end
            return got;
        if (got < 0 && would_block())
            return timed_out;
        if (got < 0 && errno != EINTR)
            break;
    }
    return -1;
}

std::ptrdiff_t StreamSocket::send(const void* buffer, std::size_t n)
{
    const std::lock_guard lock(sending_);
    const char* const bytes = static_cast<const char*>(buffer);
    std::size_t sent = 0;
    while (sent < n) {
        if (socket_ == none || cancelled_)
            return -1;
        const ssize_t taken =
            ::send(static_cast<int>(socket_), bytes + sent, n - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (taken >= 0)
            sent += static_cast<std::size_t>(taken);
        else if (would_block() ? wait(socket_, Event::writable, no_limit) != Wait::ready : errno != EINTR)
            return -1;
    }
    return static_cast<std::ptrdiff_t>(sent);
}

void StreamSocket::close()
{
    if (socket_ == none)
        return;
    // Ends the wait of a send in hand, and so its hold of the lock.
    const int socket = static_cast<int>(socket_);
    shutdown(socket, SHUT_RDWR);
    set_handle(none);
    ::close(socket);
}

void StreamSocket::cancel()
{
    cancelled_ = true;
    wake_->raise();
    const std::lock_guard lock(handle_);
    if (socket_ != none)
        shutdown(static_cast<int>(socket_), SHUT_RD); // ends a `recv`; the peer does not notice
}

StreamSocket::Wait StreamSocket::wait(Handle socket, Event event, unsigned ms)
{
    const short wanted = event == Event::readable ? POLLIN : POLLOUT;
    pollfd watched[] = {{static_cast<int>(socket), wanted, 0}, {wake_->descriptor, POLLIN, 0}};
    const std::int64_t deadline = ms == no_limit ? 0 : monotonic_ns() + std::int64_t{ms} * 1'000'000;
    int ready = 0;
    do
        ready = poll(watched, 2, ms == no_limit ? -1 : poll_time(deadline));
    while (ready < 0 && errno == EINTR);

    if (ready < 0 || watched[1].revents != 0)
        return Wait::failed;
    return ready == 0 ? Wait::timed_out : Wait::ready;
}

} // namespace skuan::platform
