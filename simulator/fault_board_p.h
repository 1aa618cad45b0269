// Where the faults of all clients are pinned up, for any thread to change and connections to read.
#pragma once

#include <simulator/faults.h>

#include <atomic>
#include <map>
#include <mutex>

namespace simulator {

// All functions from any thread. A connection compares revision() with the one it knows, which costs
// nothing, and takes a copy when they differ: so a change holds for the next command that is read.
class FaultBoard
{
public:
    explicit FaultBoard(const Faults& faults) : all_(faults) {}

    // For every client now and later; what was set for a single one is forgotten.
    void set(const Faults& faults)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        all_ = faults;
        single_.clear();
        ++revision_;
    }

    void set(quint64 client, const Faults& faults)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        single_[client] = faults;
        ++revision_;
    }

    void forget(quint64 client)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        single_.erase(client);
    }

    Faults of(quint64 client) const
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto at = single_.find(client);
        return at == single_.end() ? all_ : at->second;
    }

    unsigned revision() const { return revision_; }

private:
    mutable std::mutex mutex_;
    Faults all_;
    std::map<quint64, Faults> single_;
    std::atomic<unsigned> revision_{0};
};

} // namespace simulator
