// One Unicode character: what it is, what it is worth as a digit, and how it is cut from and written
// to the encodings of the outside world.
#pragma once

#include <skuan/export.h>

/// A code point. Default construction leaves it unset, so that a buffer of them costs nothing. The
/// tests and mappings know the Latin alphabet only. A plain value: any thread.
class SKUAN_EXPORT AChar
{
public:
    AChar() = default;
    constexpr AChar(unsigned code_point) : code_point_(code_point) {}
    static constexpr AChar chr(unsigned code_point) { return AChar(code_point); }
    /// The byte counts as unsigned: 0 to 255.
    static constexpr AChar from_latin1(char c) { return AChar(static_cast<unsigned char>(c)); }

    constexpr unsigned ord() const { return code_point_; }

    constexpr bool is_ascii() const { return code_point_ < 128; }
    constexpr bool is_latin1() const { return code_point_ < 256; }
    constexpr bool is_digit() const { return code_point_ - '0' < 10; }
    /// Blank, tab, line feed or carriage return; no other character is space.
    constexpr bool is_space() const
    {
        return code_point_ == ' ' || code_point_ == '\t' || code_point_ == '\n' || code_point_ == '\r';
    }
    /// A digit or any Latin letter, not only A to F: meant so, callers have come to rely on it.
    constexpr bool is_hexdigit() const { return is_digit() || (code_point_ | 0x20) - 'a' < 26; }

    /// 0 to 9, or `bad`.
    constexpr unsigned to_digit(unsigned bad) const { return is_digit() ? code_point_ - '0' : bad; }
    /// 0 to 35 with the breadth of is_hexdigit (`A` and `a` are 10, `Z` and `z` are 35), or `bad`.
    constexpr unsigned to_hexdigit(unsigned bad) const
    {
        return is_digit() ? code_point_ - '0' : is_hexdigit() ? (code_point_ | 0x20) - 'a' + 10 : bad;
    }
    /// The byte for characters below 256, or `bad`.
    constexpr char to_latin1(char bad) const { return is_latin1() ? static_cast<char>(code_point_) : bad; }
    /// Maps A to Z only.
    constexpr AChar to_lower() const
    {
        return AChar(code_point_ - 'A' < 26 ? code_point_ + ('a' - 'A') : code_point_);
    }

    /// -1, 0 or 1 by code point.
    constexpr int cmp(AChar other) const
    {
        return code_point_ < other.code_point_ ? -1 : code_point_ > other.code_point_;
    }
    friend constexpr bool operator==(AChar a, AChar b) { return a.code_point_ == b.code_point_; }
    friend constexpr bool operator!=(AChar a, AChar b) { return a.code_point_ != b.code_point_; }
    friend constexpr bool operator<(AChar a, AChar b) { return a.code_point_ < b.code_point_; }
    friend constexpr bool operator<=(AChar a, AChar b) { return a.code_point_ <= b.code_point_; }
    friend constexpr bool operator>(AChar a, AChar b) { return a.code_point_ > b.code_point_; }
    friend constexpr bool operator>=(AChar a, AChar b) { return a.code_point_ >= b.code_point_; }

    // Each reads one character from the front of `n` units. False, with `used` 0 and `out` untouched,
    // when there is none: no unit, a 0 unit, or a sequence that is cut or not allowed. `out` and `used`
    // may be null.

    /// Surrogates and overlong forms of three and four bytes pass as they stand.
    static bool consume_utf8(const char* text, unsigned n, AChar* out, unsigned* used);
    static bool consume_utf16(const unsigned short* text, unsigned n, AChar* out, unsigned* used);
    /// As UTF-16; where wchar_t has 32 bits, a unit above 0xFFFF is also a character by itself.
    static bool consume_wchars(const wchar_t* text, unsigned n, AChar* out, unsigned* used);

    // Each writes the character to the front of `n` units. False, with `used` 0 and nothing written,
    // when the room is too small or the encoding has no form for it. `used` may be null.

    /// Up to 4 bytes; surrogates are written like any other, values above 0x10FFFF are refused.
    bool to_utf8(char* buf, unsigned n, unsigned* used) const;
    /// Up to 2 units; surrogates and values above 0x10FFFF are refused.
    bool to_utf16(unsigned short* buf, unsigned n, unsigned* used) const;
    /// As UTF-16; where wchar_t has 32 bits, always one unit.
    bool to_wchars(wchar_t* buf, unsigned n, unsigned* used) const;

private:
    unsigned code_point_;
};
