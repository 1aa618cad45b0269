// A value of one of a few kinds: it lets a name or a number stand for a value of an enumeration.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/achar.h>
#include <skuan/foundation/astring.h>

#include <cstdint>
#include <type_traits>
#include <variant>

/// Made implicitly from a number, a character or a text; narrower integers become ints. A value; one
/// object belongs to one thread at a time.
class SKUAN_EXPORT AVariant
{
public:
    enum Kind { Nothing, Unsigned, Unsigned64, Int, Int64, Boolean, Character, Text };

    AVariant() = default;
    AVariant(unsigned value) : value_(value) {}
    AVariant(unsigned long value) : AVariant(static_cast<unsigned long long>(value)) {}
    AVariant(unsigned long long value) : value_(std::uint64_t{value}) {}
    AVariant(int value) : value_(value) {}
    AVariant(long value) : AVariant(static_cast<long long>(value)) {}
    AVariant(long long value) : value_(std::int64_t{value}) {}
    /// A bool itself and nothing that only converts to one, such as a pointer.
    template <typename B, typename = std::enable_if_t<std::is_same_v<B, bool>>>
    AVariant(B value) : value_(value)
    {
    }
    AVariant(AChar value) : value_(value) {}
    AVariant(const AString& value) : value_(value) {}

    Kind kind() const { return static_cast<Kind>(value_.index()); }
    bool is_number() const { return kind() >= Unsigned && kind() <= Int64; }

    /// Numbers in decimal, "true" or "false", the character, the text; `bad` for nothing.
    AString to_text(const AString& bad = AString()) const;

    // Numbers lose what the target has no room for, as a cast does; a bool is 0 or 1, a character its code
    // point; a text is read as AString reads that type. `bad` for nothing and for a text that is no number.
    int to_int(int bad = 0) const;
    unsigned to_unsigned(unsigned bad = 0) const;
    std::int64_t to_int64_t(std::int64_t bad = 0) const;
    std::uint64_t to_uint64_t(std::uint64_t bad = 0) const;
    /// Whether there is such a number; `out`, which may be null, is set only if there is.
    bool valid_int(int* out) const;

    /// False for 0 and for the texts "", "0" and "false", true for any other; `bad` for nothing.
    bool to_bool(bool bad = false) const;

private:
    template <typename T>
    bool read(T* out, bool (AString::*parse)(T*) const) const;

    std::variant<std::monostate, unsigned, std::uint64_t, int, std::int64_t, bool, AChar, AString> value_;
};
