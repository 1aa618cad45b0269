// Names of an enumeration in both directions, with their defaults, and the walk over the values.
#include <skuan/foundation/enum_string.h>

#include <gtest/gtest.h>

#include <iterator>
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

} // namespace
