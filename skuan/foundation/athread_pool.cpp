#include <skuan/foundation/athread_pool.h>

#include <skuan/foundation/aprotect.h>
#include <skuan/foundation/assertfail.h>

#include <utility>
#include <vector>

namespace {

/// How long a worker sleeps at most before it looks again, in milliseconds: several jobs may have come
/// with one wake-up, as the signal for them is binary.
constexpr unsigned look_again_ms = 100;

constexpr unsigned most_threads = 128;

thread_local bool is_worker = false;

/// Semaphores for those who wait for a job, used again and again.
AProtect<std::vector<BinarySemaphore*>>& free_semaphores()
{
    static auto* const list = new AProtect<std::vector<BinarySemaphore*>>; // outlives every waiter
    return *list;
}

struct GiveBack
{
    void operator()(BinarySemaphore* semaphore) const { free_semaphores().lock()->push_back(semaphore); }
};

std::unique_ptr<BinarySemaphore, GiveBack> borrow_semaphore()
{
    const auto list = free_semaphores().lock();
    if (list->empty())
        return std::unique_ptr<BinarySemaphore, GiveBack>(new BinarySemaphore(false));
    BinarySemaphore* const semaphore = list->back();
    list->pop_back();
    return std::unique_ptr<BinarySemaphore, GiveBack>(semaphore);
}

/// A job on whose end somebody waits; it lives on the waiter's stack.
struct AwaitedJob
{
    AFunction job;
    BinarySemaphore* done;

    void run()
    {
        job.run();
        done->semGive();
    }
};

} // namespace

void AThreadPoolData::add(AFunction job)
{
    {
        const PortableMutexLock lock(mutex_);
        jobs_.push_back(job);
    }
    work_.semGive();
}

void AThreadPoolData::work()
{
    AFunction job;
    for (bool ended = false; !ended;) {
        if (take(&job, &ended))
            job.run();
        else if (!ended)
            work_.semTake(look_again_ms);
    }
    work_.semGive(); // the next worker has to find out as well
}

void AThreadPoolData::stop()
{
    {
        const PortableMutexLock lock(mutex_);
        stopped_ = true;
    }
    work_.semGive();
}

bool AThreadPoolData::take(AFunction* job, bool* ended)
{
    const PortableMutexLock lock(mutex_);
    if (jobs_.empty()) {
        *ended = stopped_;
        return false;
    }
    *job = jobs_.front();
    jobs_.pop_front();
    if (!jobs_.empty())
        work_.semGive(); // no need for the others to sleep out their time
    return true;
}

AThreadPoolThread::AThreadPoolThread(std::shared_ptr<AThreadPoolData> data) : data_(std::move(data)) {}

AThreadPoolThread::~AThreadPoolThread()
{
    wait();
}

void AThreadPoolThread::run()
{
    is_worker = true;
    data_->work();
}

AThreadPool::AThreadPool(const QString& name, unsigned athread_count)
    : data_(std::make_shared<AThreadPoolData>())
{
    const unsigned thread_count = athread_count == 0 ? 1 : athread_count > 127 ? most_threads : athread_count;
    (void)SKUAN_CHECK(thread_count == athread_count);
    for (unsigned i = 0; i < thread_count; ++i) {
        threads_.push_back(std::make_unique<AThreadPoolThread>(data_));
        threads_.back()->setObjectName(QStringLiteral("%1 #%2").arg(name, QString::number(i)));
        threads_.back()->start();
    }
}

AThreadPool::~AThreadPool()
{
    data_->stop();
}

void AThreadPool::add_job(AFunction job)
{
    data_->add(job);
}

void AThreadPool::run_job(AFunction job)
{
    if (is_worker)
        return job.run();
    const auto done = borrow_semaphore();
    AwaitedJob awaited{job, done.get()};
    data_->add(AFunction::member<&AwaitedJob::run>(&awaited));
    done->semTake();
}
