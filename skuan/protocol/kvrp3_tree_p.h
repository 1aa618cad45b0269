// From values to elements of a message and back: the rule by which a tag is found in a tree, and one
// reader and writer for each kind of value.
#pragma once

#include <skuan/foundation/aoption.h>
#include <skuan/markup/name_table.h>
#include <skuan/markup/xml_tree.h>

#include <algorithm>
#include <cstddef>
#include <tuple>
#include <utility>

namespace KVRP3 {

/// A text that is a template argument.
template <std::size_t N>
struct FixedText
{
    consteval FixedText(const char (&literal)[N]) { std::copy_n(literal, N, text); }
    char text[N];
};

/// The shared string of a tag, looked up once.
template <FixedText Text>
const AString& name()
{
    static const AString& shared = skuan::tag_name(Text.text);
    return shared;
}

/// The element with this tag: `within` itself, or its only child of that tag. Null, with the reason in
/// `error`, if there is no such child or more than one. A null `error` wants no text; so everywhere here.
const XMLTree* find_element(const XMLTree& within, const AString& tag, AString* error);

/// Says that an element's text is no value of its kind; gives false.
bool invalid_value(const AString& tag, const AString& text, AString* error);

/// The kinds of values. Each writes one as an element and reads one from its element; `*value` is set
/// only on success.
namespace kind {

/// Text as it stands, blanks included.
struct String
{
    using Value = AString;

    static XMLTree write(const AString& tag, const Value& value) { return XMLTree(tag, value); }
    static bool read(const XMLTree& element, Value* value, AString*)
    {
        *value = element.get_content();
        return true;
    }
};

/// A name of an enumeration, given by its two converters. Blanks around the name do no harm.
template <auto ToName, auto FromName>
struct Enum;

template <typename E, AString (*ToName)(E), bool (*FromName)(const AString&, E*)>
struct Enum<ToName, FromName>
{
    using Value = E;

    static XMLTree write(const AString& tag, Value value) { return XMLTree(tag, ToName(value)); }
    static bool read(const XMLTree& element, Value* value, AString* error)
    {
        const AString text = element.get_content().despace();
        return FromName(text, value) || invalid_value(element.get_tag(), text, error);
    }
};

} // namespace kind

/// One tag, as the rows of messages name it.
template <FixedText Text, typename Kind>
struct Tag
{
    using Value = typename Kind::Value;

    static XMLTree write(const Value& value) { return Kind::write(name<Text>(), value); }
    static bool read(const XMLTree& within, Value* value, AString* error)
    {
        const XMLTree* element = find_element(within, name<Text>(), error);
        return element && Kind::read(*element, value, error);
    }
};

/// A tag that may be missing. One that stands twice or cannot be read is as good as missing: it must not
/// cost the rest of the message.
template <typename T>
struct Optional
{
    using Value = AOption<typename T::Value>;

    static bool read(const XMLTree& within, Value* value, AString*)
    {
        typename T::Value present{};
        if (T::read(within, &present, nullptr))
            value->set(std::move(present));
        return true;
    }
};

/// Reads a row of tags in order, up to the first that fails.
template <typename... Tags>
bool read_tags(const XMLTree& within, std::tuple<typename Tags::Value...>* values, AString* error)
{
    return std::apply([&](auto&... value) { return (Tags::read(within, &value, error) && ...); }, *values);
}

} // namespace KVRP3
