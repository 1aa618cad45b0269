// A server that takes connections, or not even that, and never reads a byte by itself.
#pragma once

#include <support/loopback_address.h>

#include <gtest/gtest.h>

#include <QHostAddress>

#include <cstdio>
#include <fstream>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace support {

/// The kernel takes the connections into a queue from which nobody fetches them. With `Full` that queue
/// is full from the start, and whoever connects is kept waiting.
class SilentServer
{
public:
    enum Queue { Open, Full };

    explicit SilentServer(Queue queue) : address_(QString::fromStdString(own_loopback_address()))
    {
        place_.sin_family = AF_INET;
        place_.sin_port = htons(8913);
        place_.sin_addr.s_addr = htonl(ipv4());
        const int listener = open(0);
        EXPECT_EQ(bind(listener, where(), sizeof place_), 0);
        EXPECT_EQ(listen(listener, queue == Open ? 8 : 0), 0);
        if (queue == Full) // a queue of length 0 holds one, here and there two
            for (int i = 0; i < 4; ++i)
                connect(open(SOCK_NONBLOCK), where(), sizeof place_);
    }
    ~SilentServer()
    {
        for (const int socket : sockets_)
            close(socket);
    }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    const QHostAddress& address() const { return address_; }
    unsigned ipv4() const { return address_.toIPv4Address(); }

    /// The next connection from the queue, a descriptor for the test to read, write and close.
    int accept() const { return ::accept(sockets_.front(), nullptr, nullptr); }

    /// How many wait for the connection that they have asked for.
    unsigned kept_waiting() const
    {
        char wanted[20]; // remote address and port, and the state SYN_SENT, as the kernel lists them
        std::snprintf(wanted, sizeof wanted, "%08X:%04X 02", place_.sin_addr.s_addr, 8913);
        std::ifstream list("/proc/net/tcp");
        unsigned count = 0;
        for (std::string line; std::getline(list, line);)
            count += line.find(wanted) != std::string::npos;
        return count;
    }

private:
    int open(int flags)
    {
        sockets_.push_back(socket(AF_INET, SOCK_STREAM | flags, 0));
        return sockets_.back();
    }
    const sockaddr* where() const { return reinterpret_cast<const sockaddr*>(&place_); }

    const QHostAddress address_;
    sockaddr_in place_{};
    std::vector<int> sockets_;
};

} // namespace support
