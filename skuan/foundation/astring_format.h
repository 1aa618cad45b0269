// Templates with numbered places: AString("%1 of %2").arg(3).arg(7).
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_list.h>

#include <string>

/// A template on its way to becoming a text, which it turns into wherever a text is wanted. A place is a
/// `%` with one or two digits behind it; with none, or with three and more, the `%` is plain text.
///
/// Each `arg` fills one place: the one with the smallest number, and of equal ones the first, so "%1 %1"
/// takes two. Numbers may be left out. What is filled in is never searched for places, and an `arg` that
/// finds none left is dropped. A value: copies are independent; one object belongs to one thread at a time.
class SKUAN_EXPORT AStringFormat
{
public:
    AStringFormat(const AString& format);

    AStringFormat& arg(const AString& text);
    AStringFormat& arg(const char* utf8) { return arg(AString(utf8)); } ///< or a literal would be an address
    AStringFormat& arg(const wchar_t* text) { return arg(AString(text)); }
    /// A number in decimal; `width` and `fill` as in AString::from_int.
    AStringFormat& arg(int value, int width = 0, char fill = ' ');
    AStringFormat& arg(unsigned value, int width = 0, char fill = ' ');
    AStringFormat& arg(long value, int width = 0, char fill = ' ');
    AStringFormat& arg(unsigned long value, int width = 0, char fill = ' ');
    AStringFormat& arg(long long value, int width = 0, char fill = ' ');
    AStringFormat& arg(unsigned long long value, int width = 0, char fill = ' ');
    /// An address in upper-case hexadecimal with 0x before it, of at least 8 digits.
    AStringFormat& arg(const void* address);

    // The text as far as it is filled in: joined, or in its pieces, of which each place is one.

    operator AString() const;
    operator AStringList() const;
    operator QString() const;
    operator std::string() const; ///< UTF-8
    operator std::wstring() const;

    friend bool operator==(const AStringFormat& a, const AString& b) { return AString(a) == b; }
    friend bool operator!=(const AStringFormat& a, const AString& b) { return !(a == b); }

private:
    struct Piece
    {
        AString text;
        int number; ///< of an empty place; -1 for plain text and for a place that is filled
    };

    AList<Piece> pieces_;
};
