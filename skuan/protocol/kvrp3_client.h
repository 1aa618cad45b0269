// The control protocol for programs without an event loop: one connection, one loop that blocks.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/afunction.h>
#include <skuan/protocol/kvrp3_api.h>

#include <memory>

namespace KVRP3 {

/// A client of one server, over IPv4 and TCP port 8913. Its loop connects, reads, and connects again
/// whenever the connection has gone; it runs on a thread that the program gives to it (`run_forever`) or
/// on one of its own (`run_forever_in_own_thread`). All callbacks, `report_*`, `connected` and
/// `disconnected` run on that thread.
///
/// Commands may be issued on any thread. Without a connection they fail at once, on the thread that
/// issues them, and with them all others that are outstanding. A connection that is lost, or that brings
/// something other than the protocol's XML, or a message of more than 32768 bytes, fails all outstanding
/// commands; nothing is sent a second time. A server that does not read makes the sender wait.
class SKUAN_EXPORT Client : public API
{
public:
    /// For the server on this machine, 127.0.0.1. Nothing is opened before the loop runs.
    Client();
    /// For the server at `address`, IPv4 in host byte order.
    explicit Client(unsigned address);
    /// Calls `stop`. Outstanding commands are dropped without a call. Not from a callback, nor while
    /// another thread is inside.
    ///
    /// A subclass that overrides any operation calls `stop` first in its own destructor: the loop must not
    /// find it half destroyed.
    ~Client() override;

    static unsigned ip_127_0_0_1() { return 0x7f000001; }
    static unsigned localhost() { return ip_127_0_0_1(); }

    /// Any thread; from the next attempt to connect on.
    void set_ipaddr(unsigned address);

    /// Has the loop run `action` while connected: not more often than every so many seconds, not in the
    /// first so many after connecting, and not while 4 or more commands wait for their answer. Meant to
    /// keep a connection alive. There is one such action: another replaces it, an empty one ends it. The
    /// loop looks about once a second, by the time of day. Any thread.
    void add_periodic(unsigned seconds, AFunction action);

    /// Any thread. True until the loop has noticed that the connection is gone.
    bool isConnected() const;

    /// Connects and reads until `stop`, with a pause of 100 ms before each attempt. There is one loop: a
    /// call while it runs, here or on its own thread, returns at once, as does one after `stop`.
    void run_forever();
    /// Runs the loop on a thread of its own, with a priority from -15 over 0 (normal) to 15. Returns at
    /// once. Does nothing while that thread runs.
    void run_forever_in_own_thread(int priority);
    /// What the own thread runs: the loop, and a note that it has ended.
    void run_forever_ownthread();

    /// Ends the loop for good, wherever it blocks, and closes the connection without a call of
    /// `disconnected`; from then on commands fail as without a connection. Waits for the own thread to
    /// end, unless a callback on it calls this. From the thread that owns the client, or a callback; a
    /// loop that the program runs itself returns soon afterwards, not before.
    void stop();

    using API::send;

protected:
    void send(const void* data, unsigned length) override;

    /// A connection has been made; commands may go out. Nothing here.
    virtual void connected();
    /// The connection has gone, and all commands have been failed. Nothing here.
    virtual void disconnected();

private:
    void ctor(unsigned address);
    void perform_connect();
    void run_once();
    void run_periodic_action();
    void set_up();
    void set_down();
    bool is_down() const;

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace KVRP3
