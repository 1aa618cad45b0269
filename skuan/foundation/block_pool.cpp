// The slow road of the block pool: a thread's second magazine, and the depot through which full
// magazines travel from threads that only free to threads that only allocate.
#include <skuan/foundation/block_pool.h>

#include <skuan/platform/thread_pointer.h>

#include <atomic>
#include <memory>
#include <type_traits>
#include <utility>

namespace skuan {
namespace {

constexpr unsigned magazine_size = 64;
constexpr std::size_t depot_bytes = 4u << 20; // kept per block size; what comes beyond goes to the heap

void free_all(FreeBlock* block)
{
    while (block)
        ::operator delete(std::exchange(block, block->next));
}

/// Full magazines of one block size. Never destroyed: strings may end after every static object. Nobody waits
/// for it: some systems end a process by stopping all threads but one wherever they are, be it in here, and
/// let that one destroy the static objects.
class Depot
{
public:
    FreeBlock* take()
    {
        if (in_use_.test_and_set(std::memory_order_acquire))
            return nullptr;
        FreeBlock* const magazine = top_;
        if (magazine) {
            top_ = magazine->next_magazine;
            --count_;
        }
        in_use_.clear(std::memory_order_release);
        return magazine;
    }

    void give(FreeBlock* magazine, unsigned kind)
    {
        const std::size_t bytes = (kind + 1) * block_grain * magazine_size;
        bool kept = false;
        if (!in_use_.test_and_set(std::memory_order_acquire)) {
            kept = (count_ + 1) * bytes <= depot_bytes;
            if (kept) {
                magazine->next_magazine = top_;
                top_ = magazine;
                ++count_;
            }
            in_use_.clear(std::memory_order_release);
        }
        if (!kept)
            free_all(magazine);
    }

private:
    std::atomic_flag in_use_;
    FreeBlock* top_ = nullptr;
    std::size_t count_ = 0;
};

// Ready before the first static object.
constinit Depot depots[block_kinds];
static_assert(std::is_trivially_destructible_v<Depot>);

struct ThreadBlocks
{
    BlockMagazine magazines[block_kinds];
    FreeBlock* spares[block_kinds] = {}; ///< each null or a full magazine

    void hand_back()
    {
        for (unsigned kind = 0; kind < block_kinds; ++kind) {
            if (spares[kind])
                depots[kind].give(spares[kind], kind);
            if (magazines[kind].top && magazines[kind].room == 0)
                depots[kind].give(magazines[kind].top, kind);
            else
                free_all(magazines[kind].top);
        }
    }
};

// What a thread shows before it keeps blocks, and after: nothing and no room, so nobody writes to it.
constinit ThreadBlocks unopened, closed;

} // namespace

#ifdef SKUAN_THREAD_DATA
SKUAN_THREAD_DATA BlockMagazine* block_magazines = unopened.magazines;
#else
BlockMagazine* thread_magazines() noexcept
{
    void* const own = platform::thread_pointer(platform::ThreadPointer::blocks);
    return own ? static_cast<ThreadBlocks*>(own)->magazines : unopened.magazines;
}
#endif

namespace {

/// False if the system has no room for it.
bool set_thread_blocks(ThreadBlocks* blocks);

/// What the thread frees or takes from now on is the heap's.
void end_thread(void* blocks)
{
    set_thread_blocks(&closed);
    const std::unique_ptr<ThreadBlocks> own(static_cast<ThreadBlocks*>(blocks));
    own->hand_back();
}

bool set_thread_blocks(ThreadBlocks* blocks)
{
    if (!platform::set_thread_pointer(platform::ThreadPointer::blocks, blocks, end_thread))
        return false;
#ifdef SKUAN_THREAD_DATA
    block_magazines = blocks->magazines;
#endif
    return true;
}

/// Null if the thread may keep none. The first call of a thread opens its magazines.
ThreadBlocks* thread_blocks()
{
    void* const own = platform::thread_pointer(platform::ThreadPointer::blocks);
    if (own)
        return own == &closed ? nullptr : static_cast<ThreadBlocks*>(own);
    std::unique_ptr<ThreadBlocks> blocks(new (std::nothrow) ThreadBlocks);
    if (!blocks || !set_thread_blocks(blocks.get()))
        return nullptr;
    for (BlockMagazine& magazine : blocks->magazines)
        magazine.room = magazine_size;
    return blocks.release();
}

} // namespace

void* take_block_slowly(unsigned kind) noexcept
{
    if (ThreadBlocks* const own = thread_blocks()) {
        FreeBlock* magazine = std::exchange(own->spares[kind], nullptr);
        if (!magazine)
            magazine = depots[kind].take();
        if (magazine) {
            own->magazines[kind] = {magazine->next, 1};
            return magazine;
        }
    }
    return ::operator new((kind + 1) * block_grain, std::nothrow);
}

void give_block_slowly(unsigned kind, void* block) noexcept
{
    ThreadBlocks* const own = thread_blocks();
    if (!own)
        return ::operator delete(block);
    BlockMagazine& magazine = own->magazines[kind];
    if (magazine.room == 0) {
        if (own->spares[kind])
            depots[kind].give(own->spares[kind], kind);
        own->spares[kind] = magazine.top;
        magazine = {nullptr, magazine_size};
    }
    FreeBlock* const freed = static_cast<FreeBlock*>(block);
    freed->next = magazine.top;
    magazine.top = freed;
    --magazine.room;
}

} // namespace skuan
