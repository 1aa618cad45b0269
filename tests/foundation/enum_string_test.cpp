// Values of each kind as text, number and truth; names of an enumeration in both directions, with their
// defaults, also for what such a value holds; and the walk over the values.
#include <skuan/foundation/avariant.h>
#include <skuan/foundation/enum_string.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <tuple>
#include <vector>

namespace {

constexpr auto l1 = AString::l1;

// Two names for 5, one name for 7 and 9, and a row without a name; out of order.
constexpr EnumString::ByLatin1 rows[] = {{7, "seven"}, {5, "five"}, {-2, "minus"}, {5, "cinq"},
                                         {9, "seven"}, {3, ""},     {4, nullptr}};

TEST(EnumString, gives_the_first_of_two_names_and_understands_both)
{
    const EnumString table(rows, std::size(rows), -1, l1("?"));
    const std::pair<const char*, int> values[] = {{"five", 5},  {"cinq", 5}, {"seven", 7},  {"minus", -2},
                                                  {"Five", -1}, {"fiv", -1}, {"five ", -1}, {"", -1}};
    for (const auto& [name, value] : values)
        EXPECT_EQ(table.to_enumval(l1(name)), value) << name;
    const std::pair<int, const char*> names[] = {{5, "five"}, {9, "seven"}, {3, "?"}, {4, "?"}, {6, "?"}};
    for (const auto& [value, name] : names)
        EXPECT_EQ(table.to_name(value), l1(name)) << value;
    EXPECT_EQ(table.to_enumval(l1("six"), 66), 66);
    EXPECT_EQ(table.to_name(6, l1("bad")), l1("bad"));
    int untouched = 42;
    EXPECT_FALSE(table.valid_name(l1("two"), &untouched));
    EXPECT_EQ(untouched, 42);
    EXPECT_TRUE(table.valid_name(l1("five"), nullptr));
    EXPECT_TRUE(table.valid_value(5, nullptr));
}

TEST(EnumString, walks_the_values_in_numeric_order_both_ways)
{
    const EnumString table(rows, std::size(rows));
    std::vector<int> up, down;
    int value;
    for (bool more = table.getfirst(&value); more; more = table.getnext(&value))
        up.push_back(value);
    for (bool more = table.getlast(&value); more; more = table.getprev(&value))
        down.push_back(value);
    EXPECT_EQ(up, (std::vector<int>{-2, 5, 7, 9}));
    EXPECT_EQ(down, (std::vector<int>{9, 7, 5, -2}));
    EXPECT_FALSE(table.getnext(6, &value));
    EXPECT_FALSE(table.getprev(6, &value));
    EXPECT_TRUE(table.getnext(5, nullptr));
}

TEST(EnumString, a_missing_table_has_no_names)
{
    const EnumString table(static_cast<const EnumString::ByLatin1*>(nullptr), 3, 8, l1("none"));
    int value = 42;
    EXPECT_EQ(table.to_enumval(l1("x")), 8);
    EXPECT_FALSE(table.getfirst(&value));
}

AVariant text(const char* latin1)
{
    return l1(latin1);
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
        EXPECT_EQ(copy.to_text(l1("42")).to_string(), as_text);
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
    constexpr EnumString::ByLatin1 table[] = {{0, "off"}, {1, "on"}, {3, "7"}, {7, "x"}, {-2, "minus"}};
    const EnumString names(table, std::size(table), -1, l1("?"));
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
    EXPECT_EQ(names.to_name(AVariant(), l1("none")), l1("none"));
}

} // namespace
