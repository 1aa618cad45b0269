// Sockets on Windows.
#include <skuanctl/platform_socket.h>

#include <winsock2.h> // before windows.h, which would bring the older sockets

#include <windows.h>

#include <algorithm>
#include <limits>

namespace {

int as_int(qint64 size)
{
    return static_cast<int>(std::min<qint64>(size, std::numeric_limits<int>::max()));
}

qint64 moved(int bytes)
{
    if (bytes >= 0)
        return bytes;
    return ::WSAGetLastError() == WSAEWOULDBLOCK ? socket_would_wait : socket_lost;
}

} // namespace

qintptr duplicate_socket(qintptr socket)
{
    WSAPROTOCOL_INFOW info;
    if (::WSADuplicateSocketW(static_cast<SOCKET>(socket), ::GetCurrentProcessId(), &info) != 0)
        return -1;
    return static_cast<qintptr>(::WSASocketW(FROM_PROTOCOL_INFO, FROM_PROTOCOL_INFO, FROM_PROTOCOL_INFO,
                                             &info, 0, WSA_FLAG_OVERLAPPED));
}

void prepare_socket(qintptr socket)
{
    u_long does_not_wait = 1;
    ::ioctlsocket(static_cast<SOCKET>(socket), static_cast<long>(FIONBIO), &does_not_wait);
    const BOOL yes = TRUE;
    ::setsockopt(static_cast<SOCKET>(socket), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&yes),
                 sizeof yes);
}

qint64 read_socket(qintptr socket, char* data, qint64 size)
{
    return moved(::recv(static_cast<SOCKET>(socket), data, as_int(size), 0));
}

qint64 write_socket(qintptr socket, const char* data, qint64 size)
{
    return moved(::send(static_cast<SOCKET>(socket), data, as_int(size), 0));
}

void end_writing(qintptr socket)
{
    ::shutdown(static_cast<SOCKET>(socket), SD_SEND);
}

void close_socket(qintptr socket)
{
    ::closesocket(static_cast<SOCKET>(socket));
}
