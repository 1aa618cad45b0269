// The walk over enumerations whose valid values follow each other: what combo boxes are filled with.
#pragma once

namespace Vantor {

/// First and last valid value of an enumeration, as `first` and `last`; each enumeration has its own.
template <typename E>
struct Bounds;

template <typename E, E First, E Last>
struct Between
{
    static constexpr E first = First;
    static constexpr E last = Last;
};

template <typename E, E First = Bounds<E>::first>
constexpr bool isValid(E x)
{
    return x - First <= Bounds<E>::last - First; // unsigned: what is below the first is far above the last
}

/// Sets the first valid value. True, always: it begins a walk that getnext goes on with.
template <typename E, E First = Bounds<E>::first>
constexpr bool getfirst(E& x)
{
    x = First;
    return true;
}

/// Goes on to the next value. False, and `x` untouched, at the last value and at an invalid one.
template <typename E, E First = Bounds<E>::first>
constexpr bool getnext(E& x)
{
    if (!isValid(x) || x == Bounds<E>::last)
        return false;
    x = static_cast<E>(x + 1);
    return true;
}

} // namespace Vantor
