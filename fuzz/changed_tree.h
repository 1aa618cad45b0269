// Trees that are almost messages: a good one, changed here and there as the bytes of the input say.
#pragma once

#include <require.h>

#include <skuan/markup/xml_parse.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>

namespace fuzz {

/// The input byte by byte; zeros behind its end.
class Bytes
{
public:
    Bytes(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}

    bool at_end() const { return at_ == end_; }
    unsigned next() { return at_end() ? 0 : *at_++; }
    /// One of so many.
    unsigned below(std::size_t count)
    {
        const unsigned high = next();
        return static_cast<unsigned>((high << 8 | next()) % count);
    }
    AString text()
    {
        const auto length = std::min<std::size_t>(next(), static_cast<std::size_t>(end_ - at_));
        const auto* from = reinterpret_cast<const char*>(at_);
        at_ += length;
        return AString::from_utf8(from, static_cast<unsigned>(length));
    }

private:
    const std::uint8_t* at_;
    const std::uint8_t* end_;
};

inline XMLTree parsed(const std::string& xml)
{
    bool error = false;
    const XMLTree tree = XMLParse(AString::from_string(xml), &error);
    require(!error);
    return tree;
}

/// `other` gives an element that may come in the place of one or beside it. Zeros change nothing. No
/// deeper than the tree and the other element together.
template <typename Other>
XMLTree changed(const XMLTree& tree, Bytes& bytes, Other other)
{
    static const char* const texts[] = {
        "",    " ",   "0",      "-1", " 255 ", "256", "65535",       "65536",
        "0.5", "-0X", "32768X", "1e", "true",  "A",   "-2147483648", "18446744073709551616"};
    const AString& tag = tree.get_tag();
    AList<XMLTree> children;
    const unsigned change = bytes.next();
    const unsigned place = change >> 3;
    switch (change & 7) {
    case 0:
        return tree;
    case 1:
        return XMLTree(tag, bytes.text());
    case 2:
        return XMLTree(tag, AString::l1(texts[place % std::size(texts)]));
    case 3:
        return other(bytes);
    case 4:
        children.push_back(other(bytes));
        break;
    }
    unsigned at = 0;
    for (const auto* entry = tree.get_subnodes().first_entry(); entry; entry = entry->next, ++at) {
        const bool here = at == place;
        if ((change & 7) == 5 && here)
            continue; // one is missing
        if ((change & 7) == 6 && here)
            children.push_back(entry->value); // one comes twice
        children.push_back((change & 7) == 7 && at >= place ? changed(entry->value, bytes, other)
                                                            : entry->value);
    }
    return XMLTree(tag, children);
}

} // namespace fuzz
