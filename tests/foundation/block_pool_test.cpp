// The block pool: blocks that wander between threads, and threads that end.
#include <skuan/foundation/block_pool.h>

#include <gtest/gtest.h>

#include <barrier>
#include <cstdint>
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

template <std::size_t Bytes>
void expect_usable()
{
    using Sized = skuan::BlockPool<Bytes>;
    void* const a = Sized::take();
    void* const b = Sized::take();
    EXPECT_NE(a, b);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(a) % alignof(std::max_align_t), 0u);
    std::memset(a, 0xAA, Bytes);
    std::memset(b, 0xBB, Bytes);
    EXPECT_EQ(static_cast<unsigned char*>(a)[Bytes - 1], 0xAA);
    Sized::give(a);
    Sized::give(b);
    Sized::give(nullptr);
}

TEST(BlockPool, EverySizeIsUsable)
{
    expect_usable<1>();
    expect_usable<16>();
    expect_usable<17>();
    expect_usable<272>();
    expect_usable<512>();
    expect_usable<513>();
    expect_usable<5000>();
}

TEST(BlockPool, BlocksInUseAreNeverHandedOutAgain)
{
    std::set<void*> in_use;
    std::vector<void*> order;
    unsigned state = 1;
    for (unsigned step = 0; step < 20000; ++step) {
        state = state * 1664525u + 1013904223u;
        if (order.empty() || (state >> 16) % 100 < 55) {
            void* const block = Pool::take();
            ASSERT_TRUE(in_use.insert(block).second);
            order.push_back(block);
        } else {
            std::swap(order[(state >> 8) % order.size()], order.back());
            in_use.erase(order.back());
            Pool::give(order.back());
            order.pop_back();
        }
    }
    for (void* block : order)
        Pool::give(block);
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

TEST(BlockPool, ManyThreadsExchangeBlocks)
{
    constexpr unsigned threads = 4;
    constexpr unsigned per_turn = 300;
    std::vector<std::vector<void*>> hands(threads, std::vector<void*>(per_turn));
    std::barrier step(threads);
    std::vector<std::thread> running;
    for (unsigned t = 0; t < threads; ++t)
        running.emplace_back([&, t] {
            for (unsigned turn = 0; turn < 100; ++turn) {
                for (unsigned i = 0; i < per_turn; ++i)
                    hands[t][i] = marked_block(t * 64 + i);
                step.arrive_and_wait();
                const unsigned from = (t + 1 + turn) % threads;
                for (unsigned i = 0; i < per_turn; ++i) {
                    EXPECT_TRUE(is_marked(hands[from][i], from * 64 + i));
                    Pool::give(hands[from][i]);
                }
                step.arrive_and_wait();
            }
        });
    for (std::thread& thread : running)
        thread.join();
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
