// Runs one piece of work on several threads at once.
#pragma once

#include <thread>
#include <vector>

namespace support {

/// Calls `work(0)` to `work(count - 1)`, each a copy on a thread of its own; returns when all have ended.
template <typename Work>
void on_threads(unsigned count, Work work)
{
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < count; ++i)
        threads.emplace_back(work, i);
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace support
