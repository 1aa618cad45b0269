// What HRTime counts by: the machine's clock, or one that a test moves by hand, so that no test waits.
#pragma once

#include <skuan/export.h>

#include <cstdint>

namespace skuan {

/// A counter that never goes back.
struct HRClock
{
    std::int64_t frequency;  ///< ticks a second; 0 if there is no telling
    std::int64_t (*ticks)(); ///< the ticks so far; any thread
};

/// The clock of the whole process. Any thread.
SKUAN_EXPORT const HRClock& hr_clock();

/// Another one, which must live until it is replaced in its turn; null: the machine's again. Times that were
/// taken by one clock mean nothing to another.
SKUAN_EXPORT void set_hr_clock(const HRClock* clock);

} // namespace skuan
