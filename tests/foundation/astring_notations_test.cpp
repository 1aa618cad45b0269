// Speeds and addresses in text: the letter of each rule, and that no speed changes on its way.
#include <skuan/foundation/astring.h>
#include <skuan/protocol/wire_speed_p.h>

#include <gtest/gtest.h>

#include <climits>
#include <optional>
#include <tuple>

namespace {

constexpr auto l1 = AString::l1;

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
        int read = 42;
        int received = 42;
        EXPECT_EQ(l1(text).to_speed(&read) ? read : Speed(), told) << text;
        EXPECT_EQ(KVRP3::to_wire_speed(l1(text), &received) ? received : Speed(), wire) << text;
        EXPECT_TRUE((told || read == 42) && (wire || received == 42)) << text;
    }
    EXPECT_TRUE(l1("+1X").to_speed(nullptr) && l1("1").to_speed(nullptr));
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
