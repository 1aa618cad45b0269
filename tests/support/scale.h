// How much work a stress test does in this build.
#pragma once

namespace support {

/// Whether the size of the process tells how much memory is in use; a sanitizer keeps what was freed.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
inline constexpr bool size_tells = false;
#else
inline constexpr bool size_tells = true;
#endif

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

} // namespace support
