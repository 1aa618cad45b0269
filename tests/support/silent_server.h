// A server that takes connections, or not even that, and never reads a byte by itself.
#pragma once

#include <QHostAddress>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace support {

using Socket = std::intptr_t;

/// The server's end of a connection. Its calls block; closes when it goes.
class Peer
{
public:
    explicit Peer(Socket socket) : socket_(socket) {}
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    std::string receive(std::size_t n) const; ///< so many bytes, fewer if they end
    bool send(const std::string& bytes) const;

private:
    const Socket socket_;
};

/// The system takes the connections into a queue from which nobody fetches them. With `Full` that queue
/// is full from the start, and whoever connects is kept waiting.
class SilentServer
{
public:
    enum Queue { Open, Full };

    explicit SilentServer(Queue queue);
    ~SilentServer();
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    const QHostAddress& address() const { return address_; }
    unsigned ipv4() const { return address_.toIPv4Address(); }

    std::unique_ptr<Peer> accept() const; ///< the next connection from the queue

    unsigned kept_waiting() const; ///< how many wait for the connection that they have asked for

private:
    const QHostAddress address_;
    std::vector<Socket> sockets_; ///< the one that listens, then those that fill the queue
};

/// How many sockets of this process a program that it starts would have as well.
unsigned inheritable_sockets();

} // namespace support
