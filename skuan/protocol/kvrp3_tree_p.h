// The tags of messages as shared strings, and the words for what is wrong with one. A null `error` wants
// no text.
#pragma once

#include <skuan/markup/name_table.h>
#include <skuan/markup/xml_tree.h>

#include <algorithm>
#include <cstddef>

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

// The failures; each gives false.

bool not_found(const AString& tag, const XMLTree& within, AString* error);
bool found_twice(const AString& tag, const XMLTree& within, AString* error);
/// The element's text, without the blanks around it, is no value of its kind.
bool invalid_value(const XMLTree& element, AString* error);
bool invalid_boolean(const XMLTree& element, AString* error);
bool too_many_members(const XMLTree& element, unsigned count, unsigned capacity, AString* error);

} // namespace KVRP3
