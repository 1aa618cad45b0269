#include <skuan/foundation/atomic_void_vpointer.h>

#include <support/on_threads.h>
#include <support/scale.h>

#include <gtest/gtest.h>

namespace {

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
