// The performance counter and the system time.
#include <skuan/platform/clock.h>

#include <windows.h>

namespace skuan::platform {

std::int64_t monotonic_ns()
{
    static const std::int64_t frequency = [] {
        LARGE_INTEGER ticks_a_second{};
        QueryPerformanceFrequency(&ticks_a_second);
        return ticks_a_second.QuadPart;
    }();
    LARGE_INTEGER now{};
    QueryPerformanceCounter(&now);
    // Whole seconds apart from the rest: ticks times 10^9 would overflow within hours.
    const std::int64_t seconds = now.QuadPart / frequency;
    const std::int64_t rest = now.QuadPart % frequency;
    return seconds * 1'000'000'000 + rest * 1'000'000'000 / frequency;
}

std::int64_t wall_seconds()
{
    constexpr std::int64_t ticks_a_second = 10'000'000;
    constexpr std::int64_t seconds_1601_to_1970 = 11'644'473'600;
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    const std::int64_t ticks = (std::int64_t{now.dwHighDateTime} << 32) | now.dwLowDateTime;
    return ticks / ticks_a_second - seconds_1601_to_1970;
}

} // namespace skuan::platform
