// Every wait is for two events: that of the call, which the system carries out meanwhile, and the one that a
// cancel raises. No call leaves before the system has done with its buffer.
#include <winsock2.h> // before windows.h, which would bring the older sockets

#include <skuan/platform/stream_socket.h>

#include <algorithm>

namespace skuan::platform {
namespace {

static_assert(StreamSocket::no_limit == WSA_INFINITE);

/// What is given to the system at once, which may keep all of it locked in memory until it is sent.
constexpr std::size_t largest_piece = 1 << 20;

bool start_sockets()
{
    static const bool started = [] {
        WSADATA data{};
        return WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    return started;
}

WSABUF piece(const void* bytes, std::size_t n)
{
    return {static_cast<u_long>(std::min(n, largest_piece)), static_cast<char*>(const_cast<void*>(bytes))};
}

DWORD wait_for_either(WSAEVENT call, WSAEVENT cancelled, unsigned ms = WSA_INFINITE)
{
    const WSAEVENT both[] = {call, cancelled};
    return WSAWaitForMultipleEvents(2, both, FALSE, ms, FALSE);
}

/// Waits for a call that has given `result`. Gives the bytes moved, `timed_out` or -1.
std::ptrdiff_t finish(int result, SOCKET socket, OVERLAPPED& call, WSAEVENT cancelled, unsigned ms)
{
    if (result != 0 && WSAGetLastError() != WSA_IO_PENDING)
        return -1;
    const DWORD ended_by = wait_for_either(call.hEvent, cancelled, ms);
    if (ended_by != WSA_WAIT_EVENT_0)
        CancelIoEx(reinterpret_cast<HANDLE>(socket), &call);
    DWORD moved = 0, flags = 0;
    if (WSAGetOverlappedResult(socket, &call, &moved, TRUE, &flags))
        return static_cast<std::ptrdiff_t>(moved); // perhaps at the last moment
    const bool gave_up = ended_by == WSA_WAIT_TIMEOUT && WSAGetLastError() == WSA_OPERATION_ABORTED;
    return gave_up ? StreamSocket::timed_out : -1;
}

} // namespace

struct StreamSocket::Signals
{
    const bool sockets = start_sockets();
    const WSAEVENT cancelled = WSACreateEvent();
    const WSAEVENT owner = WSACreateEvent();  ///< for its connects and receives
    const WSAEVENT sender = WSACreateEvent(); ///< for sends, which are one at a time

    ~Signals()
    {
        for (const WSAEVENT event : {cancelled, owner, sender})
            if (event != WSA_INVALID_EVENT)
                WSACloseEvent(event);
    }
    bool work() const
    {
        return sockets && cancelled != WSA_INVALID_EVENT && owner != WSA_INVALID_EVENT &&
               sender != WSA_INVALID_EVENT;
    }
    /// Whether a connect that was begun, and whose result `owner` tells of, has led to a connection.
    bool lead_to_connection(SOCKET socket) const
    {
        WSANETWORKEVENTS happened{};
        return WSAGetLastError() == WSAEWOULDBLOCK && wait_for_either(owner, cancelled) == WSA_WAIT_EVENT_0 &&
               WSAEnumNetworkEvents(socket, owner, &happened) == 0 &&
               (happened.lNetworkEvents & FD_CONNECT) != 0 && happened.iErrorCode[FD_CONNECT_BIT] == 0;
    }
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
    const SOCKET socket = WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0,
                                     WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
    if (socket == INVALID_SOCKET)
        return false;

    const BOOL no_delay = TRUE;
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_addr.s_addr = htonl(address);
    server.sin_port = htons(port);
    // The event, which the last receive has left set, makes the socket non-blocking: that matters to the
    // connect only.
    WSAResetEvent(signals_->owner);
    bool connected = setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&no_delay),
                                sizeof no_delay) == 0 &&
                     WSAEventSelect(socket, signals_->owner, FD_CONNECT) == 0;
    if (connected && ::connect(socket, reinterpret_cast<const sockaddr*>(&server), sizeof server) != 0)
        connected = signals_->lead_to_connection(socket);
    if (!connected || WSAEventSelect(socket, nullptr, 0) != 0) {
        closesocket(socket);
        return false;
    }
    set_handle(static_cast<Handle>(socket));
    return true;
}

void StreamSocket::set_handle(Handle socket)
{
    const std::lock_guard lock(sending_);
    socket_ = socket;
}

std::ptrdiff_t StreamSocket::receive(void* buffer, std::size_t n, unsigned ms)
{
    if (socket_ == none || cancelled_)
        return -1;
    const SOCKET socket = static_cast<SOCKET>(socket_);
    WSABUF space = piece(buffer, n);
    DWORD flags = 0;
    OVERLAPPED call{};
    call.hEvent = signals_->owner;
    const int result = WSARecv(socket, &space, 1, nullptr, &flags, &call, nullptr);
    return finish(result, socket, call, signals_->cancelled, ms);
}

std::ptrdiff_t StreamSocket::send(const void* buffer, std::size_t n)
{
    const std::lock_guard lock(sending_);
    const char* const bytes = static_cast<const char*>(buffer);
    std::size_t sent = 0;
    while (sent < n) {
        if (socket_ == none || cancelled_)
            return -1;
        const SOCKET socket = static_cast<SOCKET>(socket_);
        WSABUF next = piece(bytes + sent, n - sent);
        OVERLAPPED call{};
        call.hEvent = signals_->sender;
        const int result = WSASend(socket, &next, 1, nullptr, 0, &call, nullptr);
        const std::ptrdiff_t taken = finish(result, socket, call, signals_->cancelled, no_limit);
        if (taken < 1)
            return -1;
        sent += static_cast<std::size_t>(taken);
    }
    return static_cast<std::ptrdiff_t>(sent);
}

void StreamSocket::close()
{
    if (socket_ == none)
        return;
    // A send begun from here on fails, and the one in hand is taken back, so that it gives up the lock.
    const SOCKET socket = static_cast<SOCKET>(socket_);
    shutdown(socket, SD_BOTH);
    CancelIoEx(reinterpret_cast<HANDLE>(socket), nullptr);
    set_handle(none);
    closesocket(socket);
}

void StreamSocket::cancel()
{
    cancelled_ = true;
    WSASetEvent(signals_->cancelled);
}

} // namespace skuan::platform
