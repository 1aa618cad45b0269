#include <skuan/foundation/atomic_void_vpointer.h>

#include <support/scale.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

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
    EXPECT_TRUE(p == &b);
    EXPECT_TRUE(other == &b);
    EXPECT_TRUE(p != other);
    EXPECT_TRUE(p.cas(p, other));
    EXPECT_TRUE(p == other);
    p.clearX();
    EXPECT_EQ(p.getX(), X());
    p = other;
    EXPECT_EQ(p.getX(), (X{&b, 3}));
    EXPECT_EQ(AtomicVoidVPointer(p).getX(), (X{&b, 3}));
}

/// A value whose pointer follows from its version, so that a reader can tell a torn one.
X whole(std::uintptr_t version)
{
    return {reinterpret_cast<void*>(version * 2654435761u), version};
}

TEST(AtomicVoidVPointer, NobodySeesHalfAValue)
{
    constexpr int rounds = support::scaled(2'000'000);
    AtomicVoidVPointer rising, wild; // the second one's versions go up and down
    rising.setX(whole(1));
    wild.setX(whole(1));
    std::vector<std::thread> threads;
    for (std::uintptr_t writer = 0; writer < 2; ++writer) {
        threads.emplace_back([&, writer] {
            for (int n = 0; n < rounds; ++n) {
                const X now = rising.risingX();
                rising.cas(now, whole(now.version + 1));
                wild.setX(whole(writer + 2 * (static_cast<std::uintptr_t>(n) % 3)));
            }
        });
    }
    for (int reader = 0; reader < 2; ++reader) {
        threads.emplace_back([&] {
            for (int n = 0; n < rounds; ++n) {
                for (const X& x : {rising.risingX(), rising.getX(), wild.getX()})
                    ASSERT_EQ(x.ptr, whole(x.version).ptr);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
