#include <support/silent_server.h>

#include <support/loopback_address.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace support {
namespace {

constexpr std::uint16_t port = 8913;

int number(Socket socket)
{
    return static_cast<int>(socket);
}

} // namespace

Peer::~Peer()
{
    close(number(socket_));
}

std::string Peer::receive(std::size_t n) const
{
    std::string bytes(n, ' ');
    const ssize_t got = recv(number(socket_), bytes.data(), n, MSG_WAITALL);
    bytes.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
    return bytes;
}

bool Peer::send(const std::string& bytes) const
{
    return ::send(number(socket_), bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(bytes.size());
}

SilentServer::SilentServer(Queue queue) : address_(QString::fromStdString(own_loopback_address()))
{
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(port);
    place.sin_addr.s_addr = htonl(ipv4());
    const auto* const where = reinterpret_cast<const sockaddr*>(&place);
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockets_.push_back(listener);
    EXPECT_EQ(bind(listener, where, sizeof place), 0);
    EXPECT_EQ(listen(listener, queue == Open ? 8 : 0), 0);
    for (int i = 0; queue == Full && i < 4; ++i) { // a queue of length 0 holds one, here and there two
        sockets_.push_back(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
        connect(number(sockets_.back()), where, sizeof place);
    }
}

SilentServer::~SilentServer()
{
    for (const Socket socket : sockets_)
        close(number(socket));
}

std::unique_ptr<Peer> SilentServer::accept() const
{
    return std::make_unique<Peer>(::accept(number(sockets_.front()), nullptr, nullptr));
}

unsigned SilentServer::kept_waiting() const
{
    char wanted[20]; // remote address and port, and the state SYN_SENT, as the kernel lists them
    std::snprintf(wanted, sizeof wanted, "%08X:%04X 02", htonl(ipv4()), port);
    std::ifstream list("/proc/net/tcp");
    unsigned count = 0;
    for (std::string line; std::getline(list, line);)
        count += line.find(wanted) != std::string::npos;
    return count;
}

unsigned inheritable_sockets()
{
    unsigned count = 0;
    struct stat file
    {
    };
    for (int number = 0; number < 1024; ++number)
        count +=
            fstat(number, &file) == 0 && S_ISSOCK(file.st_mode) && (fcntl(number, F_GETFD) & FD_CLOEXEC) == 0;
    return count;
}

} // namespace support
