// Numbers in text: what parses, in which range, and how numbers are written.
#include <skuan/foundation/astring.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace {

template <typename T, typename Row>
void expect_parse(const Row& row, bool (AString::*parse)(T*) const, std::optional<T> expected)
{
    const AString text = AString::l1(row);
    T value = 123;
    EXPECT_EQ((text.*parse)(&value), expected.has_value()) << row;
    EXPECT_EQ(value, expected.value_or(123)) << row;
    EXPECT_EQ((text.*parse)(nullptr), expected.has_value()) << row;
}

TEST(AStringNumbers, ParseUnsigned)
{
    const struct
    {
        const char* text;
        std::optional<std::uint64_t> value;
    } rows[] = {
        {"0", 0},
        {"42", 42},
        {" \t42\r\n", 42},
        {"007", 7},
        {"18446744073709551615", UINT64_MAX},
        {"18446744073709551616", {}},                    // overflow that falls below
        {"30000000000000000000", 11553255926290448384u}, // overflow that doesn't, kept as it is
        {"0x20", 20},                                    // digits of any kind, base 10
        {"0x10", 10},
        {"0x1F", 25},
        {"0x1f", 25},
        {"0xZ", 35},
        {"0x", {}},
        {"0x 1", {}},
        {"0X10", {}},
        {"x10", {}},
        {"00x1", {}},
        {"", {}},
        {"  ", {}},
        {"1 2", {}},
        {"12a", {}},
        {"-1", {}},
        {"+1", {}},
    };
    for (const auto& row : rows)
        expect_parse(row.text, &AString::to_uint64_t, row.value);
    const AString split_over_segments = AString::rep(AString::l1(" "), 60) + AString::l1("123456789");
    unsigned value = 0;
    EXPECT_TRUE(split_over_segments.to_unsigned(&value));
    EXPECT_EQ(value, 123456789u);
}

TEST(AStringNumbers, ParseSigned)
{
    const struct
    {
        const char* text;
        std::optional<std::int64_t> value;
    } rows[] = {
        {"5", 5},
        {"+5", 5},
        {" -5 ", -5},
        {"-0", 0},
        {"-0x1F", -25},
        {"9223372036854775807", INT64_MAX},
        {"+9223372036854775808", {}},
        {"-9223372036854775808", INT64_MIN},
        {"-9223372036854775809", {}},
        {"-", {}},
        {"+", {}},
        {"", {}},
        {"--5", {}},
        {"+-5", {}},
        {"- 5", {}},
    };
    for (const auto& row : rows)
        expect_parse(row.text, &AString::to_int64_t, row.value);
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
    if (Limits::min() == 0) {
        expect_parse<T>("-1", parse, {});
    } else {
        std::string below = std::to_string(Limits::min());
        ++below.back();
        expect_parse<T>(below.c_str(), parse, {});
    }
}

TEST(AStringNumbers, EachTypeHasItsRange)
{
    expect_range(&AString::to_int8_t);
    expect_range(&AString::to_int16_t);
    expect_range(&AString::to_int32_t);
    expect_range(&AString::to_int64_t);
    expect_range(&AString::to_int);
    expect_range(&AString::to_long);
    expect_range(&AString::to_long_long);
    expect_range(&AString::to_short);
    expect_range(&AString::to_signed_int);
    expect_range(&AString::to_signed_long);
    expect_range(&AString::to_signed_long_long);
    expect_range(&AString::to_signed_short);
    expect_range(&AString::to_uint8_t);
    expect_range(&AString::to_uint16_t);
    expect_range(&AString::to_uint32_t);
    expect_range(&AString::to_uint64_t);
    expect_range(&AString::to_unsigned);
    expect_range(&AString::to_unsigned_int);
    expect_range(&AString::to_unsigned_long);
    expect_range(&AString::to_unsigned_long_long);
    expect_range(&AString::to_unsigned_short);
}

TEST(AStringNumbers, Make)
{
    const struct
    {
        AString text;
        const char* expected;
    } rows[] = {
        {AString::from_int(0), "0"},
        {AString::from_int(-5, 4, '0'), "-005"}, // the sign stands before the fill
        {AString::from_int(-5, 4, ' '), "-  5"},
        {AString::from_int(5, -4, ' '), "5   "},
        {AString::from_int(-5, -4, '.'), "-5.."},
        {AString::from_int(-5, 1, '0'), "-5"},
        {AString::from_int(12345, 3, '0'), "12345"},
        {AString::from_int64_t(INT64_MIN), "-9223372036854775808"},
        {AString::from_uint64_t(UINT64_MAX, 22, '0'), "0018446744073709551615"},
        {AString::from_int8_t(-128), "-128"},
        {AString::from_uint8_t(255), "255"},
        {AString::from_int16_t(-32768), "-32768"},
        {AString::from_uint16_t(65535), "65535"},
        {AString::from_int32_t(INT32_MIN), "-2147483648"},
        {AString::from_uint32_t(UINT32_MAX), "4294967295"},
        {AString::from_short(-1), "-1"},
        {AString::from_long(-1), "-1"},
        {AString::from_long_long(-1), "-1"},
        {AString::from_unsigned(1), "1"},
        {AString::from_unsigned_short(1), "1"},
        {AString::from_unsigned_long(1), "1"},
        {AString::from_unsigned_long_long(1), "1"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.text.to_string(), row.expected);
}

TEST(AStringNumbers, Sprintf)
{
    EXPECT_EQ(AString::sprintf("%03d|%s|%08X", 7, "ab", 0xBEEFu).to_string(), "007|ab|0000BEEF");
    EXPECT_EQ(AString::sprintf("%s", "\xE9").getchar(0).ord(), 0xE9u);
    for (int n : {255, 256, 1000}) {
        const AString text = AString::sprintf("%*d", n, 1);
        EXPECT_EQ(text.length(), static_cast<unsigned>(n));
        EXPECT_EQ(text.despace(), AString::l1("1"));
    }
}

} // namespace
