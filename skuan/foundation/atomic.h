// Words that several threads change at once. Every operation is sequentially consistent, so that a
// reader needs no memory-model reasoning; where a weaker order pays, the owner of the word says so.
#pragma once

#include <cstdint>

/// Free functions on words that were not declared atomic. Arithmetic gives the new value; a `cas`
/// gives true if it swapped. The word must be naturally aligned. Any thread.
namespace Atomic {

namespace detail {
template <typename T>
inline T add(volatile T* word, T n)
{
    return __atomic_add_fetch(word, n, __ATOMIC_SEQ_CST);
}
template <typename T>
inline T sub(volatile T* word, T n)
{
    return __atomic_sub_fetch(word, n, __ATOMIC_SEQ_CST);
}
template <typename T>
inline bool cas(volatile T* word, T expected, T desired)
{
    return __atomic_compare_exchange_n(word, &expected, desired, false, __ATOMIC_SEQ_CST, __ATOMIC_SEQ_CST);
}
} // namespace detail

inline std::int32_t add32(volatile std::int32_t* word, std::int32_t n)
{
    // Through unsigned arithmetic: it wraps, where signed overflow would be undefined.
    return static_cast<std::int32_t>(
        detail::add(reinterpret_cast<volatile std::uint32_t*>(word), static_cast<std::uint32_t>(n)));
}
inline std::uint32_t add32(volatile std::uint32_t* word, std::uint32_t n)
{
    return detail::add(word, n);
}
inline std::int32_t sub32(volatile std::int32_t* word, std::int32_t n)
{
    return static_cast<std::int32_t>(
        detail::sub(reinterpret_cast<volatile std::uint32_t*>(word), static_cast<std::uint32_t>(n)));
}
inline std::uint32_t sub32(volatile std::uint32_t* word, std::uint32_t n)
{
    return detail::sub(word, n);
}
inline std::int32_t incr32(volatile std::int32_t* word)
{
    return add32(word, 1);
}
inline std::uint32_t incr32(volatile std::uint32_t* word)
{
    return add32(word, 1u);
}
inline std::int32_t decr32(volatile std::int32_t* word)
{
    return sub32(word, 1);
}
inline std::uint32_t decr32(volatile std::uint32_t* word)
{
    return sub32(word, 1u);
}
inline void set32(volatile std::int32_t* word, std::int32_t v)
{
    __atomic_store_n(word, v, __ATOMIC_SEQ_CST);
}
inline void set32(volatile std::uint32_t* word, std::uint32_t v)
{
    __atomic_store_n(word, v, __ATOMIC_SEQ_CST);
}
inline bool cas32(volatile std::int32_t* word, std::int32_t old, std::int32_t v)
{
    return detail::cas(word, old, v);
}
inline bool cas32(volatile std::uint32_t* word, std::uint32_t old, std::uint32_t v)
{
    return detail::cas(word, old, v);
}

inline std::int64_t add64(volatile std::int64_t* word, std::int64_t n)
{
    return static_cast<std::int64_t>(
        detail::add(reinterpret_cast<volatile std::uint64_t*>(word), static_cast<std::uint64_t>(n)));
}
inline std::uint64_t add64(volatile std::uint64_t* word, std::uint64_t n)
{
    return detail::add(word, n);
}
inline std::int64_t sub64(volatile std::int64_t* word, std::int64_t n)
{
    return static_cast<std::int64_t>(
        detail::sub(reinterpret_cast<volatile std::uint64_t*>(word), static_cast<std::uint64_t>(n)));
}
inline std::uint64_t sub64(volatile std::uint64_t* word, std::uint64_t n)
{
    return detail::sub(word, n);
}
inline std::int64_t incr64(volatile std::int64_t* word)
{
    return add64(word, std::int64_t{1});
}
inline std::uint64_t incr64(volatile std::uint64_t* word)
{
    return add64(word, std::uint64_t{1});
}
inline std::int64_t decr64(volatile std::int64_t* word)
{
    return sub64(word, std::int64_t{1});
}
inline std::uint64_t decr64(volatile std::uint64_t* word)
{
    return sub64(word, std::uint64_t{1});
}
inline std::int64_t get64(const volatile std::int64_t* word)
{
    return __atomic_load_n(word, __ATOMIC_SEQ_CST);
}
inline std::uint64_t get64(const volatile std::uint64_t* word)
{
    return __atomic_load_n(word, __ATOMIC_SEQ_CST);
}
inline void set64(volatile std::int64_t* word, std::int64_t v)
{
    __atomic_store_n(word, v, __ATOMIC_SEQ_CST);
}
inline void set64(volatile std::uint64_t* word, std::uint64_t v)
{
    __atomic_store_n(word, v, __ATOMIC_SEQ_CST);
}
inline bool cas64(volatile std::int64_t* word, std::int64_t old, std::int64_t v)
{
    return detail::cas(word, old, v);
}
inline bool cas64(volatile std::uint64_t* word, std::uint64_t old, std::uint64_t v)
{
    return detail::cas(word, old, v);
}

inline std::uintptr_t addptr(volatile std::uintptr_t* word, std::uintptr_t n)
{
    return detail::add(word, n);
}
inline std::uintptr_t subptr(volatile std::uintptr_t* word, std::uintptr_t n)
{
    return detail::sub(word, n);
}
inline void setptr(volatile std::uintptr_t* word, std::uintptr_t v)
{
    __atomic_store_n(word, v, __ATOMIC_SEQ_CST);
}
inline bool casptr(volatile std::uintptr_t* word, std::uintptr_t old, std::uintptr_t v)
{
    return detail::cas(word, old, v);
}

/// Moves a pointer by `n` bytes.
inline void* addptr(void* volatile* word, std::uintptr_t n)
{
    return reinterpret_cast<void*>(addptr(reinterpret_cast<volatile std::uintptr_t*>(word), n));
}
inline void* subptr(void* volatile* word, std::uintptr_t n)
{
    return reinterpret_cast<void*>(subptr(reinterpret_cast<volatile std::uintptr_t*>(word), n));
}
inline void setptr(void* volatile* word, void* v)
{
    __atomic_store_n(word, v, __ATOMIC_SEQ_CST);
}
inline bool casptr(void* volatile* word, void* old, void* v)
{
    return detail::cas(word, old, v);
}

} // namespace Atomic

/// One unsigned word that any thread may read and change. Arithmetic wraps at 32 bits.
class AtomicUnsigned
{
public:
    enum InitType { Init }; ///< Chooses the constructor that leaves a static word as the loader made it: 0.

    AtomicUnsigned() : word_(0) {}
    AtomicUnsigned(unsigned v) : word_(v) {}
    explicit AtomicUnsigned(InitType) {} // NOLINT: leaves the word alone, on purpose
    AtomicUnsigned(const AtomicUnsigned& other) : word_(other.get()) {}

    unsigned get() const { return __atomic_load_n(&word_, __ATOMIC_SEQ_CST); }
    operator unsigned() const { return get(); }
    /// Bit 0 is the lowest; a `bit` of 32 or more reads as false.
    bool get_bit(unsigned bit) const { return (get() & mask(bit)) != 0; }

    void set(unsigned v) { __atomic_store_n(&word_, v, __ATOMIC_SEQ_CST); }
    void clear() { set(0); }
    AtomicUnsigned& operator=(unsigned v)
    {
        set(v);
        return *this;
    }
    AtomicUnsigned& operator=(const AtomicUnsigned& other) { return *this = other.get(); }

    unsigned operator++() { return __atomic_add_fetch(&word_, 1u, __ATOMIC_SEQ_CST); }    ///< the new value
    unsigned operator--() { return __atomic_sub_fetch(&word_, 1u, __ATOMIC_SEQ_CST); }    ///< the new value
    unsigned operator++(int) { return __atomic_fetch_add(&word_, 1u, __ATOMIC_SEQ_CST); } ///< the old value
    unsigned operator--(int) { return __atomic_fetch_sub(&word_, 1u, __ATOMIC_SEQ_CST); } ///< the old value

    // All of these give the new value.
    unsigned operator+=(unsigned n) { return __atomic_add_fetch(&word_, n, __ATOMIC_SEQ_CST); }
    unsigned operator-=(unsigned n) { return __atomic_sub_fetch(&word_, n, __ATOMIC_SEQ_CST); }
    unsigned operator*=(unsigned n)
    {
        return change([n](unsigned v) { return v * n; });
    }
    /// A divisor of 0 leaves the word as it is.
    unsigned operator/=(unsigned n)
    {
        return change([n](unsigned v) { return n == 0 ? v : v / n; });
    }
    unsigned operator&=(unsigned n) { return __atomic_and_fetch(&word_, n, __ATOMIC_SEQ_CST); }
    unsigned operator|=(unsigned n) { return __atomic_or_fetch(&word_, n, __ATOMIC_SEQ_CST); }
    unsigned operator^=(unsigned n) { return __atomic_xor_fetch(&word_, n, __ATOMIC_SEQ_CST); }
    unsigned and_not(unsigned n) { return *this &= ~n; }
    unsigned set_bit(unsigned bit) { return *this |= mask(bit); }
    unsigned clear_bit(unsigned bit) { return and_not(mask(bit)); }

    /// Stores `desired` if the word is `old`; true if it did.
    bool cas(unsigned old, unsigned desired)
    {
        return __atomic_compare_exchange_n(&word_, &old, desired, false, __ATOMIC_SEQ_CST, __ATOMIC_SEQ_CST);
    }
    bool test_and_set(unsigned old, unsigned desired) { return cas(old, desired); }

    /// Raises the word to `v` if it is smaller; true if it changed.
    bool Max(unsigned v)
    {
        return change_if([v](unsigned now, unsigned* next) { return *next = v, now < v; });
    }
    /// Lowers the word to `v` if it is larger; true if it changed.
    bool Min(unsigned v)
    {
        return change_if([v](unsigned now, unsigned* next) { return *next = v, now > v; });
    }

    /// Adds `n` unless the result would pass `limit`; true if it added. Never wraps. With
    /// `decrease_by` it lets a count be reserved before the work that it stands for is done.
    bool increase_by(unsigned n, unsigned limit)
    {
        return change_if([=](unsigned now, unsigned* next) {
            *next = now + n;
            return now <= limit && n <= limit - now;
        });
    }
    /// Subtracts `n` unless the word is below `n` or the result would fall below `limit`.
    bool decrease_by(unsigned n, unsigned limit)
    {
        return change_if([=](unsigned now, unsigned* next) {
            *next = now - n;
            return now >= n && now - n >= limit;
        });
    }
    bool increase(unsigned limit) { return increase_by(1, limit); }
    bool decrease(unsigned limit) { return decrease_by(1, limit); }

private:
    static unsigned mask(unsigned bit) { return bit < 32 ? 1u << bit : 0; }

    template <typename Step>
    unsigned change(Step step)
    {
        unsigned now = get();
        unsigned next = step(now);
        while (!__atomic_compare_exchange_n(&word_, &now, next, true, __ATOMIC_SEQ_CST, __ATOMIC_SEQ_CST))
            next = step(now);
        return next;
    }
    template <typename Step>
    bool change_if(Step step)
    {
        unsigned now = get();
        unsigned next = 0;
        do {
            if (!step(now, &next))
                return false;
        } while (!__atomic_compare_exchange_n(&word_, &now, next, true, __ATOMIC_SEQ_CST, __ATOMIC_SEQ_CST));
        return true;
    }

    unsigned word_;
};
static_assert(sizeof(AtomicUnsigned) == sizeof(unsigned));
