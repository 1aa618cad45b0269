// A recursive mutex that knows its owner, and the token of one lock that can be handed around. Built
// on the standard's mutex, so that the thread sanitizer sees every lock the library takes.
#pragma once

#include <skuan/export.h>

#include <atomic>
#include <cstddef>
#include <mutex>
#include <thread>

/// A mutex, recursive for the thread that owns it. Any thread. It has to outlive its locks.
class SKUAN_EXPORT PortableMutex
{
public:
    PortableMutex() = default;
    /// A null handle: there is nothing to lock, and every operation gives false.
    explicit PortableMutex(std::nullptr_t) : null_(true) {}
    PortableMutex(const PortableMutex&) = delete;
    PortableMutex& operator=(const PortableMutex&) = delete;

    bool is_null() const { return null_; }

    /// Takes the mutex, waiting with no time limit. The owner takes it again at once, and has to
    /// release it as often.
    bool take();

    /// Undoes one `take` of this thread. False, and nothing happens, if another thread or none owns
    /// the mutex.
    bool release();

    /// True while the calling thread owns the mutex.
    bool held_here() const { return owner_.load(std::memory_order_relaxed) == std::this_thread::get_id(); }

private:
    std::mutex mutex_;
    // Only the owner ever stores its own id here, so a thread that reads its own id is the owner,
    // and one that reads anything else, however old, is not.
    std::atomic<std::thread::id> owner_{};
    unsigned depth_ = 0; ///< takes not yet released; the owner's
    const bool null_ = false;
};

/// Holds one take of a mutex, or nothing. It may be copied and returned; the mutex is released when
/// the last copy goes. The mutex being recursive, a copy is simply a further take.
///
/// A lock belongs to the thread that took it: a copy made on another thread holds nothing, and the
/// last copy has to go on the thread that took it.
class SKUAN_EXPORT PortableMutexLock
{
public:
    PortableMutexLock() = default;
    /// Takes `mutex`; a null pointer or a null handle gives a lock that is not `ok`.
    explicit PortableMutexLock(PortableMutex* mutex) : mutex_(mutex && mutex->take() ? mutex : nullptr) {}
    explicit PortableMutexLock(PortableMutex& mutex) : PortableMutexLock(&mutex) {}
    PortableMutexLock(const PortableMutexLock& other)
        : PortableMutexLock(other.mutex_ && other.mutex_->held_here() ? other.mutex_ : nullptr)
    {
    }
    PortableMutexLock(PortableMutexLock&& other) noexcept : mutex_(other.mutex_) { other.mutex_ = nullptr; }
    ~PortableMutexLock()
    {
        if (mutex_)
            drop();
    }
    PortableMutexLock& operator=(PortableMutexLock other) noexcept
    {
        std::swap(mutex_, other.mutex_);
        return *this;
    }

    /// True while this token holds its mutex.
    bool ok() const { return mutex_ != nullptr; }

private:
    void drop();

    PortableMutex* mutex_ = nullptr;
};
