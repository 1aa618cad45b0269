// Atomic words: what each operation gives and leaves, at the borders where it could wrap or refuse.
#include <skuan/foundation/atomic.h>

#include <support/on_threads.h>
#include <support/scale.h>

#include <gtest/gtest.h>

#include <cstdint>

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
        {[](AtomicUnsigned& w) { return w /= 0; }, 12},
        {[](AtomicUnsigned& w) { return w.and_not(4); }, 8},
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
        {~0u, [](AtomicUnsigned& w) { return w.increase_by(2, ~0u); }, false, ~0u},
        {1, [](AtomicUnsigned& w) { return w.increase_by(~0u - 1, ~0u); }, true, ~0u},
        {0, [](AtomicUnsigned& w) { return w.decrease(0); }, false, 0},
        {1, [](AtomicUnsigned& w) { return w.decrease(0); }, true, 0},
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
    support::on_threads(4, [&](unsigned) {
        for (unsigned n = 0; n < rounds; ++n) {
            ++sum;
            reserved.increase(rounds);
        }
    });
    EXPECT_EQ(sum, 4 * rounds);
    EXPECT_EQ(reserved, rounds);
}

TEST(Atomic, ArithmeticGivesTheNewValueAndWraps)
{
    volatile std::int32_t small = INT32_MAX;
    EXPECT_EQ(Atomic::add32(&small, 1), INT32_MIN);
    EXPECT_EQ(Atomic::sub32(&small, 1), INT32_MAX);
    volatile std::int64_t large = INT64_MAX;
    EXPECT_EQ(Atomic::add64(&large, std::int64_t{1}), INT64_MIN);
    EXPECT_EQ(Atomic::sub64(&large, std::int64_t{1}), INT64_MAX);
    char bytes[2];
    void* volatile place = &bytes[0];
    EXPECT_EQ(Atomic::addptr(&place, 1), &bytes[1]);
    EXPECT_FALSE(Atomic::casptr(&place, &bytes[0], nullptr));
    EXPECT_EQ(place, &bytes[1]);
}

} // namespace
