// Function values: every kind calls with its bound words first, and order and equality see what it uses.
#include <skuan/foundation/afunction.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace {

std::string called;

void plain(int n)
{
    called = "plain " + std::to_string(n);
}
void with_unsigned(unsigned bound, int n)
{
    called = "unsigned " + std::to_string(bound) + " " + std::to_string(n);
}
void with_pointer(void* bound, int n)
{
    called = "pointer " + *static_cast<std::string*>(bound) + " " + std::to_string(n);
}
void with_two(void* a, void* b, int n)
{
    called = "two " + *static_cast<std::string*>(a) + *static_cast<std::string*>(b) + " " + std::to_string(n);
}

struct Panel
{
    std::string shown;
    void show(int n) { shown = std::to_string(n); }
};

TEST(AFunction, CallsWithTheBoundWordsFirst)
{
    std::string a = "a";
    std::string b = "b";
    const struct
    {
        AFunction1<int> function;
        const char* expected;
    } rows[] = {
        {plain, "plain 7"},
        {{with_unsigned, ~0u}, "unsigned 4294967295 7"},
        {{with_pointer, &a}, "pointer a 7"},
        {{with_two, &a, &b}, "two ab 7"},
        {{}, ""},
        {static_cast<void (*)(int)>(nullptr), ""},
        {{static_cast<void (*)(void*, int)>(nullptr), &a}, ""},
    };
    for (const auto& row : rows) {
        for (bool by_name : {false, true}) {
            called.clear();
            by_name ? row.function.run(7) : row.function(7);
            EXPECT_EQ(called, row.expected);
        }
        EXPECT_EQ(row.function.is_null(), row.expected[0] == '\0');
    }

    Panel panel;
    auto show = AFunction1<int>::member<&Panel::show>(&panel);
    show(12);
    EXPECT_EQ(panel.shown, "12");
    show.clear();
    show(13);
    EXPECT_EQ(panel.shown, "12");
}

TEST(AFunction, OrdersByKindThenByTheWordsInUse)
{
    int words[2];
    const auto two = [](void*, void*) {};
    const auto one = [](void*) {};
    const auto number = [](unsigned) {};
    const std::vector<AFunction> rising = {
        AFunction([] {}),
        AFunction(number, 1),
        AFunction(number, 2),
        AFunction(one, &words[0]),
        AFunction(one, &words[1]),
        AFunction(two, &words[0], &words[0]),
        AFunction(two, &words[0], &words[1]),
        AFunction(two, &words[1], &words[0]),
    };
    for (std::size_t i = 0; i < rising.size(); ++i) {
        EXPECT_LT(AFunction(), rising[i]);
        for (std::size_t k = 0; k < rising.size(); ++k) {
            EXPECT_EQ(rising[i] < rising[k], i < k) << i << k;
            EXPECT_EQ(rising[i] == rising[k], i == k) << i << k;
        }
    }
    AFunction cleared = rising.back();
    cleared.clear();
    EXPECT_EQ(cleared, AFunction()); // what it was bound to doesn't count any more
    EXPECT_TRUE(AFunction() < AFunction());
}

TEST(AFunction, AnEmptyOneGivesTheFallbackConvertedToItsResult)
{
    AFunction1R<std::string, int> name;
    EXPECT_EQ(name.run("none", 1), "none");
    name = AFunction1R<std::string, int>([](int n) { return std::to_string(n); });
    EXPECT_EQ(name("none", 1), "1");

    const AFunction0R<unsigned char> low_byte([]() -> unsigned char { return 200; });
    static_assert(std::is_same_v<decltype(low_byte.run(0)), unsigned char>);
    EXPECT_EQ(low_byte(0), 200);

    const AFunction2R<std::unique_ptr<int>, int, int> make(
        [](int a, int b) { return std::make_unique<int>(a * b); });
    EXPECT_EQ(*make.run(nullptr, 3, 4), 12);
}

} // namespace
