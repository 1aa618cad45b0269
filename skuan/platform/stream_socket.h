// A TCP connection for code that is allowed to block, with one way out of every blocking call.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

namespace skuan::platform {

/// One stream to an IPv4 server, used again for any number of connections in turn.
///
/// Threads: the owner connects, receives and closes, all on one thread. `send` and `cancel`
/// may be called by any thread at any time, also while the owner closes.
class StreamSocket
{
public:
    static constexpr unsigned no_limit = ~0u;       ///< the time limit of a call that waits for ever
    static constexpr std::ptrdiff_t timed_out = -2; ///< from `receive`: nothing has come so far

    StreamSocket();
    ~StreamSocket(); ///< closes; no other thread may be inside by then
    StreamSocket(const StreamSocket&) = delete;
    StreamSocket& operator=(const StreamSocket&) = delete;

    /// Connects to `address` (IPv4, host byte order), blocking as long as the system tries, and sends
    /// small writes without delay from then on. An open connection is closed first. False if it fails
    /// or is cancelled.
    bool connect(std::uint32_t address, std::uint16_t port);

    /// Receives at most `n` bytes, blocking at most `ms` milliseconds until there is at least one. 0 is
    /// the end of the stream. Below 0 it is `timed_out`, or a failure, or cancelled, or not connected.
    std::ptrdiff_t receive(void* buffer, std::size_t n, unsigned ms = no_limit);

    /// Sends all `n` bytes, blocking while the peer's window is full, and gives `n`. Below 1 is a
    /// failure, or cancelled, or not connected; part of the bytes may be out by then. Sends from
    /// several threads follow one another. An empty send gives 0.
    std::ptrdiff_t send(const void* buffer, std::size_t n);

    /// Ends the connection, along with a `send` that another thread has in hand. Without a connection
    /// nothing happens.
    void close();

    /// Makes every blocked call return at once and every later one fail, for good: the way to get the
    /// owner's thread out before this object is destroyed. The connection stays open until `close`.
    void cancel();
    bool cancelled() const { return cancelled_; }

private:
    using Handle = std::intptr_t;
    static constexpr Handle none = -1;

    struct Signals; ///< what the system needs for waits and to end them; raised by the first cancel for good
    void set_handle(Handle socket);

    const std::unique_ptr<Signals> signals_;
    std::atomic<bool> cancelled_{false};
    std::mutex sending_;   ///< held by `send`; the handle changes only under it
    Handle socket_ = none; ///< read without a lock by the owner only
};

} // namespace skuan::platform
