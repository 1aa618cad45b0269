#include <skuan/foundation/semaphore.h>

#include <support/blocked_thread.h>
#include <support/on_threads.h>
#include <support/scale.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

namespace {

TEST(BinarySemaphore, CollapsesGives)
{
    BinarySemaphore empty(false);
    EXPECT_FALSE(empty.semTake(0));
    empty.semGive();
    empty.semGive();
    EXPECT_TRUE(empty.semTake());
    EXPECT_FALSE(empty.semTake(1));

    BinarySemaphore given(true);
    given.semGive(7); // would pass the maximum, so it changes nothing
    EXPECT_TRUE(given.semTake(0));
    EXPECT_FALSE(given.semTake(0));
}

TEST(CountingSemaphore, CountsUpToItsMaximum)
{
    CountingSemaphore semaphore(2, 5);
    semaphore.semGive(4); // refused as a whole
    semaphore.semTakeN(2);
    EXPECT_FALSE(semaphore.semTake(0));
    semaphore.semGive(5);
    semaphore.semTakeN(5);
    EXPECT_FALSE(semaphore.semTake(0));
    EXPECT_TRUE(CountingSemaphore(3, 0).semTake(0)); // bad numbers come into range
    EXPECT_TRUE(CountingSemaphore(~0u, ~0u).semTake(0));
}

TEST(CountingSemaphore, OneGiveWakesAsManyAsItGives)
{
    CountingSemaphore semaphore(0, 3);
    support::BlockedThread sleepers[] = {support::BlockedThread([&] { semaphore.semTake(); }),
                                         support::BlockedThread([&] { semaphore.semTake(60'000); }),
                                         support::BlockedThread([&] { semaphore.semTake(); })};
    for (const auto& sleeper : sleepers)
        sleeper.wait_until_blocked();
    semaphore.semGive(3);
    for (auto& sleeper : sleepers)
        sleeper.join();
    EXPECT_FALSE(semaphore.semTake(0));
}

// Short time limits make sleepers leave just while they are being woken: no give may be lost then.
TEST(CountingSemaphore, LosesAndInventsNothing)
{
    const int rounds = support::scaled(400'000);
    constexpr int givers = 2;
    CountingSemaphore semaphore(0, 0x7fffffff);
    std::atomic<int> taken{0};
    support::on_threads(givers + 3, [&](unsigned thread) {
        if (thread < givers)
            for (int n = 0; n < rounds; ++n)
                semaphore.semGive();
        else
            while (taken < givers * rounds)
                taken += semaphore.semTake(thread - givers);
    });
    EXPECT_EQ(taken, givers * rounds);
    EXPECT_FALSE(semaphore.semTake(0));
}

TEST(BinarySemaphore, MayGoAsSoonAsItIsTaken)
{
    const int rounds = support::scaled_traffic(20'000);
    std::atomic<BinarySemaphore*> to_give{nullptr};
    support::on_threads(2, [&](unsigned thread) {
        for (int n = 0; n < rounds; ++n) {
            if (thread == 0) {
                const auto semaphore = std::make_unique<BinarySemaphore>(false);
                to_give = semaphore.get();
                semaphore->semTake();
            } else {
                BinarySemaphore* semaphore = nullptr;
                while (!(semaphore = to_give.exchange(nullptr)))
                    std::this_thread::yield();
                semaphore->semGive();
            }
        }
    });
}

} // namespace
