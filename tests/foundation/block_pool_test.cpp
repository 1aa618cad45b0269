// The block pool: blocks that wander between threads, and threads that end.
#include <skuan/foundation/block_pool.h>

#include <gtest/gtest.h>

#include <barrier>
#include <cstring>
#include <set>
#include <thread>
#include <vector>

namespace {

constexpr std::size_t size = 96;
using Pool = skuan::BlockPool<size>;

void* marked_block(unsigned mark)
{
    void* const block = Pool::take();
    std::memset(block, static_cast<int>(mark & 0xFF), size);
    return block;
}

bool is_marked(const void* block, unsigned mark)
{
    const auto* bytes = static_cast<const unsigned char*>(block);
    for (std::size_t i = 0; i < size; ++i)
        if (bytes[i] != (mark & 0xFF))
            return false;
    return true;
}

TEST(BlockPool, BlocksFlowBackFromTheThreadThatFrees)
{
    constexpr unsigned rounds = 50;
    constexpr unsigned per_round = 1000;
    std::vector<void*> in_flight(per_round);
    std::set<void*> seen;
    std::barrier step(2);
    std::thread maker([&] {
        for (unsigned round = 0; round < rounds; ++round) {
            for (unsigned i = 0; i < per_round; ++i)
                in_flight[i] = marked_block(round + i);
            step.arrive_and_wait(); // made
            step.arrive_and_wait(); // freed
        }
    });
    for (unsigned round = 0; round < rounds; ++round) {
        step.arrive_and_wait();
        for (unsigned i = 0; i < per_round; ++i) {
            ASSERT_TRUE(is_marked(in_flight[i], round + i));
            seen.insert(in_flight[i]);
            Pool::give(in_flight[i]);
        }
        step.arrive_and_wait();
    }
    maker.join();
#ifndef SKUAN_PLAIN_BLOCKS
    EXPECT_LT(seen.size(), per_round + 4 * 64); // and not 50 times as many
#endif
}

/// Frees and takes while its thread is ending, after the thread's magazines have gone.
struct LateOnThread
{
    std::vector<void*> blocks;
    ~LateOnThread()
    {
        for (void* block : blocks)
            Pool::give(block);
        for (unsigned i = 0; i < 200; ++i)
            Pool::give(marked_block(i));
    }
};

TEST(BlockPool, WorksWhileAThreadEnds)
{
    for (unsigned count : {0u, 1u, 63u, 64u, 65u, 300u}) {
        std::thread([count] {
            static thread_local LateOnThread late; // made first, so it ends last
            for (unsigned i = 0; i < count; ++i)
                late.blocks.push_back(marked_block(i));
            for (unsigned i = 0; i < 2 * count; ++i)
                Pool::give(marked_block(i));
        }).join();
    }
}

} // namespace
