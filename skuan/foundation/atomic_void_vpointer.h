// A pointer and a version that change in one step: the version tells a pointer apart from an equal
// one that has been away and come back, which is what lock-free structures stumble over.
#pragma once

#include <cstdint>
#include <cstring>

#if defined(__SANITIZE_THREAD__)
#define SKUAN_TSAN_SEES 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define SKUAN_TSAN_SEES 1
#endif
#endif
#ifdef SKUAN_TSAN_SEES
#include <sanitizer/tsan_interface.h>
#endif

/// Any thread; every operation is sequentially consistent and lock-free.
///
/// The version has the width of a pointer. With 64 bits it never comes back. With 32 bits it does after 2^32
/// changes, minutes of the fastest traffic: a swap is fooled if its thread slept that long between reading
/// and swapping, the changes meanwhile were a multiple of 2^32 to the last one, and the pointer is the same.
class AtomicVoidVPointer
{
public:
    /// The two words as a plain value.
    struct alignas(2 * sizeof(void*)) X
    {
        void* ptr = nullptr;
        std::uintptr_t version = 0;

        bool operator==(const X& other) const { return ptr == other.ptr && version == other.version; }
        bool operator!=(const X& other) const { return !(*this == other); }
    };

    AtomicVoidVPointer() = default;
    explicit AtomicVoidVPointer(void* p) : x_{p, 0} {}
    AtomicVoidVPointer(const AtomicVoidVPointer& other) : x_(other.getX()) {}

    void* ptr() const { return __atomic_load_n(&x_.ptr, __ATOMIC_SEQ_CST); }
    std::uintptr_t version() const { return __atomic_load_n(&x_.version, __ATOMIC_SEQ_CST); }

    /// Both words as they stood at one moment. Where the processor can't load both at once it swaps the
    /// value with itself, which writes to the memory: in a word that only rises, `risingX` is cheaper.
    X getX() const
    {
        if constexpr (one_load)
            return loadX();
        X now{};
        swap(&now, now);
        return now;
    }

    /// The same for a value whose version rises with every change of the pointer (it is written by
    /// `cas` to a higher version, `casv` and `= void*` only), without writing.
    ///
    /// The proof, where it takes more than one load: both words change in one step, and the version is so
    /// wide that it never wraps. If it is equal before and after, it never changed in between, since it
    /// cannot come back; so the pointer read in between is the one that belongs to it.
    X risingX() const
    {
        if constexpr (one_load)
            return loadX();
        for (;;) {
            const std::uintptr_t before = version();
            void* const p = ptr();
            if (version() == before)
                return X{p, before};
        }
    }

    void setX(const X& x)
    {
        X now{ptr(), version()};
        while (!swap(&now, x)) {
        }
    }
    void clearX() { setX(X()); }

    /// Sets the pointer and raises the version by 1.
    AtomicVoidVPointer& operator=(void* p)
    {
        X now{ptr(), version()};
        while (!swap(&now, X{p, now.version + 1})) {
        }
        return *this;
    }
    /// Takes over both words.
    AtomicVoidVPointer& operator=(const AtomicVoidVPointer& other)
    {
        setX(other.getX());
        return *this;
    }

    bool operator==(const AtomicVoidVPointer& other) const { return getX() == other.getX(); }
    bool operator!=(const AtomicVoidVPointer& other) const { return !(*this == other); }
    bool operator==(const void* p) const { return ptr() == p; }
    bool operator!=(const void* p) const { return ptr() != p; }

    /// Stores `desired` if both words are `old`'s; true if it did.
    bool cas(const X& old, const X& desired)
    {
        X expected = old;
        return swap(&expected, desired);
    }
    bool cas(const AtomicVoidVPointer& old, const AtomicVoidVPointer& desired)
    {
        return cas(old.getX(), desired.getX());
    }

    /// Stores `desired`'s pointer with the version after `old`'s if both words are `old`'s; true if
    /// it did.
    bool casv(const X& old, void* desired) { return cas(old, X{desired, old.version + 1}); }
    bool casv(const AtomicVoidVPointer& old, void* desired) { return casv(old.getX(), desired); }
    bool casv(const AtomicVoidVPointer& old, const AtomicVoidVPointer& desired)
    {
        return casv(old.getX(), desired.ptr());
    }

private:
    typedef std::uint64_t __attribute__((may_alias)) Word64;
    static constexpr bool one_load = sizeof(X) == sizeof(Word64);

    X loadX() const
    {
        const std::uint64_t word = __atomic_load_n(reinterpret_cast<const Word64*>(&x_), __ATOMIC_SEQ_CST);
        X now;
        std::memcpy(static_cast<void*>(&now), &word, sizeof word);
        return now;
    }

    /// The double-word compare-and-swap: stores `desired` if the value is `*expected`, else fetches
    /// the value into `*expected`.
    bool swap(X* expected, const X& desired) const
    {
        bool swapped;
#ifdef SKUAN_TSAN_SEES
        __tsan_release(&x_); // the sanitizer cannot look into the instruction below
#endif
#if defined(__x86_64__)
        // Not the compiler's builtin: without extra flags it would call a library, which takes a lock
        // on some systems.
        __asm__ __volatile__("lock cmpxchg16b %1"
                             : "=@ccz"(swapped), "+m"(x_), "+a"(expected->ptr), "+d"(expected->version)
                             : "b"(desired.ptr), "c"(desired.version)
                             : "memory");
#else
        static_assert(one_load && __atomic_always_lock_free(sizeof(Word64), nullptr),
                      "a double-word compare-and-swap for this processor");
        std::uint64_t from, to;
        std::memcpy(&from, expected, sizeof from);
        std::memcpy(&to, &desired, sizeof to);
        swapped = __atomic_compare_exchange_n(reinterpret_cast<Word64*>(&x_), &from, to, false,
                                              __ATOMIC_SEQ_CST, __ATOMIC_SEQ_CST);
        std::memcpy(static_cast<void*>(expected), &from, sizeof from);
#endif
#ifdef SKUAN_TSAN_SEES
        __tsan_acquire(&x_);
#endif
        return swapped;
    }

    mutable X x_; // mutable: a read may be a swap with itself
};
#undef SKUAN_TSAN_SEES

// Eight bytes with 32-bit pointers, sixteen with 64: what the processor swaps at once.
static_assert(sizeof(AtomicVoidVPointer) == 2 * sizeof(void*) &&
              alignof(AtomicVoidVPointer) == 2 * sizeof(void*));
