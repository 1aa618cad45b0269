// Function values: every kind calls with its bound words first, and order and equality see what it uses.
#include <skuan/foundation/afunction.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

std::string called;

struct Panel
{
    void show(int n) { called = "panel " + std::to_string(n); }
};

TEST(AFunction, CallsWithTheBoundWordsFirst)
{
    std::string a = "a";
    std::string b = "b";
    Panel panel;
    const auto plain = [](int n) { called = "plain " + std::to_string(n); };
    const auto number = [](unsigned bound, int n) {
        called = std::to_string(bound) + " " + std::to_string(n);
    };
    const auto one = [](void* p, int n) { called = *static_cast<std::string*>(p) + std::to_string(n); };
    const auto two = [](void* p, void* q, int n) {
        called = *static_cast<std::string*>(p) + *static_cast<std::string*>(q) + std::to_string(n);
    };
    const std::pair<AFunction1<int>, const char*> rows[] = {
        {AFunction1<int>(plain), "plain 7"},
        {{number, ~0u}, "4294967295 7"},
        {{one, &a}, "a7"},
        {{two, &a, &b}, "ab7"},
        {AFunction1<int>::member<&Panel::show>(&panel), "panel 7"},
        {{}, ""},
        {static_cast<void (*)(int)>(nullptr), ""},
        {{static_cast<void (*)(void*, int)>(nullptr), &a}, ""},
    };
    for (const auto& [function, expected] : rows) {
        called.clear();
        function.run(7);
        EXPECT_EQ(called, expected);
        EXPECT_EQ(function.is_null(), expected[0] == '\0');
    }
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
    const AFunction2R<std::unique_ptr<int>, int, int> make(
        [](int a, int b) { return std::make_unique<int>(a * b); });
    EXPECT_EQ(*make.run(nullptr, 3, 4), 12);
}

} // namespace
