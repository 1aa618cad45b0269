// A list of strings, with what one does to such lists: join, filter, take several at once.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/alist.h>
#include <skuan/foundation/astring.h>

/// A value that shares its entries until one copy is changed; see AList.
class SKUAN_EXPORT AStringList : public AList<AString>
{
public:
    AStringList() = default;
    AStringList(AList<AString> items) : AList(std::move(items)) {}
    AStringList(std::initializer_list<AString> items) : AList(items) {}

    AString join(const AString& separator) const;
    /// The items that contain `text`.
    AStringList filter(const AString& text) const;

    using AList::pop_back;
    using AList::pop_front;
    /// The last (first) `n` items, or as many as there are, in their order; they leave this list.
    AStringList pop_back(unsigned n);
    AStringList pop_front(unsigned n);

    AStringList operator+(const AString& item) const { return AStringList(*this) += item; }
    AStringList operator+(const AStringList& items) const { return AStringList(*this) += items; }
    AStringList& operator+=(const AString& item)
    {
        push_back(item);
        return *this;
    }
    AStringList& operator+=(const AStringList& items)
    {
        push_back(items);
        return *this;
    }

    /// The items' characters one after the other; see AString.
    void send_achars(AFunction2<const AChar*, unsigned> sink) const;
    void send_utf8(AFunction2<const char*, unsigned> sink) const;
};
