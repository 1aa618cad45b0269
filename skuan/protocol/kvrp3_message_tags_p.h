// The tags of a reply or report, read into the values of its operation.
#pragma once

#include <skuan/foundation/aoption.h>
#include <skuan/protocol/kvrp3_children_p.h>

#include <tuple>

namespace KVRP3 {

template <typename T>
struct Needed
{
    using Tag = T;
    using Value = typename T::Value;

    template <typename C>
    static bool read(const C& children, unsigned place, Value* value, AString* error)
    {
        return children.template read<T>(place, value, error);
    }
};

/// A tag that stands twice or cannot be read is as good as missing: it must not cost the rest of the
/// message.
template <typename T>
struct IfReadable
{
    using Tag = T;
    using Value = AOption<typename T::Value>;

    template <typename C>
    static bool read(const C& children, unsigned place, Value* value, AString*)
    {
        typename T::Value present{};
        if (children.template read<T>(place, &present, nullptr))
            value->set(std::move(present));
        return true;
    }
};

/// Reads a row in order, up to the first that fails.
template <typename... Items>
bool read_tags(const XMLTree& body, std::tuple<typename Items::Value...>* values, AString* error)
{
    const Children<typename Items::Tag...> children(body);
    unsigned place = 0;
    return std::apply([&](auto&... value) { return (Items::read(children, place++, &value, error) && ...); },
                      *values);
}

} // namespace KVRP3
