// The clocks of the kernel, read without entering it.
#include <skuan/platform/clock.h>

#include <time.h>

namespace skuan::platform {

std::int64_t monotonic_ns()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

std::int64_t wall_seconds()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec;
}

} // namespace skuan::platform
