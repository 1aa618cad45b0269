// How a record is read, written and compared, field by field.
#pragma once

#include <skuan/protocol/kvrp3_children_p.h>

#include <utility>

namespace KVRP3 {

/// A field that always stands in its record; a flag, when it is true.
template <typename T, auto Value>
struct Field
{
    using Tag = T;

    template <typename R>
    static bool is_written(const R& record)
    {
        if constexpr (T::by_presence)
            return record.*Value;
        return true;
    }
    template <typename R>
    static const auto& value(const R& record)
    {
        return record.*Value;
    }
    template <typename C, typename R>
    static bool read(const C& children, unsigned place, R* record, AString* error)
    {
        return children.template read<T>(place, &(record->*Value), error);
    }
};

/// A field that stands there if `Has` is set.
template <typename T, auto Has, auto Value>
struct OptionalField
{
    using Tag = T;

    template <typename R>
    static bool is_written(const R& record)
    {
        return record.*Has;
    }
    template <typename R>
    static const auto& value(const R& record)
    {
        return record.*Value;
    }
    template <typename C, typename R>
    static bool read(const C& children, unsigned place, R* record, AString* error)
    {
        record->*Has = children.has(place);
        return !children.has(place) || children.template read<T>(place, &(record->*Value), error);
    }
};

/// The fields of a record in the order of the wire, the optional ones last. A field that is there but
/// cannot be read fails the whole record, even an optional one.
template <typename... F>
struct Fields
{
    template <typename R>
    static XMLTree write(const AString& tag, const R& record)
    {
        AList<XMLTree> children;
        ((F::is_written(record) ? children.push_back(F::Tag::write(F::value(record))) : void()), ...);
        return XMLTree(tag, std::move(children));
    }

    template <typename R>
    static bool read(const XMLTree& element, R* record, AString* error)
    {
        const Children<typename F::Tag...> children(element);
        unsigned place = 0;
        return (F::read(children, place++, record, error) && ...);
    }

    template <typename R>
    static bool equal(const R& a, const R& b)
    {
        return ((F::is_written(a) == F::is_written(b) && (!F::is_written(a) || F::value(a) == F::value(b))) &&
                ...);
    }
};

/// The row of each record.
template <typename R>
struct FieldsOf;

template <typename R>
XMLTree write_record(const AString& tag, const R& record)
{
    return FieldsOf<R>::write(tag, record);
}

template <typename R>
bool read_record(const XMLTree& element, R* record, AString* error)
{
    return FieldsOf<R>::read(element, record, error);
}

} // namespace KVRP3
