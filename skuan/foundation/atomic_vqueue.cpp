// The queue of Michael and Scott: a list with a dummy node in front, of which consumers move the head
// and producers the tail. Why it holds together:
//
// 1. Nodes are never given back to the heap. A thread with an outdated pointer reads a node that has
//    been freed, or freed and used again, but always a node; what it read leads to a swap that fails.
// 2. The versions of head, tail and every `next` only rise, so a swap against an outdated value fails
//    even if the pointer has come back.
// 3. The tail is moved on before the head may pass it, so it never points at a freed node.
// 4. A consumer reserves its value in the count first. The count is raised after the value is linked,
//    so whoever has a reservation finds a value.
#include <skuan/foundation/atomic_vqueue.h>

#include <skuan/foundation/assertfail.h>

#include <atomic>
#include <utility>

struct AtomicVQueue::node_t
{
    AtomicVoidVPointer next;
    /// The value; in a free node the next one of its chain. Atomic, since a late consumer may look
    /// at it while the node is being used again.
    std::atomic<void*> value{nullptr};
    std::atomic<node_t*> link{nullptr}; ///< in the first node of a free chain, the next chain
};

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

/// What a thread keeps of free nodes in front of the stack: two chains, so that a thread which goes
/// to and fro at the end of one does not visit the stack each time.
class ThreadCache
{
public:
    Node* take() { return working_.first ? working_.pop() : take_slowly(); }
    void give(Node* n)
    {
        if (working_.length < full)
            working_.push(n);
        else
            give_slowly(n);
    }

private:
    static constexpr unsigned full = 32;

    /// Hands the thread's nodes to the others when the thread ends.
    struct Closer
    {
        ThreadCache* cache;
        ~Closer();
    };

    /// Whether nodes may be kept: not any more once the thread is ending.
    bool open();
    Node* take_slowly();
    void give_slowly(Node* n);

    Chain working_{nullptr, full}; ///< looks full while not open, so that the first give opens it
    Chain spare_;                  ///< empty or full
    enum class State : unsigned char { unused, open, closed } state_ = State::unused;
};

ThreadCache::Closer::~Closer()
{
    cache->working_.hand_back();
    cache->spare_.hand_back();
    cache->working_.length = full;
    cache->state_ = State::closed;
}

bool ThreadCache::open()
{
    if (state_ == State::unused) {
        thread_local const Closer closer{this};
        state_ = State::open;
        working_ = Chain();
    }
    return state_ == State::open;
}

Node* ThreadCache::take_slowly()
{
    Chain fresh;
    if (open() && spare_.first)
        std::swap(fresh, spare_);
    else
        fresh = {pop_chain(), full};
    if (!fresh.first)
        return new Node;
    Node* const n = fresh.pop();
    if (state_ == State::open)
        working_ = fresh;
    else
        fresh.hand_back();
    return n;
}

void ThreadCache::give_slowly(Node* n)
{
    if (!open()) {
        Chain single;
        single.push(n);
        return single.hand_back();
    }
    if (working_.length >= full) {
        spare_.hand_back();
        std::swap(working_, spare_);
    }
    working_.push(n);
}

// It has no constructor and no destructor to go through, and so outlives its Closer.
constinit thread_local ThreadCache cache;

Node* take_node(void* value)
{
    Node* const n = cache.take();
    (void)SKUAN_CHECK(n->next == nullptr);
    n->value.store(value, std::memory_order_relaxed);
    return n;
}

void free_node(Node* n)
{
    if (!SKUAN_CHECK(n != nullptr))
        return;
    n->next = nullptr;
    cache.give(n);
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
