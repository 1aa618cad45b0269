// Numbers as they stand in big-endian files and packets, from and to the machine's own order.
#pragma once

#include <cstdint>

namespace skuan {

/// The parts side by side, the most significant first.
template <typename Whole, typename... Part>
constexpr Whole joined(Part... parts)
{
    static_assert(sizeof(Whole) == (sizeof(Part) + ...));
    Whole whole = 0;
    ((whole = static_cast<Whole>(std::uint64_t{whole} << 8 * sizeof(Part) | parts)), ...);
    return whole;
}

/// Exchanges the machine's order and big-endian order, either way.
constexpr std::uint16_t big_endian(std::uint16_t value)
{
    return __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__ ? value : __builtin_bswap16(value);
}
constexpr std::uint32_t big_endian(std::uint32_t value)
{
    return __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__ ? value : __builtin_bswap32(value);
}
constexpr std::uint64_t big_endian(std::uint64_t value)
{
    return __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__ ? value : __builtin_bswap64(value);
}

} // namespace skuan

// clang-format off

/// To the machine's value, from one that was loaded as it stood, or from its parts in the order in which they
/// stood, each of them loaded so: u32(1, 2, 3, 4) is 0x01020304 on every machine.
namespace fromBE {

using std::int32_t, std::int64_t, std::int8_t, std::uint16_t, std::uint32_t, std::uint64_t, std::uint8_t;

constexpr uint8_t u8(uint8_t a) { return a; }
constexpr int8_t s8(uint8_t a) { return static_cast<int8_t>(a); }
constexpr uint16_t u16(uint16_t a) { return skuan::big_endian(a); }
constexpr uint16_t u16(uint8_t a, uint8_t b) { return skuan::joined<uint16_t>(a, b); }
constexpr uint32_t u32(uint32_t a) { return skuan::big_endian(a); }
constexpr uint32_t u32(uint16_t a, uint16_t b) { return skuan::joined<uint32_t>(u16(a), u16(b)); }
constexpr uint32_t u32(uint8_t a, uint8_t b, uint8_t c, uint8_t d) { return skuan::joined<uint32_t>(a, b, c, d); }
constexpr int32_t s32(int32_t a) { return static_cast<int32_t>(u32(static_cast<uint32_t>(a))); }
constexpr int32_t s32(uint16_t a, uint16_t b) { return static_cast<int32_t>(u32(a, b)); }
constexpr int32_t s32(uint8_t a, uint8_t b, uint8_t c, uint8_t d) { return static_cast<int32_t>(u32(a, b, c, d)); }
constexpr uint64_t u64(uint64_t a) { return skuan::big_endian(a); }
constexpr uint64_t u64(uint32_t a, uint32_t b) { return skuan::joined<uint64_t>(u32(a), u32(b)); }
constexpr uint64_t u64(uint16_t a, uint16_t b, uint16_t c, uint16_t d) { return skuan::joined<uint64_t>(u16(a), u16(b), u16(c), u16(d)); }
constexpr uint64_t u64(uint8_t a, uint8_t b, uint8_t c, uint8_t d, uint8_t e, uint8_t f, uint8_t g, uint8_t h) { return skuan::joined<uint64_t>(a, b, c, d, e, f, g, h); }
constexpr int64_t s64(int64_t a) { return static_cast<int64_t>(u64(static_cast<uint64_t>(a))); }
constexpr int64_t s64(uint32_t a, uint32_t b) { return static_cast<int64_t>(u64(a, b)); }
constexpr int64_t s64(uint16_t a, uint16_t b, uint16_t c, uint16_t d) { return static_cast<int64_t>(u64(a, b, c, d)); }
constexpr int64_t s64(uint8_t a, uint8_t b, uint8_t c, uint8_t d, uint8_t e, uint8_t f, uint8_t g, uint8_t h) { return static_cast<int64_t>(u64(a, b, c, d, e, f, g, h)); }

} // namespace fromBE

/// To a value that is stored as it is, from the machine's value or from its parts, the most significant first.
namespace toBE {

using std::int32_t, std::int64_t, std::int8_t, std::uint16_t, std::uint32_t, std::uint64_t, std::uint8_t;

constexpr uint8_t u8(uint8_t a) { return a; }
constexpr int8_t s8(uint8_t a) { return static_cast<int8_t>(a); }
constexpr uint16_t u16(uint16_t a) { return skuan::big_endian(a); }
constexpr uint16_t u16(uint8_t a, uint8_t b) { return u16(skuan::joined<uint16_t>(a, b)); }
constexpr uint32_t u32(uint32_t a) { return skuan::big_endian(a); }
constexpr uint32_t u32(uint16_t a, uint16_t b) { return u32(skuan::joined<uint32_t>(a, b)); }
constexpr uint32_t u32(uint8_t a, uint8_t b, uint8_t c, uint8_t d) { return u32(skuan::joined<uint32_t>(a, b, c, d)); }
constexpr int32_t s32(int32_t a) { return static_cast<int32_t>(u32(static_cast<uint32_t>(a))); }
constexpr int32_t s32(uint16_t a, uint16_t b) { return static_cast<int32_t>(u32(a, b)); }
constexpr int32_t s32(uint8_t a, uint8_t b, uint8_t c, uint8_t d) { return static_cast<int32_t>(u32(a, b, c, d)); }
constexpr uint64_t u64(uint64_t a) { return skuan::big_endian(a); }
constexpr uint64_t u64(uint32_t a, uint32_t b) { return u64(skuan::joined<uint64_t>(a, b)); }
constexpr uint64_t u64(uint16_t a, uint16_t b, uint16_t c, uint16_t d) { return u64(skuan::joined<uint64_t>(a, b, c, d)); }
constexpr uint64_t u64(uint8_t a, uint8_t b, uint8_t c, uint8_t d, uint8_t e, uint8_t f, uint8_t g, uint8_t h) { return u64(skuan::joined<uint64_t>(a, b, c, d, e, f, g, h)); }
constexpr int64_t s64(int64_t a) { return static_cast<int64_t>(u64(static_cast<uint64_t>(a))); }
constexpr int64_t s64(uint32_t a, uint32_t b) { return static_cast<int64_t>(u64(a, b)); }
constexpr int64_t s64(uint16_t a, uint16_t b, uint16_t c, uint16_t d) { return static_cast<int64_t>(u64(a, b, c, d)); }
constexpr int64_t s64(uint8_t a, uint8_t b, uint8_t c, uint8_t d, uint8_t e, uint8_t f, uint8_t g, uint8_t h) { return static_cast<int64_t>(u64(a, b, c, d, e, f, g, h)); }

} // namespace toBE

// clang-format on
