#include <skuan/platform/thread.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using skuan::platform::Thread;

namespace {

TEST(Thread, OffersTheStackThatWasAskedFor)
{
    static constexpr std::size_t stack = 0x10000;
    std::atomic<unsigned> sum{0};
    Thread thread;
    ASSERT_TRUE(thread.start(
        [](void* out) {
            volatile char room[stack - 512]; // all but the frames around it
            for (std::size_t i = 0; i < sizeof room; ++i)
                room[i] = 1;
            unsigned total = 0;
            for (const volatile char& c : room)
                total += static_cast<unsigned>(c);
            *static_cast<std::atomic<unsigned>*>(out) = total;
        },
        &sum, stack));
    thread.join();
    EXPECT_EQ(sum, stack - 512);
}

TEST(Thread, RunsOneAfterTheOtherAndJoinsWhenItGoes)
{
    std::atomic<int> runs{0};
    const auto count = [](void* sum) { ++*static_cast<std::atomic<int>*>(sum); };
    {
        Thread thread;
        thread.join(); // there is none yet
        EXPECT_FALSE(thread.start(nullptr, nullptr, 0));
        EXPECT_TRUE(thread.start(count, &runs, 0));
        EXPECT_TRUE(thread.start(count, &runs, 0));
        EXPECT_GE(runs, 1);
    }
    EXPECT_EQ(runs, 2);
}

TEST(Thread, MayJoinItself)
{
    struct Own
    {
        Thread thread;
        std::atomic<bool> started{false}, joined{false};
    } own;
    ASSERT_TRUE(own.thread.start(
        [](void* given) {
            auto* const self = static_cast<Own*>(given);
            while (!self->started)
                std::this_thread::yield();
            self->thread.join();
            self->joined = true;
        },
        &own, 0));
    own.started = true;
    while (!own.joined)
        std::this_thread::yield();
}

} // namespace
