// A value that can only be reached through its lock.
#pragma once

#include <skuan/foundation/portable_mutex.h>

#include <memory>
#include <utility>

/// A handle on a `T` and the mutex that guards it: copies refer to the same item, which lives until
/// the last handle and the last lock have gone. Locking is any thread's; a single handle is assigned
/// or destroyed by one thread at a time.
///
///     AProtect<std::list<QByteArray>> queue;
///     queue.lock()->push_back(bytes);
template <typename T>
class AProtect
{
public:
    struct ItemObject
    {
        template <typename... Args>
        explicit ItemObject(Args&&... args) : value(std::forward<Args>(args)...)
        {
        }

        PortableMutex mutex;
        T value;
    };

    /// The way to the value, as long as it lives. May be copied and returned on the thread that took
    /// it; the thread that holds one may take further ones.
    class Lock
    {
    public:
        explicit Lock(const AProtect& protect) : item_(protect.item_), lock_(item_->mutex) {}

        T& operator*() const { return item_->value; }
        T* operator->() const { return &item_->value; }

    private:
        std::shared_ptr<ItemObject> item_;
        PortableMutexLock lock_; // after the item: it has to go first
    };

    /// A new item with the value `T()`.
    AProtect() : item_(std::make_shared<ItemObject>()) {}
    /// A new item with that value.
    explicit AProtect(T value) : item_(std::make_shared<ItemObject>(std::move(value))) {}
    // Copied, never moved from: a handle always has its item.
    AProtect(const AProtect&) = default;
    AProtect& operator=(const AProtect&) = default;

    /// Waits for the item's mutex with no time limit.
    Lock lock() const { return Lock(*this); }

private:
    std::shared_ptr<ItemObject> item_;
};
