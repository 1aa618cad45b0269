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

} // namespace
