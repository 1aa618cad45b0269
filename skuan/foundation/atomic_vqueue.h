// A queue of pointers that any number of threads fill and empty without ever waiting for each other.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/atomic.h>
#include <skuan/foundation/atomic_void_vpointer.h>

/// First in, first out. Any number of producers and consumers, on any threads; lock-free. Memory is
/// allocated only when no free node is left over, and nodes serve all queues of the process for ever.
/// The pointers stay the caller's: `clear` and the destructor drop them.
class SKUAN_EXPORT AtomicVQueue
{
public:
    struct node_t;

    AtomicVQueue();
    ~AtomicVQueue(); ///< no other thread may be inside by then
    AtomicVQueue(const AtomicVQueue&) = delete;
    AtomicVQueue& operator=(const AtomicVQueue&) = delete;

    void enqueue(void* value);

    /// The oldest value, or null when the queue is empty. A null that was stored looks the same.
    void* dequeue();

    /// Drops values until the queue is empty.
    void clear();

    /// How many values there are to dequeue. While others are at work it may be behind, never ahead.
    unsigned size() const { return count_; }

private:
    // Each on a cache line of its own: producers write the tail, consumers the head, both the count.
    alignas(64) AtomicVoidVPointer head_; ///< the dummy node; its successor holds the oldest value
    alignas(64) AtomicVoidVPointer tail_; ///< the last node, or one before it for a moment
    alignas(64) AtomicUnsigned count_;
};
