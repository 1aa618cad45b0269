// Names of an enumeration in both directions, with their defaults, and the walk over the values.
#include <skuan/foundation/enum_string.h>

#include <gtest/gtest.h>

#include <iterator>
#include <vector>

namespace {

AString l1(const char* text)
{
    return AString::l1(text);
}

// Two names for 5, one name for 7 and 9, and a row without a name; out of order.
constexpr EnumString::ByLatin1 rows[] = {{7, "seven"}, {5, "five"}, {-2, "minus"}, {5, "cinq"},
                                         {9, "seven"}, {3, ""},     {4, nullptr}};

TEST(EnumString, gives_the_first_of_two_names_and_understands_both)
{
    const EnumString table(rows, std::size(rows), -1, l1("?"));
    EXPECT_EQ(table.to_name(5), l1("five"));
    EXPECT_EQ(table.to_enumval(l1("five")), 5);
    EXPECT_EQ(table.to_enumval(l1("cinq")), 5);
    EXPECT_EQ(table.to_enumval(l1("seven")), 7);
    EXPECT_EQ(table.to_name(9), l1("seven"));
    EXPECT_EQ(table.to_enumval(l1("minus")), -2);
}

TEST(EnumString, gives_defaults_for_what_it_does_not_know)
{
    const EnumString table(rows, std::size(rows), -1, l1("?"));
    for (const char* unknown : {"Five", "fiv", "five ", ""})
        EXPECT_EQ(table.to_enumval(l1(unknown)), -1) << unknown;
    EXPECT_EQ(table.to_enumval(l1("six"), 66), 66);
    EXPECT_EQ(table.to_name(3), l1("?"));
    EXPECT_EQ(table.to_name(6, l1("bad")), l1("bad"));

    const EnumString plain(rows, std::size(rows));
    EXPECT_EQ(plain.to_enumval(l1("six")), 0);
    EXPECT_EQ(plain.to_name(6), AString());
}

TEST(EnumString, tells_what_is_valid_and_touches_nothing_otherwise)
{
    const EnumString::ByAString one_row[] = {{1, l1("one")}};
    const EnumString table(one_row, 1);
    int value = 42;
    AString name = l1("before");
    EXPECT_FALSE(table.valid_name(l1("two"), &value));
    EXPECT_FALSE(table.valid_value(2, &name));
    EXPECT_EQ(value, 42);
    EXPECT_EQ(name, l1("before"));
    EXPECT_TRUE(table.valid_name(l1("one"), &value));
    EXPECT_TRUE(table.valid_value(1, &name));
    EXPECT_EQ(value, 1);
    EXPECT_EQ(name, l1("one"));
    EXPECT_TRUE(table.valid_name(l1("one"), nullptr));
    EXPECT_TRUE(table.valid_value(1, nullptr));
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
    EXPECT_FALSE(table.getlast(&value));
    EXPECT_EQ(value, 42);
}

} // namespace
