// Each kind of value as text, number and truth, and as the name or number of an enumeration's value.
#include <skuan/foundation/avariant.h>
#include <skuan/foundation/enum_string.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <tuple>

namespace {

AVariant text(const char* latin1)
{
    return AString::l1(latin1);
}

static_assert(!std::is_constructible_v<AVariant, const void*>, "a pointer is not a truth");

TEST(AVariant, of_each_kind_reads_as_text_number_and_truth)
{
    constexpr std::int64_t bad = 42; // also as text and, being true, as truth
    // The number is that of 64 bits; narrower ones are cut from it.
    const std::tuple<AVariant, AVariant::Kind, const char*, std::int64_t, bool> rows[] = {
        {AVariant(), AVariant::Nothing, "42", bad, true},
        {~0u, AVariant::Unsigned, "4294967295", 0xFFFFFFFF, true},
        {~std::uint64_t{0}, AVariant::Unsigned64, "18446744073709551615", -1, true},
        {-5, AVariant::Int, "-5", -5, true},
        {INT64_MIN, AVariant::Int64, "-9223372036854775808", INT64_MIN, true},
        {true, AVariant::Boolean, "true", 1, true},
        {false, AVariant::Boolean, "false", 0, false},
        {AChar('7'), AVariant::Character, "7", 0x37, true},
        {text("-7"), AVariant::Text, "-7", -7, true},
        {text("false"), AVariant::Text, "false", bad, false},
        {text("0"), AVariant::Text, "0", 0, false},
        {text(""), AVariant::Text, "", bad, false},
    };
    for (const auto& [value, kind, as_text, number, truth] : rows) {
        AVariant copy = text("before");
        copy = value;
        EXPECT_EQ(copy.kind(), kind) << as_text;
        EXPECT_EQ(copy.to_text(AString::l1("42")).to_string(), as_text);
        EXPECT_EQ(copy.to_int64_t(bad), number) << as_text;
        EXPECT_EQ(copy.to_bool(true), truth) << as_text;
        if (kind == AVariant::Text)
            continue;
        EXPECT_EQ(copy.to_uint64_t(bad), static_cast<std::uint64_t>(number)) << as_text;
        EXPECT_EQ(copy.to_unsigned(bad), static_cast<unsigned>(number)) << as_text;
        EXPECT_EQ(copy.to_int(bad), static_cast<int>(number)) << as_text;
    }
    EXPECT_EQ(text("-7").to_unsigned(9), 9u); // a text has the range of the type
}

TEST(AVariant, stands_for_a_value_by_name_and_then_by_number)
{
    constexpr EnumString::ByLatin1 rows[] = {{0, "off"}, {1, "on"}, {3, "7"}, {7, "x"}, {-2, "minus"}};
    const EnumString names(rows, std::size(rows), -1, AString::l1("?"));
    const std::pair<AVariant, int> values[] = {
        {text("on"), 1},        {text("0"), 0}, {text("7"), 3},   {7, 7},
        {std::int64_t{-2}, -2}, {true, 1},      {AChar('x'), 7},  {text("-2"), -2},
        {text("unknown"), -1},  {text(""), -1}, {AVariant(), -1}, {5u, -1},
    };
    for (const auto& [variant, value] : values) {
        int out = 42;
        EXPECT_EQ(names.valid_enum(variant, &out), value != -1) << variant.to_text().to_string();
        EXPECT_EQ(out, value != -1 ? value : 42) << variant.to_text().to_string();
        EXPECT_EQ(names.to_enumval(variant), value);
        EXPECT_EQ(names.to_name(variant), names.to_name(value));
    }
    EXPECT_EQ(names.to_enumval(AVariant(5), 9), 9);
    EXPECT_EQ(names.to_name(AVariant(), AString::l1("none")), AString::l1("none"));
}

} // namespace
