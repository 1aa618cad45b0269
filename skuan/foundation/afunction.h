// Callbacks as plain values: four words, never an allocation, copied like an int. A lambda with
// captures would need the heap or a lifetime; a function and up to two bound words do not.
#pragma once

#include <skuan/foundation/assertfail.h>

#include <cstdint>
#include <functional>
#include <utility>

namespace skuan {

/// What a function value calls, and with which bound arguments before the call's own.
enum class BoundKind : unsigned {
    none,               ///< nothing; calling it does nothing
    plain,              ///< a function, nothing bound
    bound_unsigned,     ///< a function and one unsigned
    bound_pointer,      ///< a function and one pointer; member functions are bound so
    bound_two_pointers, ///< a function and two pointers
};

/// A function value with the result `R` and the call's own arguments `Args`. It is used under the
/// names AFunction, AFunction1 to AFunction4 and AFunction0R to AFunction4R below.
///
/// A value may be copied to and called on any thread; what it points at stays the caller's, and has
/// to outlive the last call.
template <typename R, typename... Args>
class BoundFunction
{
public:
    using Plain = R (*)(Args...);
    using WithUnsigned = R (*)(unsigned, Args...);
    using WithPointer = R (*)(void*, Args...);
    using WithTwoPointers = R (*)(void*, void*, Args...);

    /// The empty value: it compares equal to every other empty one, and calling it does nothing.
    BoundFunction() = default;
    BoundFunction(std::nullptr_t) {}
    // A null function gives the empty value.
    BoundFunction(Plain f) : BoundFunction(BoundKind::plain, f, 0, 0) {}
    BoundFunction(WithUnsigned f, unsigned n) : BoundFunction(BoundKind::bound_unsigned, f, n, 0) {}
    BoundFunction(WithPointer f, void* p) : BoundFunction(BoundKind::bound_pointer, f, word(p), 0) {}
    BoundFunction(WithTwoPointers f, void* p, void* q)
        : BoundFunction(BoundKind::bound_two_pointers, f, word(p), word(q))
    {
    }

    /// The member function `Method` of `*object`: `AFunction1<AString>::member<&Panel::show>(panel)`.
    template <auto Method, typename Object>
    static BoundFunction member(Object* object)
    {
        return BoundFunction(
            [](void* self, Args... args) -> R {
                return (static_cast<Object*>(self)->*Method)(std::forward<Args>(args)...);
            },
            const_cast<void*>(static_cast<const void*>(object)));
    }

    /// Calls `callable`, which stays the caller's and has to outlive this value: the way to hand a
    /// lambda with captures to a call that does not keep the function.
    template <typename Callable>
    static BoundFunction ref(Callable& callable)
    {
        return BoundFunction(
            [](void* self, Args... args) -> R {
                return (*static_cast<Callable*>(self))(std::forward<Args>(args)...);
            },
            const_cast<void*>(static_cast<const void*>(std::addressof(callable))));
    }

    bool is_null() const { return kind_ == BoundKind::none; }
    void clear() { kind_ = BoundKind::none; }

    /// Calls the function; the empty value does nothing.
    template <typename Q = R, typename = std::enable_if_t<std::is_void_v<Q>>>
    void run(Args... args) const
    {
        if (kind_ != BoundKind::none && SKUAN_CHECK(f_ != nullptr))
            invoke(std::forward<Args>(args)...);
    }
    template <typename Q = R, typename = std::enable_if_t<std::is_void_v<Q>>>
    void operator()(Args... args) const
    {
        run(std::forward<Args>(args)...);
    }

    /// Calls the function and gives its result; the empty value gives `fallback`.
    template <typename Q = R>
    Q run(std::enable_if_t<!std::is_void_v<Q>, Q> fallback, Args... args) const
    {
        if (kind_ != BoundKind::none && SKUAN_CHECK(f_ != nullptr))
            return invoke(std::forward<Args>(args)...);
        return fallback;
    }
    template <typename Q = R>
    Q operator()(std::enable_if_t<!std::is_void_v<Q>, Q> fallback, Args... args) const
    {
        return run(std::move(fallback), std::forward<Args>(args)...);
    }

    /// Equal kinds with equal words, as far as the kind uses them.
    bool operator==(const BoundFunction& other) const
    {
        return kind_ == other.kind_ && (words() < 1 || f_ == other.f_) &&
               (words() < 2 || first_ == other.first_) && (words() < 3 || second_ == other.second_);
    }
    bool operator!=(const BoundFunction& other) const { return !(*this == other); }

    /// An order for use as a key: by kind, then function, then bound words. An empty value is less
    /// than itself, so it is no key.
    bool operator<(const BoundFunction& other) const
    {
        if (kind_ != other.kind_)
            return kind_ < other.kind_;
        if (kind_ == BoundKind::none)
            return true;
        if (f_ != other.f_)
            return std::less<>()(f_, other.f_);
        if (words() >= 2 && first_ != other.first_)
            return first_ < other.first_;
        return words() >= 3 && second_ < other.second_;
    }

private:
    using AnyFunction = void (*)(); // any function pointer may travel as another and back

    template <typename F>
    BoundFunction(BoundKind kind, F f, std::uintptr_t first, std::uintptr_t second)
        : kind_(f ? kind : BoundKind::none),
          f_(reinterpret_cast<AnyFunction>(f)),
          first_(first),
          second_(second)
    {
    }

    static std::uintptr_t word(void* p) { return reinterpret_cast<std::uintptr_t>(p); }
    static void* pointer(std::uintptr_t w) { return reinterpret_cast<void*>(w); }

    /// How many of function, first and second word the kind uses.
    unsigned words() const
    {
        switch (kind_) {
        case BoundKind::none:
            return 0;
        case BoundKind::plain:
            return 1;
        case BoundKind::bound_unsigned:
        case BoundKind::bound_pointer:
            return 2;
        case BoundKind::bound_two_pointers:
            return 3;
        }
        return 0;
    }

    R invoke(Args... args) const
    {
        switch (kind_) {
        case BoundKind::bound_unsigned:
            return reinterpret_cast<WithUnsigned>(f_)(static_cast<unsigned>(first_),
                                                      std::forward<Args>(args)...);
        case BoundKind::bound_pointer:
            return reinterpret_cast<WithPointer>(f_)(pointer(first_), std::forward<Args>(args)...);
        case BoundKind::bound_two_pointers:
            return reinterpret_cast<WithTwoPointers>(f_)(pointer(first_), pointer(second_),
                                                         std::forward<Args>(args)...);
        case BoundKind::none: // excluded by every caller
        case BoundKind::plain:
            break;
        }
        return reinterpret_cast<Plain>(f_)(std::forward<Args>(args)...);
    }

    BoundKind kind_ = BoundKind::none;
    AnyFunction f_ = nullptr;
    std::uintptr_t first_ = 0;
    std::uintptr_t second_ = 0;
};

} // namespace skuan

using AFunction = skuan::BoundFunction<void>;
template <typename A>
using AFunction1 = skuan::BoundFunction<void, A>;
template <typename A, typename B>
using AFunction2 = skuan::BoundFunction<void, A, B>;
template <typename A, typename B, typename C>
using AFunction3 = skuan::BoundFunction<void, A, B, C>;
template <typename A, typename B, typename C, typename D>
using AFunction4 = skuan::BoundFunction<void, A, B, C, D>;

// With a result: run(fallback, arguments...), where an empty value gives the fallback.
template <typename R>
using AFunction0R = skuan::BoundFunction<R>;
template <typename R, typename A>
using AFunction1R = skuan::BoundFunction<R, A>;
template <typename R, typename A, typename B>
using AFunction2R = skuan::BoundFunction<R, A, B>;
template <typename R, typename A, typename B, typename C>
using AFunction3R = skuan::BoundFunction<R, A, B, C>;
template <typename R, typename A, typename B, typename C, typename D>
using AFunction4R = skuan::BoundFunction<R, A, B, C, D>;

static_assert(sizeof(AFunction) == 4 * sizeof(void*) && sizeof(AFunction1<int>) == 4 * sizeof(void*) &&
              sizeof(AFunction4<int, int, int, int>) == 4 * sizeof(void*) &&
              sizeof(AFunction1R<double, int>) == 4 * sizeof(void*));
