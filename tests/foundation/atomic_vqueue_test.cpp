#include <skuan/foundation/atomic_vqueue.h>

#include <support/on_threads.h>
#include <support/scale.h>
#include <support/thread_end.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <thread>
#include <vector>

namespace {

std::atomic<int> allocations{0};

} // namespace

// Counts what the whole program, the library included, takes from the heap.
void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    ++allocations;
    return std::malloc(size);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

/// What threads may hold back of free nodes, two chains each, on top of what the queues need.
constexpr int kept_by_a_thread = 64;

void* value(std::uintptr_t n)
{
    return reinterpret_cast<void*>(n);
}

TEST(AtomicVQueue, ServesThreadsThatAreEndingAndGetsTheirNodesBack)
{
    AtomicVQueue queue;
    const int before = allocations;
    constexpr int threads = 200;
    int ended = 0;
    for (int i = 0; i < threads; ++i) {
        std::thread([&] {
            support::at_thread_end([&] {
                for (int n = 0; n < 100; ++n)
                    queue.enqueue(value(1));
                queue.clear();
                ++ended;
            });
            queue.enqueue(value(1));
            queue.dequeue();
        }).join();
    }
    EXPECT_EQ(ended, threads);
    EXPECT_EQ(queue.size(), 0u);
    queue.enqueue(value(8)); // the destructor drops it
    // A thread itself costs an allocation or two; lost nodes would cost dozens.
    EXPECT_LE(allocations - before, 100 + 4 * threads);
}

// Producers and consumers on all cores. Every value names its producer and its turn, so a value that
// is lost, doubled or out of turn is seen.
TEST(AtomicVQueue, LosesAndDoublesNothing)
{
    const unsigned sides = std::max(2u, std::thread::hardware_concurrency());
    const std::uintptr_t turns = static_cast<unsigned>(support::scaled_traffic(20'000'000)) / sides;
    const unsigned most_in_queue = 2000; // producers wait then, so that the peak is known
    AtomicVQueue queue;
    std::atomic<std::uintptr_t> taken{0};
    std::vector<std::atomic<std::uint8_t>> seen(turns * sides);
    std::atomic<int> out_of_turn{0}, doubled{0};
    const int before = allocations;
    support::on_threads(2 * sides, [&](unsigned thread) {
        for (std::uintptr_t turn = 0; thread < sides && turn < turns; ++turn) {
            while (queue.size() > most_in_queue)
                std::this_thread::yield();
            queue.enqueue(value(1 + turn * sides + thread));
        }
        std::vector<std::uintptr_t> last(sides, 0);
        while (thread >= sides && taken < turns * sides) {
            const auto n = reinterpret_cast<std::uintptr_t>(queue.dequeue());
            if (n == 0) {
                std::this_thread::yield();
                continue;
            }
            ++taken;
            out_of_turn += n <= last[(n - 1) % sides];
            last[(n - 1) % sides] = n;
            doubled += seen[n - 1].exchange(1) != 0;
        }
    });
    EXPECT_EQ(taken, turns * sides);
    EXPECT_EQ(out_of_turn, 0);
    EXPECT_EQ(doubled, 0);
    EXPECT_EQ(queue.size(), 0u);
    EXPECT_EQ(queue.dequeue(), nullptr);
    const int threads_themselves = static_cast<int>(2 * sides) * 8;
    const int nodes = static_cast<int>(most_in_queue + sides + 2 * sides * kept_by_a_thread);
    EXPECT_LE(allocations - before, nodes + threads_themselves);
}

} // namespace
