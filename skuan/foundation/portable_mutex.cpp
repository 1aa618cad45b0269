#include <skuan/foundation/portable_mutex.h>

#include <skuan/foundation/assertfail.h>

bool PortableMutex::take()
{
    if (null_)
        return false;
    if (!held_here()) {
        mutex_.lock();
        owner_.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }
    ++depth_;
    return true;
}

bool PortableMutex::release()
{
    if (null_ || !held_here())
        return false;
    if (--depth_ == 0) {
        owner_.store(std::thread::id(), std::memory_order_relaxed);
        mutex_.unlock();
    }
    return true;
}

void PortableMutexLock::drop()
{
    const bool released = mutex_->release();
    (void)SKUAN_CHECK(released);
}
