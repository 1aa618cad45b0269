// Numbers, speeds and addresses in text: what parses, in which range, how each is written, and that no speed
// changes on its way.
#include <skuan/foundation/astring.h>
#include <skuan/protocol/wire_speed_p.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <tuple>

namespace {

constexpr auto l1 = AString::l1;

template <typename T, typename Row>
void expect_parse(const Row& row, bool (AString::*parse)(T*) const, std::optional<T> expected)
{
    const AString text = l1(row);
    T value = 123;
    EXPECT_EQ((text.*parse)(&value), expected.has_value()) << row;
    EXPECT_EQ(value, expected.value_or(123)) << row;
    EXPECT_EQ((text.*parse)(nullptr), expected.has_value()) << row;
}

TEST(AStringNumbers, ParseUnsigned)
{
    const std::pair<const char*, std::optional<std::uint64_t>> rows[] = {
        {"0", 0},
        {" \t42\r\n", 42},
        {"007", 7},
        {"18446744073709551615", UINT64_MAX},
        {"18446744073709551616", {}},                    // overflow that falls below
        {"30000000000000000000", 11553255926290448384u}, // overflow that doesn't, kept as it is
        {"0x20", 20},                                    // digits of any kind, base 10
        {"0x10", 10},
        {"0x1F", 25},
        {"0xZ", 35},
        {"0x", {}},
        {"0x 1", {}},
        {"0X10", {}},
        {"", {}},
        {"12a", {}},
        {"-1", {}},
    };
    for (const auto& [text, value] : rows)
        expect_parse(text, &AString::to_uint64_t, value);
    expect_parse<std::uint64_t>((std::string(60, ' ') + "123456789").c_str(), &AString::to_uint64_t,
                                123456789);
}

TEST(AStringNumbers, ParseSigned)
{
    const std::pair<const char*, std::optional<std::int64_t>> rows[] = {
        {"+5", 5},
        {" -5 ", -5},
        {"-0", 0},
        {"-0x1F", -25},
        {"9223372036854775807", INT64_MAX},
        {"+9223372036854775808", {}},
        {"-9223372036854775808", INT64_MIN},
        {"-9223372036854775809", {}},
        {"-", {}},
        {"+-5", {}},
    };
    for (const auto& [text, value] : rows)
        expect_parse(text, &AString::to_int64_t, value);
}

/// The limits of `T` parse, one beyond them doesn't.
template <typename T>
void expect_range(bool (AString::*parse)(T*) const)
{
    using Limits = std::numeric_limits<T>;
    const std::string highest = std::to_string(Limits::max());
    expect_parse<T>(highest.c_str(), parse, Limits::max());
    expect_parse<T>(std::to_string(Limits::min()).c_str(), parse, Limits::min());
    std::string above = highest;
    ++above.back(); // no limit ends in 9
    expect_parse<T>(above.c_str(), parse, {});
    std::string below = Limits::min() == 0 ? "-0" : std::to_string(Limits::min());
    ++below.back();
    expect_parse<T>(below.c_str(), parse, {});
}

TEST(AStringNumbers, EachTypeHasItsRange)
{
    expect_range(&AString::to_int8_t);
    expect_range(&AString::to_short);
    expect_range(&AString::to_int32_t);
    expect_range(&AString::to_long);
    expect_range(&AString::to_uint8_t);
    expect_range(&AString::to_unsigned_short);
    expect_range(&AString::to_uint32_t);
    expect_range(&AString::to_unsigned_long);
}

TEST(AStringNumbers, Make)
{
    const std::pair<AString, const char*> rows[] = {
        {AString::from_int(-5, 4, '0'), "-005"}, // the sign stands before the fill
        {AString::from_int(-5, 4, ' '), "-  5"},
        {AString::from_int(-5, -4, '.'), "-5.."},
        {AString::from_int(-5, 1, '0'), "-5"},
        {AString::from_int64_t(INT64_MIN), "-9223372036854775808"},
        {AString::from_uint64_t(UINT64_MAX, 22, '0'), "0018446744073709551615"},
        {AString::from_int8_t(-128), "-128"},
        {AString::from_uint8_t(255), "255"},
        {AString::from_long(-1), "-1"},
        {AString::from_unsigned_long(1), "1"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(text.to_string(), expected);
}

TEST(AStringNumbers, Sprintf)
{
    EXPECT_EQ(AString::sprintf("%03d|%s", 7, "\xE9").to_string(), "007|\xC3\xA9"); // the bytes are Latin-1
    for (unsigned n : {255u, 256u, 1000u})
        EXPECT_EQ(AString::sprintf("%*d", static_cast<int>(n), 1).length(), n);
}

TEST(Speed, is_written_as_a_rounded_multiple_without_zeros_at_its_end)
{
    const std::tuple<int, unsigned, const char*> rows[] = {
        {65536, 3, "1X"},
        {98304, 3, "1.5X"},
        {-32768, 1, "-0.5X"},
        {68813, 2, "1.05X"}, // the zeros in front of decimals stay
        {1, 20, "0.0000152587890625X"},
        {32767, 3, "0.5X"},
        {131071, 4, "2X"}, // the decimals carry into the whole
        {-1, 3, "0X"},     // nothing is left that could be negative
        {-1, 0, "-0X"},
        {INT_MIN, 15, "-32768X"},
        {INT_MAX, 1, "32768X"},
    };
    for (const auto& [speed, digits, text] : rows)
        EXPECT_EQ(AString::from_speed(speed, digits).to_string(), text) << speed;
}

TEST(Speed, is_read_by_the_letter_or_raw_and_on_the_wire_by_its_size)
{
    using Speed = std::optional<int>;
    const std::tuple<const char*, Speed, Speed> rows[] = {
        {"1", 1, 65536},
        {"+1X", 65536, 65536},
        {" 1.5X\n", 98304, 98304},
        {"-.5X", -32768, -32768},
        {"-32768", -32768, INT_MIN},
        {"-32769", -32769, -32769},
        {"32768X", {}, {}},
        {"98304", 98304, 98304},
        {"4294967295", -1, -1},
        {"0x10X", {}, {}},
        {"0x10", 10, 10},
        {"1.5.5X", {}, {}},
        {"0.49999999999999999999999999X", 32767, 32767},
        {"X", 0, 0},
        {" ", {}, {}},
        {"-.", {}, {}},
    };
    for (const auto& [text, told, wire] : rows) {
        expect_parse(text, &AString::to_speed, told);
        int received = 42;
        EXPECT_EQ(KVRP3::to_wire_speed(l1(text), &received), wire.has_value()) << text;
        EXPECT_EQ(received, wire.value_or(42)) << text;
    }
}

TEST(Speed, comes_back_from_the_wire_as_it_was)
{
    for (unsigned whole : {0u, 1u, 4711u, 32767u, 32768u, 65535u}) { // the upper half is negative
        for (unsigned fraction = 0; fraction < 65536; ++fraction) {
            const int speed = static_cast<int>(whole << 16 | fraction);
            int read = ~speed;
            const AString text = KVRP3::from_wire_speed(speed);
            ASSERT_TRUE(KVRP3::to_wire_speed(text, &read) && read == speed) << text.to_string();
        }
    }
}

TEST(Address, has_its_first_number_in_the_lowest_byte)
{
    EXPECT_EQ(AString::from_ipaddr(0xFF0200C0).to_string(), "192.0.2.255");
    EXPECT_EQ(l1("192.0.2.255").to_ipaddr(1), 0xFF0200C0u);
    for (const char* text : {"1.2.3", "1.2.3.4.5", "1.2.3.4.", "1.2.3.256", "1..3.4", "1.2.3.-4", "", "."})
        EXPECT_EQ(l1(text).to_ipaddr(77), 77u) << text;
}

} // namespace
