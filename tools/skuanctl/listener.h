// Takes clients in a server's place.
#pragma once

#include <QHostAddress>
#include <QTcpServer>

#include <functional>

class Run;
struct Options;

/// Where --bind says, or else 127.0.0.1.
QHostAddress bind_address(const Options& options);

/// On the protocol's port, at `bind_address`. Main thread.
class Listener : public QTcpServer
{
public:
    /// `take` gets each client's socket, which is its own from then on.
    explicit Listener(std::function<void(qintptr socket)> take) : take_(std::move(take)) {}

    /// False if it cannot: then it has ended the run.
    bool start(Run& run);

    /// Prints where clients find it. To be called once all is ready for them.
    void tell(Run& run) const;

private:
    void incomingConnection(qintptr socket) override { take_(socket); }

    const std::function<void(qintptr)> take_;
};
