// Integers that change their form: their byte order, and their width with the limits kept.
#include <skuan/foundation/byte_order.h>
#include <skuan/foundation/limit_cvt.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

namespace {

static_assert(fromBE::u32(1, 2, 3, 4) == 0x01020304);
static_assert(fromBE::s8(0xFE) == -2 && fromBE::s64(toBE::s64(-2)) == -2);

static_assert(limit_cvt_int8(128u) == 127 && limit_cvt_schar(-129) == -128 && limit_cvt_uchar(-1) == 0);
static_assert(limit_cvt_short(UINT64_MAX) == 32767 && limit_cvt_ushort(INT64_MIN) == 0);
static_assert(limit_cvt_uint16(65535) == 65535 && limit_cvt_uint16(65536) == 65535);
static_assert(limit_cvt_int(UINT_MAX) == INT_MAX && limit_cvt_int32(std::int64_t{INT_MIN} - 1) == INT_MIN);
static_assert(limit_cvt_uint32(std::int64_t{1} << 32) == UINT_MAX && limit_cvt_uint32(-1) == 0);
static_assert(limit_cvt_int('\x05') == 5 && limit_cvt_int(-5LL) == -5); // any type of integer

TEST(ByteOrder, whole_values_and_parts_agree_with_the_bytes_in_memory)
{
    const unsigned char bytes[] = {0x81, 2, 3, 4, 5, 6, 7, 8};
    std::uint16_t quarters[4];
    std::uint32_t halves[2];
    std::uint64_t whole;
    std::memcpy(quarters, bytes, sizeof bytes);
    std::memcpy(halves, bytes, sizeof bytes);
    std::memcpy(&whole, bytes, sizeof bytes);

    constexpr std::uint64_t value = 0x8102030405060708;
    EXPECT_EQ(fromBE::u32(quarters[0], quarters[1]), 0x81020304u);
    EXPECT_EQ(fromBE::u64(whole), value);
    EXPECT_EQ(fromBE::u64(halves[0], halves[1]), value);
    EXPECT_EQ(fromBE::u64(quarters[0], quarters[1], quarters[2], quarters[3]), value);
    EXPECT_EQ(toBE::u16(0x81, 2), quarters[0]);
    EXPECT_EQ(toBE::u32(0x8102, 0x0304), halves[0]);
    EXPECT_EQ(toBE::u64(value), whole);
    EXPECT_EQ(toBE::u64(0x81, 2, 3, 4, 5, 6, 7, 8), whole);
}

} // namespace
