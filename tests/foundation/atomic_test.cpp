// Atomic words, alone and two together: what each operation gives and leaves, at the borders where it could
// wrap or refuse, and that nobody sees half of it.
#include <skuan/foundation/atomic.h>
#include <skuan/foundation/atomic_void_vpointer.h>

#include <support/on_threads.h>
#include <support/scale.h>

#include <gtest/gtest.h>

#include <cstdint>

namespace {

TEST(AtomicUnsigned, ChangesGiveWhatTheyLeaveOrWhetherTheyDid)
{
    const struct
    {
        unsigned before;
        unsigned (*change)(AtomicUnsigned&);
        unsigned gives, after;
    } rows[] = {
        {12, [](auto& w) { return ++w; }, 13, 13},
        {12, [](auto& w) { return --w; }, 11, 11},
        {12, [](auto& w) { return w++; }, 12, 13},
        {12, [](auto& w) { return w--; }, 12, 11},
        {12, [](auto& w) { return w /= 0; }, 12, 12},
        {12, [](auto& w) { return w.and_not(4); }, 8, 8},
        {12, [](auto& w) { return w.set_bit(32); }, 12, 12},
        {12, [](auto& w) { return w.clear_bit(3); }, 4, 4},
        {~0u, [](auto& w) { return unsigned{w.get_bit(32)}; }, false, ~0u},
        {5, [](auto& w) { return unsigned{w.increase_by(1, 5)}; }, false, 5},
        {~0u, [](auto& w) { return unsigned{w.increase_by(2, ~0u)}; }, false, ~0u},
        {1, [](auto& w) { return unsigned{w.increase_by(~0u - 1, ~0u)}; }, true, ~0u},
        {0, [](auto& w) { return unsigned{w.decrease(0)}; }, false, 0},
        {1, [](auto& w) { return unsigned{w.decrease(0)}; }, true, 0},
        {5, [](auto& w) { return unsigned{w.decrease_by(6, 0)}; }, false, 5},
        {3, [](auto& w) { return unsigned{w.Max(4)}; }, true, 4},
        {4, [](auto& w) { return unsigned{w.Max(4)}; }, false, 4},
        {4, [](auto& w) { return unsigned{w.Min(3)}; }, true, 3},
        {4, [](auto& w) { return unsigned{w.test_and_set(5, 9)}; }, false, 4},
    };
    for (const auto& row : rows) {
        AtomicUnsigned word(row.before);
        EXPECT_EQ(row.change(word), row.gives) << &row - rows;
        EXPECT_EQ(word.get(), row.after) << &row - rows;
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

using X = AtomicVoidVPointer::X;

int a, b;

TEST(AtomicVoidVPointer, ChangesBothWordsTogether)
{
    AtomicVoidVPointer p;
    EXPECT_EQ(p.getX(), X());
    p = &a;
    EXPECT_EQ(p.getX(), (X{&a, 1}));
    p = &a;
    EXPECT_EQ(p.getX(), (X{&a, 2}));
    EXPECT_EQ(p.risingX(), p.getX());

    EXPECT_FALSE(p.cas(X{&a, 1}, X{&b, 9})); // the version alone differs
    EXPECT_FALSE(p.cas(X{&b, 2}, X{&b, 9})); // the pointer alone differs
    EXPECT_EQ(p.getX(), (X{&a, 2}));
    EXPECT_TRUE(p.cas(X{&a, 2}, X{&b, 9}));
    EXPECT_FALSE(p.casv(X{&b, 8}, &a));
    EXPECT_TRUE(p.casv(X{&b, 9}, &a));
    EXPECT_EQ(p.getX(), (X{&a, 10}));

    AtomicVoidVPointer other;
    other.setX(X{&b, 3});
    EXPECT_TRUE(p.casv(p, other)); // the pointer of the one, the next version of the other
    EXPECT_EQ(p.getX(), (X{&b, 11}));
    EXPECT_TRUE(p != other);
    EXPECT_TRUE(p.cas(p, other));
    EXPECT_TRUE(p == other);
    p.clearX();
    EXPECT_EQ(p.getX(), X());
}

/// A value whose pointer follows from its version, so that a reader can tell a torn one.
X whole(std::uintptr_t version)
{
    return {reinterpret_cast<void*>(version * 2654435761u), version};
}

TEST(AtomicVoidVPointer, NobodySeesHalfAValue)
{
    constexpr unsigned rounds = support::scaled(2'000'000);
    AtomicVoidVPointer rising, wild; // the second one's versions go up and down
    rising.setX(whole(1));
    wild.setX(whole(1));
    support::on_threads(4, [&](unsigned thread) {
        for (unsigned n = 0; n < rounds; ++n) {
            if (thread < 2) {
                const X now = rising.risingX();
                rising.cas(now, whole(now.version + 1));
                wild.setX(whole(thread + 2 * (n % 3)));
            } else {
                for (const X& x : {rising.risingX(), rising.getX(), wild.getX()})
                    ASSERT_EQ(x.ptr, whole(x.version).ptr);
            }
        }
    });
}

} // namespace
