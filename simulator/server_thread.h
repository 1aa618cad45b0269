// A server on a thread of its own, so that a client that blocks can be tested in the same process.
#pragma once

#include <simulator/export.h>
#include <simulator/server.h>

#include <memory>

namespace simulator {

/// Owns the thread and the server on it. A QCoreApplication must exist, but need not run its event loop. Not
/// to be used from two threads at once; the server's own functions for any thread are free of that.
class SKUAN_SIMULATOR_EXPORT ServerThread
{
public:
    explicit ServerThread(Settings settings = {});

    /// Calls stop().
    ~ServerThread();

    ServerThread(const ServerThread&) = delete;
    ServerThread& operator=(const ServerThread&) = delete;

    /// Returns when the server listens, or cannot: then false, and error_text() says why. While it is
    /// started this only gives true. After stop() it starts a fresh server with the same settings.
    bool start();
    QString error_text() const;

    /// Closes all connections, ends the thread and waits for it. Harmless when it is not started.
    void stop();

    /// The server, between start() and stop(). Before and after: null.
    Server* server() const;

    /// Between start() and stop().
    Server* operator->() const { return server(); }

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace simulator
