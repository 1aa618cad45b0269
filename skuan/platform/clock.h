// The two clocks of the machine: one to measure with, one to tell the time of day by.
#pragma once

#include <cstdint>

namespace skuan::platform {

/// Nanoseconds since some fixed moment; never goes back and is not moved by setting the time of day.
/// Any thread.
std::int64_t monotonic_ns();

/// Seconds since 1970-01-01 00:00 UTC. Follows every setting of the time of day, so two readings may
/// lie any distance apart. Any thread.
std::int64_t wall_seconds();

} // namespace skuan::platform
