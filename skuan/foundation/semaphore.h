// Semaphores: a bounded count that one thread gives and another waits for.
#pragma once

#include <skuan/export.h>

#include <memory>

namespace skuan::platform {
class Semaphore;
}

/// A count from 0 to a maximum. Any thread may give and take. Whoever takes may destroy the semaphore
/// at once, even while the giver has not returned yet.
class SKUAN_EXPORT CountingSemaphore
{
public:
    static constexpr unsigned no_limit = ~0u; ///< the time limit of a take that waits for ever

    /// `maximum` is 1 to 0x7fffffff, `initial` 0 to `maximum`; other values are an assertion, and are
    /// brought into their range.
    CountingSemaphore(unsigned initial, unsigned maximum);
    ~CountingSemaphore();
    CountingSemaphore(const CountingSemaphore&) = delete;
    CountingSemaphore& operator=(const CountingSemaphore&) = delete;

    void semGive() { semGive(1); }
    /// Gives `n` at once. If that would pass the maximum it gives none, which is an assertion, but in
    /// a BinarySemaphore accepted silently.
    void semGive(unsigned n);

    /// Takes one, waiting for ever; false, and an assertion, only if the system fails.
    bool semTake() { return semTake(no_limit); }
    /// Takes one, waiting at most `ms` milliseconds. True when taken, false on time-out.
    bool semTake(unsigned ms);
    /// Takes `n`, one after the other, waiting for ever. Two threads that do so at once may each end
    /// up with a part.
    void semTakeN(unsigned n);

protected:
    enum class WhenFull { assertion, accept };
    CountingSemaphore(unsigned initial, unsigned maximum, WhenFull when_full);

private:
    std::unique_ptr<skuan::platform::Semaphore> semaphore_;
    WhenFull when_full_;
};

/// Given or not: however often it is given before a take, there is one to take.
class BinarySemaphore : public CountingSemaphore
{
public:
    explicit BinarySemaphore(bool given) : CountingSemaphore(given ? 1 : 0, 1, WhenFull::accept) {}
};
