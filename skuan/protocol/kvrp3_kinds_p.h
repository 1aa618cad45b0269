// The kinds of values that a tag can hold. Each has its `Value`, writes one as an element, and reads one
// from its element: false, with the reason in `error` if that is not null, leaves the value in any state.
#pragma once

#include <skuan/foundation/assertfail.h>
#include <skuan/markup/xml_tree.h>
#include <skuan/protocol/kvrp3_tree_p.h>
#include <skuan/protocol/wire_speed_p.h>

#include <cstdint>
#include <list>
#include <type_traits>
#include <utility>

namespace KVRP3 {

/// Both are instantiated in kvrp3_records.cpp, for each record.
template <typename R>
XMLTree write_record(const AString& tag, const R& record);
template <typename R>
bool read_record(const XMLTree& element, R* record, AString* error);

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

/// "true" or "false"; a number is understood too. Blanks around a value do no harm, here and below.
struct Bool
{
    using Value = bool;

    static XMLTree write(const AString& tag, Value value)
    {
        return XMLTree(tag, value ? name<"true">() : name<"false">());
    }
    static bool read(const XMLTree& element, Value* value, AString* error);
};

/// True by being there, whatever it holds, so that there is nothing to read.
struct Flag
{
    using Value = bool;

    static XMLTree write(const AString& tag, Value) { return XMLTree(tag); }
};

/// A plain decimal number.
template <typename T>
struct Number
{
    using Value = T;

    static XMLTree write(const AString& tag, Value value)
    {
        using Wide = std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>;
        return XMLTree(tag, static_cast<Wide>(value));
    }
    static bool read(const XMLTree& element, Value* value, AString* error)
    {
        return from_text(element.get_content(), value) || invalid_value(element, error);
    }

private:
    static bool from_text(const AString& text, unsigned char* value) { return text.to_uint8_t(value); }
    static bool from_text(const AString& text, unsigned short* value) { return text.to_uint16_t(value); }
    static bool from_text(const AString& text, unsigned* value) { return text.to_uint32_t(value); }
    static bool from_text(const AString& text, std::uint64_t* value) { return text.to_uint64_t(value); }
    static bool from_text(const AString& text, int* value) { return text.to_int32_t(value); }
};

/// 65536 is normal speed, which is "1" on the wire.
struct Speed
{
    using Value = int;

    static XMLTree write(const AString& tag, Value value) { return XMLTree(tag, from_wire_speed(value)); }
    static bool read(const XMLTree& element, Value* value, AString* error)
    {
        return to_wire_speed(element.get_content(), value) || invalid_value(element, error);
    }
};

/// A name of an enumeration, given by its two converters.
template <auto ToName, auto FromName>
struct Enum;

template <typename E, AString (*ToName)(E), bool (*FromName)(const AString&, E*)>
struct Enum<ToName, FromName>
{
    using Value = E;

    static XMLTree write(const AString& tag, Value value) { return XMLTree(tag, ToName(value)); }
    static bool read(const XMLTree& element, Value* value, AString* error)
    {
        const AString& text = element.get_content();
        return FromName(text, value) || FromName(text.despace(), value) || invalid_value(element, error);
    }
};

template <typename R>
struct Record
{
    using Value = R;

    static XMLTree write(const AString& tag, const Value& value) { return write_record(tag, value); }
    static bool read(const XMLTree& element, Value* value, AString* error)
    {
        return read_record(element, value, error);
    }
};

/// A set or vector: a child for each member. Children of other tags are passed over, and members that come
/// again are taken again.
template <typename Container, typename Member>
struct Row
{
    using Value = Container;

    static XMLTree write(const AString& tag, const Value& row)
    {
        if (row.count > Container::capacity)
            assertfail(__FILE__, __LINE__, "i < countof (val.vec)");
        AList<XMLTree> children;
        for (const auto& member : row)
            children.push_back(Member::write(member));
        return XMLTree(tag, std::move(children));
    }
    static bool read(const XMLTree& element, Value* row, AString* error)
    {
        const unsigned count = element.count_subnodes(Member::tag(), nullptr);
        if (count > Container::capacity)
            return too_many_members(element, count, Container::capacity, error);
        row->count = 0;
        for (const auto* entry = element.get_subnodes().first_entry(); entry; entry = entry->next) {
            if (!entry->value.has_tag(Member::tag()))
                continue;
            if (!Member::Kind::read(entry->value, &row->vec[row->count], error))
                return false;
            ++row->count;
        }
        return true;
    }
};

/// The same without a limit.
template <typename Member>
struct List
{
    using Value = std::list<typename Member::Value>;

    static XMLTree write(const AString& tag, const Value& list)
    {
        AList<XMLTree> children;
        for (const auto& member : list)
            children.push_back(Member::write(member));
        return XMLTree(tag, std::move(children));
    }
    static bool read(const XMLTree& element, Value* list, AString* error)
    {
        list->clear();
        for (const auto* entry = element.get_subnodes().first_entry(); entry; entry = entry->next) {
            if (!entry->value.has_tag(Member::tag()))
                continue;
            list->emplace_back();
            if (!Member::Kind::read(entry->value, &list->back(), error))
                return false;
        }
        return true;
    }
};

} // namespace kind

/// One tag, as the rows of messages name it.
template <FixedText Text, typename K>
struct Tag
{
    using Kind = K;
    using Value = typename K::Value;
    static constexpr bool by_presence = std::is_same_v<K, kind::Flag>;

    static const AString& tag() { return name<Text>(); }
    static XMLTree write(const Value& value) { return K::write(tag(), value); }
};

} // namespace KVRP3
