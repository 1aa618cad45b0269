// The queue of Michael and Scott: a list with a dummy node in front, of which consumers move the head
// and producers the tail. Why it holds together:
//
// 1. Nodes are never given back to the heap. A thread with an outdated pointer reads a node that has
//    been freed, or freed and used again, but always a node; what it read leads to a swap that fails.
// 2. The versions of head, tail and every `next` only rise, so a swap against an outdated value fails
//    even if the pointer has come back. (With 32-bit pointers versions do wrap: see the versioned pointer.)
// 3. The tail is moved on before the head may pass it, so it never points at a freed node.
// 4. A consumer reserves its value in the count first. The count is raised after the value is linked,
//    so whoever has a reservation finds a value.
#include <skuan/foundation/atomic_vqueue.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/platform/thread_pointer.h>

#include <atomic>
#include <memory>
#include <new>
#include <utility>

struct AtomicVQueue::node_t
{
    AtomicVoidVPointer next;
    /// The value; in a free node the next one of its chain. Atomic, since a late consumer may look
    /// at it while the node is being used again.
    std::atomic<void*> value{nullptr};
    std::atomic<node_t*> link{nullptr}; ///< in the first node of a free chain, the next chain
};
static_assert(sizeof(AtomicVQueue::node_t) == 4 * sizeof(void*));

namespace {

using Node = AtomicVQueue::node_t;
using X = AtomicVoidVPointer::X;

Node* node(const X& x)
{
    return static_cast<Node*>(x.ptr);
}

/// The process-wide stack of free nodes. It is kept in chains, so that a thread moves many at a swap.
alignas(64) AtomicVoidVPointer free_chains;

void push_chain(Node* chain)
{
    for (;;) {
        const X top = free_chains.risingX();
        chain->link.store(node(top), std::memory_order_relaxed);
        if (free_chains.casv(top, chain))
            return;
    }
}

Node* pop_chain()
{
    for (;;) {
        const X top = free_chains.risingX();
        // The link may be outdated already: then the swap fails.
        if (!top.ptr || free_chains.casv(top, node(top)->link.load(std::memory_order_relaxed)))
            return node(top);
    }
}

/// A chain of free nodes that one thread builds up and takes apart.
struct Chain
{
    Node* first = nullptr;
    unsigned length = 0; ///< an upper bound: a chain from the stack may be shorter

    void push(Node* n)
    {
        n->value.store(first, std::memory_order_relaxed);
        first = n;
        ++length;
    }
    Node* pop()
    {
        Node* const n = first;
        first = static_cast<Node*>(n->value.load(std::memory_order_relaxed));
        length = first ? length - 1 : 0;
        return n;
    }
    void hand_back()
    {
        if (first)
            push_chain(first);
        *this = Chain();
    }
};

constexpr unsigned full = 32;

/// What a thread keeps of free nodes in front of the stack: two chains, so that a thread which goes
/// to and fro at the end of one does not visit the stack each time.
class ThreadCache
{
public:
    constexpr explicit ThreadCache(Chain working = Chain()) : working_(working) {}
    static ThreadCache& mine()
    {
        void* const cache = skuan::platform::thread_pointer(pointer);
        return cache ? *static_cast<ThreadCache*>(cache) : open();
    }

    Node* take() { return working_.first ? working_.pop() : take_slowly(); }
    void give(Node* n)
    {
        if (working_.length < full)
            working_.push(n);
        else
            give_slowly(n);
    }

private:
    static constexpr auto pointer = skuan::platform::ThreadPointer::nodes;
    static ThreadCache closed;

    static ThreadCache& open();
    static void end_thread(void* cache);
    Node* take_slowly();
    void give_slowly(Node* n);

    Chain working_;
    Chain spare_; ///< empty or full
};

/// For threads that may keep no nodes: it is empty and looks full, so that it is never written to.
constinit ThreadCache ThreadCache::closed(Chain{nullptr, full});

ThreadCache& ThreadCache::open()
{
    std::unique_ptr<ThreadCache> cache(new (std::nothrow) ThreadCache);
    if (!cache || !skuan::platform::set_thread_pointer(pointer, cache.get(), end_thread))
        return closed;
    return *cache.release();
}

/// Hands the thread's nodes to the others.
void ThreadCache::end_thread(void* cache)
{
    skuan::platform::set_thread_pointer(pointer, &closed, end_thread);
    const std::unique_ptr<ThreadCache> own(static_cast<ThreadCache*>(cache));
    own->working_.hand_back();
    own->spare_.hand_back();
}

Node* ThreadCache::take_slowly()
{
    Chain fresh = spare_.first ? std::exchange(spare_, Chain()) : Chain{pop_chain(), full};
    if (!fresh.first)
        return new Node;
    Node* const n = fresh.pop();
    if (this == &closed)
        fresh.hand_back();
    else
        working_ = fresh;
    return n;
}

void ThreadCache::give_slowly(Node* n)
{
    if (this == &closed) {
        Chain single;
        single.push(n);
        return single.hand_back();
    }
    spare_.hand_back();
    spare_ = std::exchange(working_, Chain());
    working_.push(n);
}

Node* take_node(void* value)
{
    Node* const n = ThreadCache::mine().take();
    (void)SKUAN_CHECK(n->next == nullptr);
    n->value.store(value, std::memory_order_relaxed);
    return n;
}

void free_node(Node* n)
{
    if (!SKUAN_CHECK(n != nullptr))
        return;
    n->next = nullptr;
    ThreadCache::mine().give(n);
}

} // namespace

AtomicVQueue::AtomicVQueue()
{
    Node* const dummy = take_node(nullptr);
    head_ = dummy;
    tail_ = dummy;
}

AtomicVQueue::~AtomicVQueue()
{
    clear();
    free_node(static_cast<Node*>(head_.ptr()));
}

void AtomicVQueue::enqueue(void* value)
{
    Node* const fresh = take_node(value);
    for (;;) {
        const X tail = tail_.risingX();
        const X next = node(tail)->next.risingX();
        if (tail_.version() != tail.version)
            continue;
        if (next.ptr) {
            tail_.casv(tail, next.ptr);
        } else if (node(tail)->next.casv(next, fresh)) {
            tail_.casv(tail, fresh);
            break;
        }
    }
    ++count_;
}

void* AtomicVQueue::dequeue()
{
    if (count_ == 0 || !count_.decrease_by(1, 0))
        return nullptr;
    for (;;) {
        const X head = head_.risingX();
        const X tail = tail_.risingX();
        const X next = node(head)->next.risingX();
        if (head_.version() != head.version)
            continue;
        if (head.ptr != tail.ptr) {
            void* const value = node(next)->value.load(std::memory_order_relaxed);
            if (head_.casv(head, next.ptr)) {
                free_node(node(head));
                return value;
            }
        } else if (next.ptr) {
            tail_.casv(tail, next.ptr);
        } else {
            (void)SKUAN_CHECK(next.ptr != nullptr);
            return nullptr;
        }
    }
}

void AtomicVQueue::clear()
{
    while (count_ != 0)
        dequeue();
}
