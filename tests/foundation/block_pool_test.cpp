// The block pool: blocks that wander between threads, and threads that end.
#include <skuan/foundation/block_pool.h>
#include <skuan/foundation/semaphore.h>

#include <support/thread_end.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <thread>
#include <vector>

namespace {

using Pool = skuan::BlockPool<96>;

TEST(BlockPool, BlocksFlowBackFromTheThreadThatFrees)
{
    constexpr unsigned rounds = 50;
    constexpr unsigned per_round = 1000;
    std::vector<void*> in_flight(per_round);
    std::set<void*> seen;
    BinarySemaphore made(false), freed(false);
    std::thread maker([&] {
        for (unsigned round = 0; round < rounds; ++round) {
            std::generate(in_flight.begin(), in_flight.end(), Pool::take);
            made.semGive();
            freed.semTake();
        }
    });
    for (unsigned round = 0; round < rounds; ++round) {
        made.semTake();
        const std::set<void*> now(in_flight.begin(), in_flight.end());
        EXPECT_EQ(now.size(), per_round) << "no block is given out twice";
        seen.insert(now.begin(), now.end());
        std::for_each(in_flight.begin(), in_flight.end(), Pool::give);
        freed.semGive();
    }
    maker.join();
#ifndef SKUAN_PLAIN_BLOCKS
    EXPECT_LT(seen.size(), per_round + 4 * 64); // and not 50 times as many
#endif
}

TEST(BlockPool, WorksWhileAThreadEnds)
{
    for (unsigned count : {0u, 1u, 63u, 64u, 65u, 300u}) {
        std::vector<void*> late;
        std::thread([count, &late] {
            support::at_thread_end([&late] { // when the thread's magazines have gone
                std::for_each(late.begin(), late.end(), Pool::give);
                for (unsigned i = 0; i < 200; ++i)
                    Pool::give(Pool::take());
            });
            for (unsigned i = 0; i < count; ++i)
                late.push_back(Pool::take());
            for (unsigned i = 0; i < 2 * count; ++i)
                Pool::give(Pool::take());
        }).join();
    }
}

} // namespace
