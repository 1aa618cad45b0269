// How much work a stress test does in this build.
#pragma once

#include <QtGlobal>

#include <algorithm>

namespace support {

#if defined(__SANITIZE_THREAD__)
inline constexpr int share = 100;
#elif defined(__SANITIZE_ADDRESS__) || !defined(NDEBUG)
inline constexpr int share = 10;
#else
inline constexpr int share = 1;
#endif

/// `n` in an optimised build, a part of it where every step costs many times as much.
constexpr int scaled(int n)
{
    return n / share;
}

/// Whether another program stands in for the system: each call to it is a message to that one program.
#if defined(SYSTEM_STOOD_IN_FOR)
inline constexpr bool stood_in_for = true;
#else
inline constexpr bool stood_in_for = false;
#endif

/// `scaled` for what goes through sockets and event loops, waits or starts threads: what costs most where the
/// system is stood in for.
inline int scaled_traffic(int n)
{
    if (stood_in_for)
        return scaled(n) / 10;
    // SKUAN_TRAFFIC_SHARE: a server may be there
    return scaled(n) / std::max(1, qEnvironmentVariableIntValue("SKUAN_TRAFFIC_SHARE"));
}

} // namespace support
