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
/// Threads: the owner connects, waits, receives and closes, all on one thread. `send` and `cancel`
/// may be called by any thread at any time, also while the owner closes.
class StreamSocket
{
public:
    enum class Wait { ready, timed_out, failed };

    StreamSocket();
    ~StreamSocket(); ///< closes; no other thread may be inside by then
    StreamSocket(const StreamSocket&) = delete;
    StreamSocket& operator=(const StreamSocket&) = delete;

    /// Connects to `address` (IPv4, host byte order), blocking as long as the system tries, and sends
    /// small writes without delay from then on. An open connection is closed first. False if it fails
    /// or is cancelled.
    bool connect(std::uint32_t address, std::uint16_t port);

    /// Waits at most `ms` milliseconds until there are bytes, the end of the stream or an error to
    /// receive (all three are `ready`). `failed` when not connected or cancelled.
    Wait wait_readable(unsigned ms);

    /// Receives at most `n` bytes, blocking until there is at least one. 0 is the end of the stream;
    /// below 0 is a failure, or cancelled, or not connected.
    std::ptrdiff_t receive(void* buffer, std::size_t n);

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
    static constexpr unsigned no_limit = ~0u;

    struct Wake; ///< becomes readable at the first cancel, and stays so
    enum class Event { readable, writable, connected };
    Wait wait(Handle socket, Event event, unsigned ms);

    const std::unique_ptr<Wake> wake_;
    std::atomic<bool> cancelled_{false};
    std::mutex sending_;   ///< held by `send`; the handle changes only under it
    Handle socket_ = none; ///< read without the lock by the owner only
};

} // namespace skuan::platform
