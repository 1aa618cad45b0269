// Lists as values: copy on write, iterators that outlive their entry, deep trees of lists.
#include <skuan/foundation/alist.h>
#include <skuan/foundation/astring_list.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

using Ints = std::vector<int>;

/// Forwards; checks on the way that the backward links agree.
Ints ints_of(const AList<int>& list)
{
    Ints forwards;
    for (int i : list)
        forwards.push_back(i);
    Ints backwards;
    for (auto at = list.rbegin(); at != list.rend(); ++at)
        backwards.insert(backwards.begin(), *at);
    EXPECT_EQ(forwards, backwards);
    EXPECT_EQ(forwards.size(), list.size());
    return forwards;
}

struct Tree
{
    AList<Tree> children; // Tree is incomplete here
    int value = 0;
};

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
    const struct
    {
        const char* what;
        void (*change)(AList<int>&);
        Ints expected;
    } rows[] = {
        {"at", [](AList<int>& l) { l.at(1) = 9; }, {1, 9, 3}},
        {"begin", [](AList<int>& l) { *++l.begin() = 9; }, {1, 9, 3}},
        {"rbegin", [](AList<int>& l) { *l.rbegin() = 9; }, {1, 2, 9}},
        {"push_back", [](AList<int>& l) { l.push_back(4); }, {1, 2, 3, 4}},
        {"push_back of its own item", [](AList<int>& l) { l.push_back(l.const_at(0)); }, {1, 2, 3, 1}},
        {"push_back of itself", [](AList<int>& l) { l.push_back(l); }, {1, 2, 3, 1, 2, 3}},
        {"push_front of itself", [](AList<int>& l) { l.push_front(l); }, {1, 2, 3, 1, 2, 3}},
        {"pop", [](AList<int>& l) { l.pop(); }, {1, 2}},
        {"shift", [](AList<int>& l) { l.shift(); }, {2, 3}},
        {"reverse", [](AList<int>& l) { l.reverse(); }, {3, 2, 1}},
        {"remove_item", [](AList<int>& l) { l.remove_item(l.const_at(1)); }, {1, 3}},
        {"clear", [](AList<int>& l) { l.clear(); }, {}},
    };
    for (const auto& row : rows) {
        AList<int> copy = original;
        EXPECT_FALSE(original.is_unique());
        row.change(copy);
        EXPECT_EQ(ints_of(copy), row.expected) << row.what;
        EXPECT_EQ(ints_of(original), (Ints{1, 2, 3})) << row.what;
        // And the same on entries that are already its own.
        AList<int> own{1, 2, 3};
        row.change(own);
        EXPECT_EQ(ints_of(own), row.expected) << row.what;
    }
    EXPECT_TRUE(original.is_unique());
}

TEST(AList, MatchesMakeNewLists)
{
    const AList<int> list{1, 2, 3, 4};
    const AFunction1R<bool, const int&> even([](const int& i) { return i % 2 == 0; });
    EXPECT_EQ(ints_of(list.find_matches(even)), (Ints{2, 4}));
    EXPECT_EQ(ints_of(list.remove_matches(even)), (Ints{1, 3}));
    EXPECT_EQ(ints_of(list.find_matches({})), Ints{});
    AList<int> twos{2, 1, 2, 2};
    EXPECT_EQ(twos.remove_item(2), 3u);
    EXPECT_EQ(ints_of(twos), Ints{1});
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
    AList<AString> list{AString::l1("a"), AString::l1("b"), AString::l1("c"), AString::l1("d")};
    auto on_a = list.begin();
    auto on_b = ++list.begin();
    EXPECT_EQ(list.pop_front(), AString::l1("a"));
    EXPECT_EQ(list.pop_front(), AString::l1("b"));
    EXPECT_EQ(*on_a, AString::l1("a"));
    ++on_a;
    EXPECT_TRUE(on_a == on_b);
    EXPECT_EQ(*on_b, AString::l1("b"));
    ++on_b;
    EXPECT_EQ(*on_b, AString::l1("c"));
    EXPECT_TRUE(on_b == list.begin());
    --on_a;
    EXPECT_TRUE(on_a == list.end());

    list.clear();
    EXPECT_EQ(*on_b, AString::l1("c"));
    ++on_b;
    EXPECT_TRUE(on_b == list.end());
    ++on_b;
    EXPECT_FALSE(on_b.valid());
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

TEST(AList, ADeepTreeEndsInALoop)
{
    Tree root;
    for (int i = 0; i < 300000; ++i) {
        Tree parent;
        parent.value = i;
        parent.children.push_back(std::move(root));
        root = std::move(parent);
    }
    EXPECT_EQ(root.value, 299999);
    const Tree copy = root;
    EXPECT_FALSE(root.children.is_unique());
}

TEST(AList, CopiesOnManyThreads)
{
    AList<AString> source;
    for (unsigned i = 0; i < 50; ++i)
        source.push_back(AString::from_unsigned(i));
    std::atomic<unsigned> wrong{0};
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t)
        threads.emplace_back([copy = source, t, &wrong]() mutable {
            for (unsigned round = 0; round < 200; ++round) {
                AList<AString> mine = copy;
                mine.at(t) = AString::l1("changed");
                mine.pop_back();
                unsigned i = 0;
                for (const AString& item : std::as_const(copy))
                    wrong += item != AString::from_unsigned(i++);
                wrong += mine.size() != 49 || mine.const_at(t) != AString::l1("changed");
            }
        });
    source.clear();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0u);
}

TEST(AStringList, TakesSeveralAtOnce)
{
    AStringList list{AString::l1("a"), AString::l1("b"), AString::l1("ab")};
    EXPECT_EQ(list.filter(AString::l1("a")).join(AString::l1(", ")), AString::l1("a, ab"));
    EXPECT_EQ(AString(list.pop_back(2)), AString::l1("bab"));
    list += list + AString::l1("y");
    EXPECT_EQ(AString(list.pop_front(9)), AString::l1("aay"));
    EXPECT_TRUE(list.empty());
}

} // namespace
