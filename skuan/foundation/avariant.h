// A value of one of a few kinds: it lets a name or a number stand for a value of an enumeration.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/achar.h>
#include <skuan/foundation/astring.h>

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

/// Made implicitly from a number, a character or a text; narrower integers become ints. A value; one
/// object belongs to one thread at a time.
class SKUAN_EXPORT AVariant
{
public:
    enum Kind { Nothing, Unsigned, Unsigned64, Int, Int64, Boolean, Character, Text };

    AVariant() = default;
    AVariant(unsigned value) : AVariant(Unsigned, value) {}
    AVariant(unsigned long value) : AVariant(Unsigned64, value) {}
    AVariant(unsigned long long value) : AVariant(Unsigned64, value) {}
    AVariant(int value) : AVariant(Int, static_cast<std::uint64_t>(std::int64_t{value})) {}
    AVariant(long value) : AVariant(static_cast<long long>(value)) {}
    AVariant(long long value) : AVariant(Int64, static_cast<std::uint64_t>(value)) {}
    /// A bool itself and nothing that only converts to one, such as a pointer.
    template <typename B, typename = std::enable_if_t<std::is_same_v<B, bool>>>
    AVariant(B value) : AVariant(Boolean, value)
    {
    }
    AVariant(AChar value) : AVariant(Character, value.ord()) {}
    AVariant(const AString& value);
    AVariant(const AVariant& other);
    AVariant(AVariant&& other) noexcept : AVariant() { swap(other); }
    ~AVariant()
    {
        if (kind_ == Text)
            drop_text();
    }
    AVariant& operator=(AVariant other) noexcept
    {
        swap(other);
        return *this;
    }
    void swap(AVariant& other) noexcept
    {
        std::swap(payload_, other.payload_);
        std::swap(kind_, other.kind_);
    }

    Kind kind() const { return kind_; }
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
    /// Numbers are widened to 64 bits by their own sign.
    AVariant(Kind kind, std::uint64_t payload) : kind_(kind)
    {
        std::memcpy(payload_, &payload, sizeof payload);
    }
    std::uint64_t payload() const
    {
        std::uint64_t payload;
        std::memcpy(&payload, payload_, sizeof payload);
        return payload;
    }
    const AString& text() const; ///< of a Text
    void drop_text();

    template <typename T>
    bool read(T* out, bool (AString::*parse)(T*) const) const;

    // As bytes: a 64-bit number would ask for an alignment by which the whole grows to four words of 32 bits.
    alignas(void*) unsigned char payload_[sizeof(std::uint64_t)] = {};
    Kind kind_ = Nothing;
};

static_assert(sizeof(AVariant) == sizeof(std::uint64_t) + sizeof(void*));
