// Fixed-size blocks for the small values that are made and dropped all day: string storages and list
// entries. A general heap takes 20 to 50 ns for a block that comes back on another thread; this takes
// a few, because a thread deals with its own magazine and meets the others once in 64 blocks.
#pragma once

#include <skuan/export.h>

#include <cstddef>
#include <new>

// A sanitizer has to see every block come from and go back to the heap, or use after free hides.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define SKUAN_PLAIN_BLOCKS 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SKUAN_PLAIN_BLOCKS 1
#endif

namespace skuan {

/// A free block, as it waits for use.
struct FreeBlock
{
    FreeBlock* next;
    FreeBlock* next_magazine; ///< of the depot; set only in the first block of a full magazine
};

/// The blocks of one size that one thread has at hand. `room` says how many more it takes; both words
/// are 0 on a thread that is new or has ended its life, so that each first touch takes the slow road.
struct BlockMagazine
{
    FreeBlock* top = nullptr;
    unsigned room = 0;
};

inline constexpr std::size_t block_grain = 16;
inline constexpr std::size_t largest_pooled_block = 512;
inline constexpr unsigned block_kinds = largest_pooled_block / block_grain;

SKUAN_EXPORT void* take_block_slowly(unsigned kind) noexcept;
SKUAN_EXPORT void give_block_slowly(unsigned kind, void* block) noexcept;

// The calling thread's magazines, one of each kind. Where a library can export data of each thread's own, the
// export header says how to declare them: that saves a call, an eighth of the time that a short string takes.
#ifdef SKUAN_THREAD_DATA
extern SKUAN_EXPORT SKUAN_THREAD_DATA BlockMagazine* block_magazines;
inline BlockMagazine* thread_magazines()
{
    return block_magazines;
}
#else
SKUAN_EXPORT BlockMagazine* thread_magazines() noexcept;
#endif

/// Blocks of `Bytes` bytes, aligned as operator new aligns. A block may be given back on any thread,
/// also while the thread or the process ends. Larger sizes than `largest_pooled_block` go to the heap.
/// Every block is a heap allocation by itself, so code compiled with and without a sanitizer may mix.
template <std::size_t Bytes>
class BlockPool
{
public:
    /// Null when there is no memory.
    static void* take() noexcept
    {
#ifndef SKUAN_PLAIN_BLOCKS
        if constexpr (pooled) {
            BlockMagazine& magazine = thread_magazines()[kind];
            FreeBlock* const block = magazine.top;
            if (!block)
                return take_block_slowly(kind);
            magazine.top = block->next;
            ++magazine.room;
            return block;
        }
#endif
        return ::operator new(size, std::nothrow);
    }

    /// Takes back what `take` of the same size gave; null is nothing.
    static void give(void* block) noexcept
    {
#ifndef SKUAN_PLAIN_BLOCKS
        if constexpr (pooled) {
            if (!block)
                return;
            BlockMagazine& magazine = thread_magazines()[kind];
            if (magazine.room == 0)
                return give_block_slowly(kind, block);
            FreeBlock* const freed = static_cast<FreeBlock*>(block);
            freed->next = magazine.top;
            magazine.top = freed;
            --magazine.room;
            return;
        }
#endif
        ::operator delete(block);
    }

private:
    static constexpr unsigned kind = Bytes == 0 ? 0 : static_cast<unsigned>((Bytes - 1) / block_grain);
    static constexpr bool pooled = Bytes <= largest_pooled_block;
    static constexpr std::size_t size = pooled ? (kind + 1) * block_grain : Bytes;
};

} // namespace skuan
