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
    EXPECT_TRUE(thread.start([](void*) {}, nullptr, 0)); // joins the first before it starts the next
    EXPECT_EQ(sum, stack - 512);
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
