// A socket that blocks only in `recv`, which is the call that has to be fast, with the system's own time
// limit. The other waits watch an event descriptor beside it, which a cancel raises.
#include <skuan/platform/stream_socket.h>

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

timeval time_of(unsigned ms)
{
    return {static_cast<time_t>(ms / 1000), static_cast<suseconds_t>(ms % 1000 * 1000)};
}

bool would_block()
{
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

/// Waits until a socket is connected or has room; false if `cancelled` has become readable.
bool wait_for_writing(int socket, int cancelled)
{
    pollfd watched[] = {{socket, POLLOUT, 0}, {cancelled, POLLIN, 0}};
    int ready = 0;
    do
        ready = poll(watched, 2, -1);
    while (ready < 0 && errno == EINTR);
    return ready > 0 && watched[1].revents == 0;
}

} // namespace

struct StreamSocket::Signals
{
    const int cancelled = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    std::mutex handle;            ///< held by a cancel; the handle changes only under it
    unsigned limit_ms = no_limit; ///< that the socket has for receiving; the owner's

    ~Signals()
    {
        if (work())
            ::close(cancelled);
    }
    bool work() const { return cancelled >= 0; }
};

StreamSocket::StreamSocket() : signals_(new Signals) {}

StreamSocket::~StreamSocket()
{
    close();
}

bool StreamSocket::connect(std::uint32_t address, std::uint16_t port)
{
    close();
    if (cancelled_ || !signals_->work())
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
                    wait_for_writing(socket, signals_->cancelled) &&
                    getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
    }
    if (!connected) {
        ::close(socket);
        return false;
    }
    fcntl(socket, F_SETFL, 0); // connecting was not to block
    signals_->limit_ms = no_limit;
    set_handle(socket);
    return true;
}

void StreamSocket::set_handle(Handle socket)
{
    const std::scoped_lock lock(sending_, signals_->handle);
    socket_ = socket;
}

std::ptrdiff_t StreamSocket::receive(void* buffer, std::size_t n, unsigned ms)
{
    const int socket = static_cast<int>(socket_);
    if (socket_ != none && ms != std::exchange(signals_->limit_ms, ms)) {
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
        const int socket = static_cast<int>(socket_);
        const ssize_t taken = ::send(socket, bytes + sent, n - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (taken >= 0)
            sent += static_cast<std::size_t>(taken);
        else if (would_block() ? !wait_for_writing(socket, signals_->cancelled) : errno != EINTR)
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
    eventfd_write(signals_->cancelled, 1);
    const std::lock_guard lock(signals_->handle);
    if (socket_ != none)
        shutdown(static_cast<int>(socket_), SHUT_RD); // ends a `recv`; the peer does not notice
}

} // namespace skuan::platform
