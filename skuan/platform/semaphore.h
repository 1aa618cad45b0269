// A counting semaphore with an upper bound, as the system offers it.
#pragma once

#include <memory>

namespace skuan::platform {

/// Any thread may give and take. Whoever takes may destroy the semaphore at once, even while the
/// giver is still on its way out of `give`.
class Semaphore
{
public:
    static constexpr unsigned highest = 0x7fffffffu; ///< the largest maximum
    static constexpr unsigned no_limit = ~0u;        ///< the time limit of a take that waits for ever

    enum class Give { given, too_many, failed };
    enum class Take { taken, timed_out, failed };

    /// `maximum` from 1 to `highest`, `initial` at most `maximum`; other values make a semaphore on
    /// which everything fails.
    Semaphore(unsigned initial, unsigned maximum);
    ~Semaphore();
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;

    /// Gives all `n`, or none if the count would pass the maximum (`too_many`).
    Give give(unsigned n);
    /// Takes one, waiting at most `ms` milliseconds (`no_limit`: for ever). Signals and completed I/O
    /// do not end the wait.
    Take take(unsigned ms);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace skuan::platform
