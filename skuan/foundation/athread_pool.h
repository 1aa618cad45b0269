// Worker threads that run functions, one after the other as they were handed in.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/afunction.h>
#include <skuan/foundation/portable_mutex.h>
#include <skuan/foundation/semaphore.h>

#include <QString>
#include <QThread>

#include <list>
#include <memory>

/// What a pool and its workers share. Any thread.
class SKUAN_EXPORT AThreadPoolData
{
public:
    void add(AFunction job);

    /// Runs jobs until `stop` was called and none is left.
    void work();

    /// Lets the workers end, each as soon as it finds no job.
    void stop();

private:
    /// Takes the first job into `*job`. False if there is none; `*ended` then says whether there will
    /// ever be one.
    bool take(AFunction* job, bool* ended);

    BinarySemaphore work_{false}; ///< given when there may be something to do
    PortableMutex mutex_;         ///< guards what follows
    std::list<AFunction> jobs_;
    bool stopped_ = false;
};

/// One worker.
class SKUAN_EXPORT AThreadPoolThread : public QThread
{
    Q_OBJECT

public:
    explicit AThreadPoolThread(std::shared_ptr<AThreadPoolData> data);
    ~AThreadPoolThread() override; ///< waits for the end of the thread

protected:
    void run() override;

private:
    std::shared_ptr<AThreadPoolData> data_;
};

/// A fixed number of workers, named "pool #0", "pool #1" and so on. Jobs may be handed in by any
/// thread, a job included. Every job handed in is run: the destructor waits until all are done and
/// the workers have ended. It must not be called by a job, and nothing may be handed in from then on,
/// but by the jobs themselves.
class SKUAN_EXPORT AThreadPool
{
public:
    /// `athread_count` is 1 to 128; 0 is taken for 1 and more for 128, with an assertion.
    AThreadPool(const QString& name, unsigned athread_count);
    ~AThreadPool();
    AThreadPool(const AThreadPool&) = delete;
    AThreadPool& operator=(const AThreadPool&) = delete;

    unsigned thread_count() const { return static_cast<unsigned>(threads_.size()); }

    /// Queues `job` and returns. What it is bound to has to live until it has run.
    void add_job(AFunction job);

    /// Queues `job` and waits until it has run. Called by a worker of any pool it runs at once, on that
    /// worker, since a pool whose workers wait for one another would stand still.
    void run_job(AFunction job);

private:
    std::shared_ptr<AThreadPoolData> data_;
    std::list<std::unique_ptr<AThreadPoolThread>> threads_;
};
