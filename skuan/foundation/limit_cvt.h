// Conversions to narrower integers that stop at the target's limit where a cast would wrap around.
#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

namespace skuan {

/// The value of `To` that is nearest to `value`.
template <typename To, typename From>
constexpr To limit_cvt(From value)
{
    static_assert(std::is_integral_v<To> && std::is_integral_v<From>);
    using Limits = std::numeric_limits<To>;
    if (value < From{0} && (std::is_unsigned_v<To> || std::int64_t(value) < std::int64_t(Limits::min())))
        return Limits::min();
    if (value > From{0} && std::uint64_t(value) > std::uint64_t(Limits::max()))
        return Limits::max();
    return static_cast<To>(value);
}

} // namespace skuan

// clang-format off
template <typename From> constexpr std::int8_t limit_cvt_int8(From value) { return skuan::limit_cvt<std::int8_t>(+value); }
template <typename From> constexpr std::int32_t limit_cvt_int32(From value) { return skuan::limit_cvt<std::int32_t>(+value); }
template <typename From> constexpr int limit_cvt_int(From value) { return skuan::limit_cvt<int>(+value); }
template <typename From> constexpr signed char limit_cvt_schar(From value) { return skuan::limit_cvt<signed char>(+value); }
template <typename From> constexpr short limit_cvt_short(From value) { return skuan::limit_cvt<short>(+value); }
template <typename From> constexpr unsigned char limit_cvt_uchar(From value) { return skuan::limit_cvt<unsigned char>(+value); }
template <typename From> constexpr std::uint16_t limit_cvt_uint16(From value) { return skuan::limit_cvt<std::uint16_t>(+value); }
template <typename From> constexpr std::uint32_t limit_cvt_uint32(From value) { return skuan::limit_cvt<std::uint32_t>(+value); }
template <typename From> constexpr unsigned short limit_cvt_ushort(From value) { return skuan::limit_cvt<unsigned short>(+value); }
// clang-format on
