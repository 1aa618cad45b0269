// Atomic words: what each operation gives and leaves, at the borders where it could wrap or refuse.
#include <skuan/foundation/atomic.h>

#include <support/scale.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <vector>

namespace {

TEST(AtomicUnsigned, EveryChangeGivesWhatItLeaves)
{
    using Change = unsigned (*)(AtomicUnsigned&);
    const struct
    {
        Change change;
        unsigned expected; // from 12
    } rows[] = {
        {[](AtomicUnsigned& w) { return ++w; }, 13},
        {[](AtomicUnsigned& w) { return --w; }, 11},
        {[](AtomicUnsigned& w) { return w -= 13; }, ~0u},
        {[](AtomicUnsigned& w) { return w /= 0; }, 12},
        {[](AtomicUnsigned& w) { return w &= 6; }, 4},
        {[](AtomicUnsigned& w) { return w.and_not(4); }, 8},
        {[](AtomicUnsigned& w) { return w.set_bit(31); }, 0x8000000C},
        {[](AtomicUnsigned& w) { return w.set_bit(32); }, 12},
        {[](AtomicUnsigned& w) { return w.clear_bit(3); }, 4},
    };
    for (const auto& row : rows) {
        AtomicUnsigned word(12);
        EXPECT_EQ(row.change(word), row.expected);
        EXPECT_EQ(word.get(), row.expected);
    }
    AtomicUnsigned word(12);
    EXPECT_EQ(word++, 12u);
    EXPECT_EQ(word--, 13u);
    EXPECT_FALSE(AtomicUnsigned(~0u).get_bit(32));
}

TEST(AtomicUnsigned, ConditionalChangesRefuseAtTheirBorders)
{
    using Change = bool (*)(AtomicUnsigned&);
    const struct
    {
        unsigned before;
        Change change;
        bool changed;
        unsigned after;
    } rows[] = {
        {5, [](AtomicUnsigned& w) { return w.increase_by(1, 5); }, false, 5},
        {9, [](AtomicUnsigned& w) { return w.increase_by(0, 5); }, false, 9},
        {~0u, [](AtomicUnsigned& w) { return w.increase_by(2, ~0u); }, false, ~0u},
        {1, [](AtomicUnsigned& w) { return w.increase_by(~0u - 1, ~0u); }, true, ~0u},
        {0, [](AtomicUnsigned& w) { return w.decrease(0); }, false, 0},
        {1, [](AtomicUnsigned& w) { return w.decrease(0); }, true, 0},
        {5, [](AtomicUnsigned& w) { return w.decrease_by(3, 3); }, false, 5},
        {5, [](AtomicUnsigned& w) { return w.decrease_by(6, 0); }, false, 5},
        {3, [](AtomicUnsigned& w) { return w.Max(4); }, true, 4},
        {4, [](AtomicUnsigned& w) { return w.Max(4); }, false, 4},
        {4, [](AtomicUnsigned& w) { return w.Min(3); }, true, 3},
        {4, [](AtomicUnsigned& w) { return w.test_and_set(5, 9); }, false, 4},
    };
    for (const auto& row : rows) {
        AtomicUnsigned word(row.before);
        EXPECT_EQ(row.change(word), row.changed) << &row - rows;
        EXPECT_EQ(word, row.after) << &row - rows;
    }
}

TEST(AtomicUnsigned, NothingIsLostBetweenThreads)
{
    constexpr unsigned rounds = support::scaled(100'000);
    AtomicUnsigned sum, reserved;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (unsigned n = 0; n < rounds; ++n) {
                ++sum;
                reserved.increase(rounds);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(sum, 4 * rounds);
    EXPECT_EQ(reserved, rounds);
}

template <typename Word, typename Add, typename Sub>
void expect_wrapping(Word top, Word bottom, Add add, Sub sub)
{
    volatile Word word = top;
    EXPECT_EQ(add(&word, Word(1)), bottom);
    EXPECT_EQ(word, bottom);
    EXPECT_EQ(sub(&word, Word(1)), top);
    EXPECT_EQ(word, top);
}

TEST(Atomic, ArithmeticGivesTheNewValueAndWraps)
{
    using namespace Atomic;
    const auto add_32 = [](auto* w, auto n) { return add32(w, n); };
    const auto sub_32 = [](auto* w, auto n) { return sub32(w, n); };
    const auto add_64 = [](auto* w, auto n) { return add64(w, n); };
    const auto sub_64 = [](auto* w, auto n) { return sub64(w, n); };
    expect_wrapping<std::int32_t>(INT32_MAX, INT32_MIN, add_32, sub_32);
    expect_wrapping<std::uint32_t>(UINT32_MAX, 0, add_32, sub_32);
    expect_wrapping<std::int64_t>(INT64_MAX, INT64_MIN, add_64, sub_64);
    expect_wrapping<std::uint64_t>(UINT64_MAX, 0, add_64, sub_64);
    expect_wrapping<std::uintptr_t>(
        UINTPTR_MAX, 0, [](auto* w, auto n) { return addptr(w, n); },
        [](auto* w, auto n) { return subptr(w, n); });

    char bytes[2];
    void* volatile place = &bytes[0];
    EXPECT_EQ(addptr(&place, 1), &bytes[1]);
    EXPECT_TRUE(casptr(&place, &bytes[1], &bytes[0]));
    EXPECT_FALSE(casptr(&place, &bytes[1], nullptr));
    EXPECT_EQ(place, &bytes[0]);
}

} // namespace
