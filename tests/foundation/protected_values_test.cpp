#include <skuan/foundation/aprotect.h>
#include <skuan/foundation/auto_release.h>
#include <skuan/foundation/run_once.h>

#include <support/on_threads.h>
#include <support/scale.h>

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <string>

namespace {

TEST(AProtect, ALockKeepsTheItemAndMayBeTakenAgain)
{
    std::optional<AProtect<std::string>> protect(std::in_place, std::string("kept"));
    const auto lock = protect->lock();
    const auto copy = protect->lock();
    protect.reset();
    EXPECT_EQ(*copy, "kept");
}

TEST(AProtect, KeepsThreadsApart)
{
    constexpr int rounds = support::scaled(200'000);
    AProtect<int> sum(0);
    support::on_threads(4, [sum](unsigned) {
        for (int n = 0; n < rounds; ++n)
            ++*sum.lock();
    });
    EXPECT_EQ(*sum.lock(), 4 * rounds);
}

struct Counter
{
    std::atomic<int> runs{0};
    void run() { ++runs; }
    AFunction function() { return AFunction::member<&Counter::run>(this); }
};

TEST(AutoRelease, RunsOnceWhenTheLastCopyGoes)
{
    Counter counter;
    {
        AutoRelease first(counter.function()), second = first, third;
        third = second;
        third = *&third;
        first.release();
        first.release();
        second = AutoRelease();
        const AutoRelease fourth = third;
        third.release();
        EXPECT_EQ(counter.runs, 0);
    }
    EXPECT_EQ(counter.runs, 1);
}

TEST(AutoRelease, RunsOnceHoweverManyThreadsRelease)
{
    const int rounds = support::scaled_traffic(2'000);
    for (int round = 0; round < rounds; ++round) {
        Counter counter;
        AutoRelease shared(counter.function());
        support::on_threads(2, [&shared, copy = shared](unsigned) mutable {
            shared.release();
            copy.release();
        });
        EXPECT_EQ(counter.runs, 1);
    }
}

int loaded = 0;
const RunOnce at_load_time([] { ++loaded; });

TEST(RunOnce, RunsAtLoadTimeAndOnceOnly)
{
    EXPECT_EQ(loaded, 1);
    const RunOnce copy(at_load_time);
    EXPECT_EQ(loaded, 1);
}

} // namespace
