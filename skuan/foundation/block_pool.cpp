// The slow road of the block pool: a thread's second magazine, and the depot through which full
// magazines travel from threads that only free to threads that only allocate.
#include <skuan/foundation/block_pool.h>

#include <mutex>
#include <utility>

namespace skuan {

#ifdef __ELF__
__thread BlockMagazine block_magazines[block_kinds];
#else
static thread_local BlockMagazine block_magazines[block_kinds];
BlockMagazine& block_magazine(unsigned kind)
{
    return block_magazines[kind];
}
#endif

namespace {

constexpr unsigned magazine_size = 64;
constexpr std::size_t depot_bytes = 4u << 20; // kept per block size; what comes beyond goes to the heap

void free_all(FreeBlock* block)
{
    while (block)
        ::operator delete(std::exchange(block, block->next));
}

/// Full magazines of one block size. Never destroyed: strings may end after every static object.
class Depot
{
public:
    FreeBlock* take()
    {
        const std::lock_guard lock(mutex_);
        FreeBlock* const magazine = top_;
        if (magazine) {
            top_ = magazine->next_magazine;
            --count_;
        }
        return magazine;
    }

    void give(FreeBlock* magazine, unsigned kind)
    {
        const std::size_t bytes = (kind + 1) * block_grain * magazine_size;
        {
            const std::lock_guard lock(mutex_);
            if ((count_ + 1) * bytes <= depot_bytes) {
                magazine->next_magazine = top_;
                top_ = magazine;
                ++count_;
                return;
            }
        }
        free_all(magazine);
    }

private:
    std::mutex mutex_;
    FreeBlock* top_ = nullptr;
    std::size_t count_ = 0;
};

/// Ready for whoever comes first, be it another static object.
Depot& depot(unsigned kind)
{
    static Depot* const depots = new Depot[block_kinds];
    return depots[kind];
}

enum class ThreadLife : unsigned char { unknown, alive, over };
thread_local ThreadLife life = ThreadLife::unknown;   // no destructor: readable until the thread is gone
thread_local FreeBlock* spare_magazines[block_kinds]; // each null or full

/// Gives back what the thread holds when it ends. What is freed on it later goes to the heap.
struct ThreadEnd
{
    ~ThreadEnd()
    {
        life = ThreadLife::over;
        for (unsigned kind = 0; kind < block_kinds; ++kind) {
            if (FreeBlock* const spare = std::exchange(spare_magazines[kind], nullptr))
                depot(kind).give(spare, kind);
            BlockMagazine& magazine = block_magazines[kind];
            if (magazine.top && magazine.room == 0)
                depot(kind).give(magazine.top, kind);
            else
                free_all(magazine.top);
            magazine = {nullptr, 0};
        }
    }
};

/// True while the thread may keep blocks; the first call of a thread opens its magazines.
bool thread_keeps_blocks()
{
    if (life == ThreadLife::unknown) {
        static thread_local ThreadEnd end;
        (void)&end;
        life = ThreadLife::alive;
        for (BlockMagazine& magazine : block_magazines)
            magazine = {nullptr, magazine_size};
    }
    return life == ThreadLife::alive;
}

} // namespace

void* take_block_slowly(unsigned kind) noexcept
{
    if (thread_keeps_blocks()) {
        FreeBlock* magazine = std::exchange(spare_magazines[kind], nullptr);
        if (!magazine)
            magazine = depot(kind).take();
        if (magazine) {
            block_magazines[kind] = {magazine->next, 1};
            return magazine;
        }
    }
    return ::operator new((kind + 1) * block_grain, std::nothrow);
}

void give_block_slowly(unsigned kind, void* block) noexcept
{
    if (!thread_keeps_blocks())
        return ::operator delete(block);
    BlockMagazine& magazine = block_magazines[kind];
    if (magazine.room == 0) {
        if (spare_magazines[kind])
            depot(kind).give(spare_magazines[kind], kind);
        spare_magazines[kind] = magazine.top;
        magazine = {nullptr, magazine_size};
    }
    FreeBlock* const freed = static_cast<FreeBlock*>(block);
    freed->next = magazine.top;
    magazine.top = freed;
    --magazine.room;
}

} // namespace skuan
