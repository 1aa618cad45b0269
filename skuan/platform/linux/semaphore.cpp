// A semaphore on a futex: the count and the number of sleepers share one 64-bit word, so that a give
// is a single atomic step after which the semaphore itself is not touched again.
#include <skuan/platform/semaphore.h>

#include <skuan/platform/clock.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace skuan::platform {
namespace {

constexpr std::uint64_t one_sleeper = std::uint64_t{1} << 32;

unsigned count_of(std::uint64_t word)
{
    return static_cast<unsigned>(word);
}

unsigned sleepers_of(std::uint64_t word)
{
    return static_cast<unsigned>(word >> 32);
}

/// Sleeps while the count is 0, at most until `deadline_ns` of the monotonic clock (below 0: for ever).
void sleep_while_empty(const std::uint32_t* count, std::int64_t deadline_ns)
{
    const timespec deadline{static_cast<time_t>(deadline_ns / 1'000'000'000),
                            static_cast<long>(deadline_ns % 1'000'000'000)};
    // WAIT_BITSET takes an absolute time, so an interrupted sleep is resumed without arithmetic.
    syscall(SYS_futex, count, FUTEX_WAIT_BITSET | FUTEX_PRIVATE_FLAG, 0u,
            deadline_ns < 0 ? nullptr : &deadline, nullptr, FUTEX_BITSET_MATCH_ANY);
}

void wake(const std::uint32_t* count, unsigned sleepers)
{
    // The memory may already be another object's: waking it for nothing is allowed everywhere.
    syscall(SYS_futex, count, FUTEX_WAKE | FUTEX_PRIVATE_FLAG,
            static_cast<int>(sleepers < INT_MAX ? sleepers : INT_MAX), nullptr, nullptr, 0u);
}

} // namespace

struct Semaphore::State
{
    std::atomic<std::uint64_t> word; ///< the count in the low half, the sleepers in the high half
    unsigned maximum;

    /// The half of the word that a futex can watch.
    const std::uint32_t* count_address() const
    {
        static_assert(sizeof word == 8 && std::atomic<std::uint64_t>::is_always_lock_free);
        constexpr bool low_half_first = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
        return reinterpret_cast<const std::uint32_t*>(&word) + (low_half_first ? 0 : 1);
    }
};

Semaphore::Semaphore(unsigned initial, unsigned maximum)
{
    if (maximum >= 1 && maximum <= highest && initial <= maximum)
        state_.reset(new State{{initial}, maximum});
}

Semaphore::~Semaphore() = default;

Semaphore::Give Semaphore::give(unsigned n)
{
    if (!state_)
        return Give::failed;
    const std::uint32_t* const count = state_->count_address();
    const unsigned maximum = state_->maximum;
    std::uint64_t now = state_->word.load(std::memory_order_relaxed);
    do {
        if (n > maximum - count_of(now))
            return Give::too_many;
    } while (!state_->word.compare_exchange_weak(now, now + n, std::memory_order_acq_rel,
                                                 std::memory_order_relaxed));
    if (const unsigned sleepers = sleepers_of(now); sleepers > 0 && n > 0)
        wake(count, sleepers < n ? sleepers : n);
    return Give::given;
}

Semaphore::Take Semaphore::take(unsigned ms)
{
    if (!state_)
        return Take::failed;
    std::atomic<std::uint64_t>& word = state_->word;
    std::uint64_t now = word.load(std::memory_order_relaxed);
    while (count_of(now) > 0) {
        if (word.compare_exchange_weak(now, now - 1, std::memory_order_acq_rel, std::memory_order_relaxed))
            return Take::taken;
    }
    if (ms == 0)
        return Take::timed_out;

    const std::int64_t deadline = ms == no_limit ? -1 : monotonic_ns() + std::int64_t{ms} * 1'000'000;
    now = word.fetch_add(one_sleeper, std::memory_order_acq_rel) + one_sleeper;
    for (;;) {
        while (count_of(now) > 0) {
            if (word.compare_exchange_weak(now, now - 1 - one_sleeper, std::memory_order_acq_rel,
                                           std::memory_order_relaxed))
                return Take::taken;
        }
        if (deadline >= 0 && monotonic_ns() >= deadline) {
            // Leave only an empty semaphore: a give that counted on us must not be lost.
            if (word.compare_exchange_weak(now, now - one_sleeper, std::memory_order_acq_rel,
                                           std::memory_order_relaxed))
                return Take::timed_out;
            continue;
        }
        sleep_while_empty(state_->count_address(), deadline);
        now = word.load(std::memory_order_relaxed);
    }
}

} // namespace skuan::platform
