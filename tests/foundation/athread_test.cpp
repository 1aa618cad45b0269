#include <skuan/foundation/aref.h>
#include <skuan/foundation/areusable_ref_object.h>
#include <skuan/foundation/asemaphore_object.h>
#include <skuan/foundation/athread.h>
#include <skuan/foundation/athreaded_object.h>
#include <skuan/foundation/atimer.h>

#include <support/core_application.h>

#include <QPointer>

#include <atomic>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Qt_ = support::CoreApplication;

class Worker : public AThreadedObject
{
    Q_OBJECT

public:
    std::atomic<bool> initialised_first{false};
    std::atomic<int> calls{0};
    std::atomic<QThread*> ran_on{nullptr};

public Q_SLOTS:
    void call()
    {
        ran_on = QThread::currentThread();
        ++calls;
    }

protected:
    void threaded_init() override { initialised_first = calls == 0; }
};

TEST_F(Qt_, AThreadedObjectLivesOnItsOwnThread)
{
    auto* const worker = new Worker;
    QPointer<AThread> thread = worker->thread();
    EXPECT_NE(thread.data(), QThread::currentThread());
    for (int n = 0; n < 3; ++n)
        QMetaObject::invokeMethod(worker, "call", Qt::QueuedConnection);
    settle();
    EXPECT_EQ(worker->calls, 0) << "nothing arrives before the start";
    worker->start_thread();
    wait_until([&] { return worker->calls == 3; });
    EXPECT_TRUE(worker->initialised_first);
    EXPECT_EQ(worker->ran_on, thread.data());
    worker->deleteLater();
    wait_until([&] { return thread.isNull(); }); // deleted by this thread's event loop

    thread = std::make_unique<Worker>()->thread(); // never started, deleted from here
    wait_until([&] { return thread.isNull(); });
}

TEST_F(Qt_, AFlaggedTimerFiresOnceForManyStarts)
{
    ATimer timer(true);
    int fired = 0;
    QObject::connect(&timer, &ATimer::timeout, [&] { ++fired; });
    for (int round = 1; round <= 3; ++round) {
        std::thread([&] { timer.start(); }).join(); // from any thread
        for (int i = 0; i < 10; ++i)
            i % 2 ? timer.start() : timer.start(0);
        settle();
        EXPECT_EQ(fired, round);
        EXPECT_FALSE(timer.isActive());
    }
    timer.start(3'600'000); // another interval is a plain start, and ends the coalescing
    timer.start(0);
    settle();
    EXPECT_EQ(fired, 4);
}

TEST_F(Qt_, APlainTimerStartsOnItsOwnThread)
{
    ATimer timer;
    timer.setInterval(1);
    QThread* fired_on = nullptr;
    QObject::connect(&timer, &ATimer::timeout, [&] { fired_on = QThread::currentThread(); });
    std::thread([&] { timer.start(); }).join();
    wait_until([&] { return fired_on != nullptr; });
    EXPECT_EQ(fired_on, timer.thread());
    EXPECT_TRUE(timer.isActive()) << "a plain timer repeats";
}

TEST_F(Qt_, ASemaphoreAnnouncesWhatIsStillFree)
{
    ASemaphoreObject semaphore(1, nullptr);
    int announced = 0, internal = 0;
    QObject::connect(&semaphore, qNonConstOverload<>(&ASemaphoreObject::available), [&] { ++announced; });
    QObject::connect(&semaphore, &ASemaphoreObject::sig_avail, [&] { ++internal; });
    const auto free_now = [&] { return std::as_const(semaphore).available(); };

    EXPECT_EQ(free_now(), 1);
    semaphore.acquire();
    EXPECT_FALSE(semaphore.tryAcquire());
    semaphore.announce_available();
    settle();
    EXPECT_EQ(internal, 0);

    std::thread([&] { semaphore.release(2); }).join();
    EXPECT_EQ(announced, 0) << "only by this thread's event loop";
    settle();
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(free_now(), 2);

    semaphore.release(1);
    std::thread([&] { semaphore.acquire(3); }).join(); // before the queued call arrives
    settle();
    EXPECT_EQ(internal, 2);
    EXPECT_EQ(announced, 1);

    semaphore.release(-5);
    EXPECT_TRUE(semaphore.tryAcquire(-5));
    EXPECT_EQ(free_now(), 0);
}

TEST_F(Qt_, AReusableObjectIsHandedBackAndStaysAlive)
{
    AReusableRefObject object;
    std::vector<bool> releasable;
    QObject::connect(
        &object, &AReusableRefObject::zero_references, &object,
        [&](AReusableRefObject* given) {
            EXPECT_EQ(given, &object);
            releasable.push_back(given->releasable());
        },
        Qt::QueuedConnection);
    EXPECT_TRUE(object.releasable());
    {
        const AReference<AReusableRefObject> first(&object), second = first;
        EXPECT_FALSE(object.releasable());
        std::thread([third = first] {}).join();
        settle();
        EXPECT_TRUE(releasable.empty());
    }
    settle();
    EXPECT_EQ(releasable, std::vector<bool>{true});

    AReference<AReusableRefObject> held(&object);
    held = nullptr;
    held = &object; // again, before the owner looks
    settle();
    EXPECT_EQ(releasable, (std::vector<bool>{true, false}));
}

} // namespace

#include "athread_test.moc"
