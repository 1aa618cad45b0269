#include <skuan/foundation/athread_pool.h>

#include <support/on_threads.h>
#include <support/scale.h>

#include <gtest/gtest.h>

#include <atomic>

namespace {

struct Work
{
    std::atomic<int> runs{0};
    AThreadPool* pool = nullptr;

    void run() { ++runs; }
    void wait_for_another() { pool->run_job(AFunction::member<&Work::run>(this)); }
    void hand_in_another() { pool->add_job(AFunction::member<&Work::run>(this)); }
};

TEST(AThreadPool, CorrectsItsNumberOfThreads)
{
    for (const auto& [asked, given] : {std::pair{0u, 1u}, {128u, 128u}, {129u, 128u}, {~0u, 128u}})
        EXPECT_EQ(AThreadPool(QStringLiteral("pool"), asked).thread_count(), given) << asked;
}

TEST(AThreadPool, RunsEveryJobBeforeItEnds)
{
    for (int round = 0; round < 10; ++round) {
        Work work;
        {
            AThreadPool pool(QStringLiteral("pool"), 3);
            work.pool = &pool;
            for (int i = 0; i < 100; ++i)
                pool.add_job(i % 2 ? AFunction::member<&Work::run>(&work)
                                   : AFunction::member<&Work::hand_in_another>(&work));
            pool.add_job(AFunction());
        }
        EXPECT_EQ(work.runs, 100);
    }
}

TEST(AThreadPool, LetsManyThreadsWaitForTheirJobs)
{
    const int rounds = support::scaled_traffic(20'000);
    Work work;
    AThreadPool pool(QStringLiteral("pool"), 2);
    work.pool = &pool;
    support::on_threads(3, [&](unsigned) {
        for (int n = 0; n < rounds; ++n)
            pool.run_job(AFunction::member<&Work::run>(&work));
    });
    EXPECT_EQ(work.runs, 3 * rounds);
    // A worker that waits for its own pool would wait for ever.
    pool.run_job(AFunction::member<&Work::wait_for_another>(&work));
    EXPECT_EQ(work.runs, 3 * rounds + 1);
}

} // namespace
