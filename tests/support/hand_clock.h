// A clock for HRTime that only the test moves.
#pragma once

#include <skuan/foundation/hr_clock_p.h>

#include <atomic>
#include <cstdint>

namespace support {

/// In force while it lives; one at a time.
class HandClock
{
public:
    explicit HandClock(std::int64_t frequency) : clock_{frequency, [] { return ticks().load(); }}
    {
        ticks() = 1;
        skuan::set_hr_clock(&clock_);
    }
    ~HandClock() { skuan::set_hr_clock(nullptr); }
    HandClock(const HandClock&) = delete;
    HandClock& operator=(const HandClock&) = delete;

    void advance(std::int64_t by) { ticks() += by; }

private:
    static std::atomic<std::int64_t>& ticks()
    {
        static std::atomic<std::int64_t> ticks;
        return ticks;
    }

    const skuan::HRClock clock_;
};

} // namespace support
