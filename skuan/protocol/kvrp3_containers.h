// Rows of values with a fixed capacity, as messages carry them: no allocation, copied as plain values.
#pragma once

#include <skuan/foundation/assertfail.h>

#include <algorithm>

namespace KVRP3 {

/// Up to `Capacity` values in order: the first `count` of `vec`. The fields are open; a `count` above the
/// capacity is a fault of whoever set it, and is taken as the capacity where the values are walked.
template <typename T, unsigned Capacity>
struct Vector
{
    static constexpr unsigned capacity = Capacity;

    unsigned count = 0;
    T vec[Capacity]{};

    T* begin() { return vec; }
    T* end() { return vec + std::min(count, Capacity); }
    const T* begin() const { return vec; }
    const T* end() const { return vec + std::min(count, Capacity); }

    static constexpr bool valid_index(int index) { return index >= 0 && valid_index(unsigned(index)); }
    static constexpr bool valid_index(unsigned index) { return index < Capacity; }

    friend bool operator==(const Vector& a, const Vector& b)
    {
        return a.count == b.count && std::equal(a.begin(), a.end(), b.begin());
    }
    friend bool operator!=(const Vector& a, const Vector& b) { return !(a == b); }
};

/// Members of an enumeration, each at most once, in the order in which they came. `Capacity` is the number
/// of the enumeration's values. One that is read from the wire may hold a member twice: equal sets then
/// are those that hold the same row.
template <typename E, unsigned Capacity>
struct Set
{
    static constexpr unsigned capacity = Capacity;

    unsigned count = 0;
    E vec[Capacity]{};

    constexpr Set() = default;
    constexpr Set(E member) : count(1), vec{member} {}
    /// Adds each member in turn. A `member_count` above the capacity is reported, and leaves the set empty.
    Set(const E* members, unsigned member_count)
    {
        if (SKUAN_CHECK(member_count <= Capacity))
            std::for_each(members, members + member_count, [this](E member) { add_to_set(member); });
    }

    /// Every value of the enumeration, in order.
    static const Set all;

    E* begin() { return vec; }
    E* end() { return vec + std::min(count, Capacity); }
    const E* begin() const { return vec; }
    const E* end() const { return vec + std::min(count, Capacity); }

    static constexpr bool valid_index(int index) { return index >= 0 && valid_index(unsigned(index)); }
    static constexpr bool valid_index(unsigned index) { return index < Capacity; }

    bool contains(E member) const { return std::find(begin(), end(), member) != end(); }

    /// Nothing happens if the member is there. A full set is reported, and stays as it is.
    void add_to_set(E member)
    {
        if (!contains(member) && SKUAN_CHECK(count < Capacity))
            vec[count++] = member;
    }
    /// The members behind it move up. Nothing happens if it is not there.
    void remove_from_set(E member)
    {
        count = static_cast<unsigned>(std::remove(begin(), end(), member) - begin());
    }
    void clear_all() { count = 0; }

    /// Whether `count` is within the capacity and each member is a value of the enumeration.
    bool valid() const
    {
        return count <= Capacity &&
               std::all_of(begin(), end(), [](E member) { return valid_index(static_cast<int>(member)); });
    }

    /// Two invalid sets are equal, a valid and an invalid one differ, and two valid ones are equal if their
    /// members are, in order.
    friend bool operator==(const Set& a, const Set& b)
    {
        if (!a.valid() || !b.valid())
            return a.valid() == b.valid();
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }
    friend bool operator!=(const Set& a, const Set& b) { return !(a == b); }

private:
    struct Full
    {
    };
    constexpr explicit Set(Full) : count(Capacity)
    {
        for (unsigned value = 0; value != Capacity; ++value)
            vec[value] = static_cast<E>(value);
    }
};

template <typename E, unsigned Capacity>
inline constexpr Set<E, Capacity> Set<E, Capacity>::all{Full()};

} // namespace KVRP3
