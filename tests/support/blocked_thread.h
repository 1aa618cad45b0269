// Waits until another thread sleeps in the kernel, so that a test can act on it just then.
#pragma once

#include <atomic>
#include <thread>

namespace support {

/// The calling thread, for others to ask about. Never 0.
unsigned long this_thread();
/// True while that thread of this process sleeps in the kernel; false while it runs or when it has ended.
bool sleeps(unsigned long thread);

/// A thread that tells when it is blocked. Joins when it goes.
class BlockedThread
{
public:
    template <typename Body>
    explicit BlockedThread(Body body)
        : thread_([this, body] {
              id_ = this_thread();
              body();
              ended_ = true;
          })
    {
    }
    ~BlockedThread() { join(); }

    /// Returns once the thread has been found asleep several times in a row, or has ended.
    void wait_until_blocked() const
    {
        for (int asleep = 0; asleep < 50 && !ended_;) {
            asleep = id_ != 0 && sleeps(id_) ? asleep + 1 : 0;
            std::this_thread::yield();
        }
    }
    bool ended() const { return ended_; }
    void join()
    {
        if (thread_.joinable())
            thread_.join();
    }

private:
    std::atomic<unsigned long> id_{0};
    std::atomic<bool> ended_{false};
    std::thread thread_; // last: it uses the others
};

} // namespace support
