// A non-blocking socket beside a datagram socket that every select watches as well. So a cancel never
// touches the stream's own socket, which its owner may be closing at that very moment.
#include <winsock2.h> // before windows.h, which would bring the older sockets

#include <skuan/platform/stream_socket.h>

#include <algorithm>
#include <ws2tcpip.h>

namespace skuan::platform {
namespace {

bool start_sockets()
{
    static const bool started = [] {
        WSADATA data{};
        return WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    return started;
}

bool set_non_blocking(SOCKET socket)
{
    u_long on = 1;
    return ioctlsocket(socket, FIONBIO, &on) == 0;
}

/// A datagram socket of this machine that is connected to itself.
SOCKET looped_socket()
{
    if (!start_sockets())
        return INVALID_SOCKET;
    const SOCKET loop = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    sockaddr_in self{};
    self.sin_family = AF_INET;
    self.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof self;
    auto* const address = reinterpret_cast<sockaddr*>(&self);
    if (loop != INVALID_SOCKET && bind(loop, address, size) == 0 && getsockname(loop, address, &size) == 0 &&
        ::connect(loop, address, size) == 0)
        return loop;
    closesocket(loop);
    return INVALID_SOCKET;
}

int length(std::size_t n)
{
    return static_cast<int>(std::min<std::size_t>(n, 0x7fffffff));
}

bool would_block()
{
    return WSAGetLastError() == WSAEWOULDBLOCK;
}

/// A shutdown by another thread may leave a select for writing asleep, so that one looks up again
/// after this time.
constexpr std::int64_t writing_slice_ns = 20'000'000;

} // namespace

struct StreamSocket::Wake
{
    const SOCKET socket = looped_socket();

    ~Wake()
    {
        if (works())
            closesocket(socket);
    }
    bool works() const { return socket != INVALID_SOCKET; }
    void raise() const { ::send(socket, "!", 1, 0); }
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
    const SOCKET socket = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (socket == INVALID_SOCKET)
        return false;

    const BOOL no_delay = TRUE;
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_addr.s_addr = htonl(address);
    server.sin_port = htons(port);
    bool connected = set_non_blocking(socket) &&
                     setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&no_delay),
                                sizeof no_delay) == 0;
    if (connected && ::connect(socket, reinterpret_cast<const sockaddr*>(&server), sizeof server) != 0) {
        int error = 0;
        int size = sizeof error;
        connected = would_block() && wait(Handle(socket), Event::connected, no_limit) == Wait::ready &&
                    getsockopt(socket, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size) == 0 &&
                    error == 0;
    }
    if (!connected) {
        closesocket(socket);
        return false;
    }
    set_handle(Handle(socket));
    return true;
}

void StreamSocket::set_handle(Handle socket)
{
    const std::scoped_lock lock(sending_, handle_);
    socket_ = socket;
}

std::ptrdiff_t StreamSocket::receive(void* buffer, std::size_t n, unsigned ms)
{
    while (socket_ != none && !cancelled_) {
        const int got = recv(SOCKET(socket_), static_cast<char*>(buffer), length(n), 0);
        if (got >= 0)
            return got;
        const Wait waited = would_block() ? wait(socket_, Event::readable, ms) : Wait::failed;
        if (waited == Wait::timed_out)
            return timed_out;
        if (waited == Wait::failed)
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
        const int taken = ::send(SOCKET(socket_), bytes + sent, length(n - sent), 0);
        if (taken >= 0)
            sent += static_cast<std::size_t>(taken);
        else if (!would_block() || wait(socket_, Event::writable, no_limit) == Wait::failed)
            return -1;
    }
    return static_cast<std::ptrdiff_t>(sent);
}

void StreamSocket::close()
{
    if (socket_ == none)
        return;
    // Makes a send in hand fail, and so give up the lock.
    const SOCKET socket = SOCKET(socket_);
    shutdown(socket, SD_BOTH);
    set_handle(none);
    closesocket(socket);
}

void StreamSocket::cancel()
{
    cancelled_ = true;
    wake_->raise();
}

StreamSocket::Wait StreamSocket::wait(Handle handle, Event event, unsigned ms)
{
    const SOCKET socket = SOCKET(handle);
    std::int64_t limit_ns = std::int64_t{ms} * 1'000'000;
    if (event == Event::writable)
        limit_ns = std::min(limit_ns, writing_slice_ns);
    const bool limited = ms != no_limit || event == Event::writable;
    timeval time{long(limit_ns / 1'000'000'000), long(limit_ns % 1'000'000'000 / 1000)};

    fd_set reading, writing, failing; // a refused connect shows among the failures only
    FD_ZERO(&reading);
    FD_ZERO(&writing);
    FD_ZERO(&failing);
    FD_SET(wake_->socket, &reading);
    FD_SET(socket, event == Event::readable ? &reading : &writing);
    FD_SET(socket, &failing);
    const int ready = select(0, &reading, &writing, &failing, limited ? &time : nullptr);
    if (ready < 0 || FD_ISSET(wake_->socket, &reading))
        return Wait::failed;
    return ready == 0 ? Wait::timed_out : Wait::ready;
}

} // namespace skuan::platform
