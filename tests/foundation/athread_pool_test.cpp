#include <skuan/foundation/athread_pool.h>

#include <support/scale.h>

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace {

struct Work
{
    std::atomic<int> runs{0};
    std::mutex mutex;
    std::set<QString> names;
    AThreadPool* pool = nullptr;

    void run() { ++runs; }
    void note_name()
    {
        const std::lock_guard lock(mutex);
        names.insert(QThread::currentThread()->objectName());
    }
    void wait_for_another() { pool->run_job(AFunction::member<&Work::run>(this)); }
    void hand_in_another() { pool->add_job(AFunction::member<&Work::run>(this)); }
};

TEST(AThreadPool, CorrectsItsNumberOfThreads)
{
    struct Case
    {
        unsigned asked, given;
    };
    for (const Case& c : {Case{0, 1}, {1, 1}, {127, 127}, {128, 128}, {129, 128}, {~0u, 128}})
        EXPECT_EQ(AThreadPool(QStringLiteral("pool"), c.asked).thread_count(), c.given) << c.asked;
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

TEST(AThreadPool, NamesItsWorkers)
{
    Work work;
    AThreadPool pool(QStringLiteral("one %1"), 1);
    pool.run_job(AFunction::member<&Work::note_name>(&work));
    EXPECT_EQ(work.names, std::set<QString>{QStringLiteral("one %1 #0")});
}

TEST(AThreadPool, LetsManyThreadsWaitForTheirJobs)
{
    constexpr int rounds = support::scaled(20'000);
    Work work;
    AThreadPool pool(QStringLiteral("pool"), 2);
    work.pool = &pool;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < rounds; ++n)
                pool.run_job(AFunction::member<&Work::run>(&work));
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(work.runs, 3 * rounds);
    // A worker that waits for its own pool would wait for ever.
    pool.run_job(AFunction::member<&Work::wait_for_another>(&work));
    EXPECT_EQ(work.runs, 3 * rounds + 1);
}

} // namespace
