// Sockets on Linux.
#include <skuanctl/platform_socket.h>

#include <cerrno>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

template <class Call>
qint64 moved(Call call)
{
    for (;;) {
        const auto bytes = call();
        if (bytes >= 0)
            return bytes;
        if (errno != EINTR)
            return errno == EAGAIN || errno == EWOULDBLOCK ? socket_would_wait : socket_lost;
    }
}

} // namespace

qintptr duplicate_socket(qintptr socket)
{
    return ::fcntl(static_cast<int>(socket), F_DUPFD_CLOEXEC, 0);
}

void prepare_socket(qintptr socket)
{
    const int one = 1, descriptor = static_cast<int>(socket);
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
}

qint64 read_socket(qintptr socket, char* data, qint64 size)
{
    return moved([&] { return ::recv(static_cast<int>(socket), data, static_cast<std::size_t>(size), 0); });
}

qint64 write_socket(qintptr socket, const char* data, qint64 size)
{
    return moved(
        [&] { return ::send(static_cast<int>(socket), data, static_cast<std::size_t>(size), MSG_NOSIGNAL); });
}

void end_writing(qintptr socket)
{
    ::shutdown(static_cast<int>(socket), SHUT_WR);
}

void close_socket(qintptr socket)
{
    ::close(static_cast<int>(socket));
}
