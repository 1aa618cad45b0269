#include <skuan/foundation/portable_mutex.h>

#include <support/blocked_thread.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

bool other_thread_gets_in(PortableMutex& mutex)
{
    support::BlockedThread other([&] { PortableMutexLock lock(mutex); });
    other.wait_until_blocked();
    const bool in = other.ended();
    if (!in) // let it through, so that it can end
        while (mutex.release()) {
        }
    return in;
}

TEST(PortableMutex, IsRecursiveAndKnowsItsOwner)
{
    PortableMutex mutex;
    EXPECT_FALSE(mutex.release());
    EXPECT_TRUE(mutex.take());
    EXPECT_TRUE(mutex.take());
    std::thread([&] { EXPECT_FALSE(mutex.release()); }).join();
    EXPECT_TRUE(mutex.release());
    EXPECT_TRUE(mutex.held_here());
    EXPECT_TRUE(mutex.release());
    EXPECT_FALSE(mutex.held_here());
    EXPECT_FALSE(mutex.release());
    EXPECT_TRUE(other_thread_gets_in(mutex));
}

TEST(PortableMutex, DoesNothingWithoutAHandle)
{
    PortableMutex null(nullptr);
    EXPECT_FALSE(null.take());
    EXPECT_FALSE(null.release());
    EXPECT_FALSE(PortableMutexLock(null).ok());
    EXPECT_FALSE(PortableMutexLock().ok());
}

TEST(PortableMutexLock, HoldsUntilTheLastCopyGoes)
{
    PortableMutex mutex;
    {
        PortableMutexLock first(mutex);
        ASSERT_TRUE(first.ok());
        std::vector<PortableMutexLock> copies(5, first);
        first = PortableMutexLock();
        first = copies[2];
        first = *&first;
        copies.clear();
        PortableMutexLock moved = std::move(first);
        EXPECT_TRUE(mutex.held_here());
        EXPECT_FALSE(other_thread_gets_in(mutex));
        EXPECT_FALSE(mutex.held_here());
        mutex.take(); // the one that the token gives back
    }
    EXPECT_TRUE(other_thread_gets_in(mutex));
    const PortableMutexLock here(mutex);
    std::thread([&] { EXPECT_FALSE(PortableMutexLock(here).ok()); }).join(); // copied where it doesn't hold
}

} // namespace
