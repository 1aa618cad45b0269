// Lists as values: copy on write, iterators that outlive their entry. Deep trees: see xml_tree_test.
#include <skuan/foundation/alist.h>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace {

using Ints = std::vector<int>;

/// Forwards; checks on the way that the backward links agree.
Ints ints_of(const AList<int>& list)
{
    Ints forwards, backwards;
    for (int i : list)
        forwards.push_back(i);
    for (auto at = list.rbegin(); at != list.rend(); ++at)
        backwards.insert(backwards.begin(), *at);
    EXPECT_EQ(forwards, backwards);
    EXPECT_EQ(forwards.size(), list.size());
    return forwards;
}

const AFunction1R<bool, const int&> odd([](const int& i) { return i % 2 != 0; });

TEST(AList, WhatIsNotThereIsNobodysItem)
{
    AList<int> list{1, 2, 3};
    list.at(3) = 77;
    EXPECT_EQ(list.at(3), 0);
    EXPECT_EQ(list.const_at(~0u), 0);
    EXPECT_EQ(AList<int>().front(), 0);
    EXPECT_EQ(AList<int>().pop(), 0);
    EXPECT_EQ(AList<int>().shift(), 0);
    EXPECT_EQ(ints_of(list), (Ints{1, 2, 3}));
}

TEST(AList, AChangeLeavesTheOtherCopyAlone)
{
    const AList<int> original{1, 2, 3};
    const std::tuple<const char*, void (*)(AList<int>&), Ints> rows[] = {
        {"at", [](AList<int>& l) { l.at(1) = 9; }, {1, 9, 3}},
        {"begin", [](AList<int>& l) { *++l.begin() = 9; }, {1, 9, 3}},
        {"push_back of its own item", [](AList<int>& l) { l.push_back(l.const_at(0)); }, {1, 2, 3, 1}},
        {"push_back of itself", [](AList<int>& l) { l.push_back(l); }, {1, 2, 3, 1, 2, 3}},
        {"push_front of itself", [](AList<int>& l) { l.push_front(l); }, {1, 2, 3, 1, 2, 3}},
        {"pop", [](AList<int>& l) { l.pop(); }, {1, 2}},
        {"reverse", [](AList<int>& l) { l.reverse(); }, {3, 2, 1}},
        {"remove_item", [](AList<int>& l) { l.remove_item(l.const_at(1)); }, {1, 3}},
        {"find_matches", [](AList<int>& l) { l = l.find_matches(odd); }, {1, 3}},
        {"remove_matches", [](AList<int>& l) { l = l.remove_matches(odd); }, {2}},
        {"clear", [](AList<int>& l) { l.clear(); }, {}},
    };
    for (const auto& [what, change, expected] : rows) {
        AList<int> copy = original;
        EXPECT_FALSE(original.is_unique());
        change(copy);
        EXPECT_EQ(ints_of(copy), expected) << what;
        EXPECT_EQ(ints_of(original), (Ints{1, 2, 3})) << what;
        // And the same on entries that are already its own.
        AList<int> own{1, 2, 3};
        change(own);
        EXPECT_EQ(ints_of(own), expected) << what;
    }
    EXPECT_TRUE(original.is_unique());
}

TEST(AList, SpliceMovesAllEntries)
{
    for (bool shared : {false, true}) {
        AList<int> to{1, 2};
        AList<int> from{3, 4};
        const AList<int> keeper = shared ? from : AList<int>();
        to.splice_back(from);
        EXPECT_EQ(ints_of(to), (Ints{1, 2, 3, 4}));
        EXPECT_TRUE(from.empty());
        EXPECT_EQ(ints_of(keeper), shared ? (Ints{3, 4}) : Ints{});
        to.splice_back(to);
        to.splice_back(from);
        EXPECT_EQ(to.size(), 4u);
    }
}

TEST(AList, AnEntryOutlivesItsRemovalUnderAnIterator)
{
    AList<int> list{1, 2, 3, 4};
    auto on_1 = list.begin();
    auto on_2 = ++list.begin();
    list.pop_front();
    list.pop_front();
    EXPECT_EQ(*on_1, 1);
    ++on_1;
    EXPECT_TRUE(on_1 == on_2);
    EXPECT_EQ(*on_2, 2);
    ++on_2;
    EXPECT_TRUE(on_2 == list.begin());
    --on_1;
    EXPECT_TRUE(on_1 == list.end());

    list.clear();
    EXPECT_EQ(*on_2, 3);
    ++on_2;
    EXPECT_TRUE(on_2 == list.end());
    ++on_2;
    EXPECT_FALSE(on_2.valid());
}

TEST(AList, ManyRemovedEntriesEndInALoop)
{
    AList<int> list;
    for (int i = 0; i < 200000; ++i)
        list.push_back(i);
    auto first = list.begin(); // holds the first, which holds the second once removed, and so on
    auto at = first;
    while (!list.empty()) {
        ++at;
        list.pop_front();
    }
    EXPECT_EQ(*first, 0);
}

} // namespace
