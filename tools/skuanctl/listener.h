// Takes clients in a server's place.
#pragma once

#include <QTcpServer>

#include <functional>

class Program;

/// On the protocol's port, at --bind or else 127.0.0.1. Main thread.
class Listener : public QTcpServer
{
public:
    /// `take` gets each client's socket, which is its own from then on.
    explicit Listener(std::function<void(qintptr socket)> take) : take_(std::move(take)) {}

    /// False if it cannot: then it has ended the run.
    bool start(Program& program);

    /// Prints where clients find it. To be called once all is ready for them.
    void tell(Program& program) const;

private:
    void incomingConnection(qintptr socket) override { take_(socket); }

    const std::function<void(qintptr)> take_;
};
