// A count of our own before the system's semaphore object, which only those use who have to sleep, and who
// wakes them: the way into the system costs many times what the count does.
#include <skuan/platform/semaphore.h>

#include <skuan/platform/clock.h>

#include <algorithm>
#include <atomic>
#include <windows.h>

namespace skuan::platform {

// Below 0, the count says how many sleep. A giver that raises it from there owes as many wake-ups, and as
// many sleepers stay until they have them: so the object is there until the giver has called the system.
struct Semaphore::State
{
    std::atomic<LONG> count;
    const LONG maximum;
    const HANDLE sleepers;

    ~State() { CloseHandle(sleepers); }

    /// Whether it took one, with nobody's help.
    bool take_one()
    {
        LONG now = count.load(std::memory_order_relaxed);
        while (now > 0)
            if (count.compare_exchange_weak(now, now - 1, std::memory_order_acq_rel,
                                            std::memory_order_relaxed))
                return true;
        return false;
    }
    /// For a sleeper that gives up: false if a giver owes it a wake-up already.
    bool leave()
    {
        LONG now = count.load(std::memory_order_relaxed);
        while (now < 0)
            if (count.compare_exchange_weak(now, now + 1, std::memory_order_acq_rel,
                                            std::memory_order_relaxed))
                return true;
        return false;
    }
    Take sleep(unsigned ms);
};

Semaphore::Semaphore(unsigned initial, unsigned maximum)
{
    if (maximum < 1 || maximum > highest || initial > maximum)
        return;
    if (HANDLE handle = CreateSemaphoreW(nullptr, 0, LONG(highest), nullptr))
        state_.reset(new State{{LONG(initial)}, LONG(maximum), handle});
}

Semaphore::~Semaphore() = default;

Semaphore::Give Semaphore::give(unsigned n)
{
    if (!state_)
        return Give::failed;
    // Read first: once the count is raised, who takes may destroy us, but for those we wake.
    const HANDLE sleepers = state_->sleepers;
    const LONG maximum = state_->maximum;
    LONG now = state_->count.load(std::memory_order_relaxed);
    do {
        if (n > unsigned(maximum - std::max(now, LONG(0))))
            return Give::too_many;
    } while (!state_->count.compare_exchange_weak(now, now + LONG(n), std::memory_order_acq_rel,
                                                  std::memory_order_relaxed));
    const LONG woken = std::min(-now, LONG(n));
    return woken <= 0 || ReleaseSemaphore(sleepers, woken, nullptr) ? Give::given : Give::failed;
}

Semaphore::Take Semaphore::take(unsigned ms)
{
    if (!state_)
        return Take::failed;
    if (state_->take_one())
        return Take::taken;
    if (ms == 0)
        return Take::timed_out;
    if (state_->count.fetch_sub(1, std::memory_order_acq_rel) > 0)
        return Take::taken;
    const Take result = state_->sleep(ms);
    if (result == Take::taken || state_->leave())
        return result;
    return state_->sleep(no_limit); // for what is owed
}

Semaphore::Take Semaphore::State::sleep(unsigned ms)
{
    // By the exact clock: the system's count of milliseconds moves in steps of 16.
    const std::int64_t deadline = monotonic_ns() + std::int64_t{ms} * 1'000'000;
    DWORD wait = ms == no_limit ? INFINITE : ms;
    for (;;) {
        switch (WaitForSingleObjectEx(sleepers, wait, TRUE)) {
        case WAIT_OBJECT_0:
            return Take::taken;
        case WAIT_TIMEOUT:
            return Take::timed_out;
        case WAIT_IO_COMPLETION: // a completion routine ran on this thread; go on waiting
            break;
        default:
            return Take::failed;
        }
        if (ms == no_limit)
            continue;
        const std::int64_t left = deadline - monotonic_ns();
        if (left < 0)
            return Take::timed_out;
        wait = DWORD((left + 999'999) / 1'000'000);
    }
}

} // namespace skuan::platform
