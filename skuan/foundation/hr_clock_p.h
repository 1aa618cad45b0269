// The clock behind HRTime. A test puts its own in its place, and waits for nothing.
#pragma once

#include <skuan/export.h>

#include <atomic>
#include <cstdint>

namespace skuan {

/// Nanoseconds since some moment; never 0 and never less than before. Called on any thread.
using HRClock = std::int64_t (*)();

/// The machine's, unless a test has stored another.
extern SKUAN_EXPORT std::atomic<HRClock> hr_clock;

} // namespace skuan
