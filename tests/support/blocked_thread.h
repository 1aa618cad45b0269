// Waits until another thread sleeps in the kernel, so that a test can act on it just then.
#pragma once

#include <atomic>
#include <fstream>
#include <string>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace support {

/// A thread that tells when it is blocked. Joins when it goes.
class BlockedThread
{
public:
    template <typename Body>
    explicit BlockedThread(Body body)
        : thread_([this, body] {
              id_ = static_cast<long>(syscall(SYS_gettid));
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
            asleep = id_ != 0 && state() == 'S' ? asleep + 1 : 0;
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
    /// As the kernel tells it: R running, S asleep, ...
    char state() const
    {
        std::ifstream file("/proc/self/task/" + std::to_string(id_) + "/stat");
        std::string line;
        std::getline(file, line);
        const auto name_end = line.rfind(')');
        return name_end == std::string::npos ? '?' : line[name_end + 2];
    }

    std::atomic<long> id_{0};
    std::atomic<bool> ended_{false};
    std::thread thread_; // last: it uses the others
};

} // namespace support
