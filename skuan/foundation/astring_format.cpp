// Cutting a template at its places, filling them by number, and joining what came of it.
#include <skuan/foundation/astring_format.h>

#include <skuan/foundation/astring_builder.h>

#include <QString>

#include <utility>

AString::AString(const AStringFormat& format) : AString(format.operator AString()) {}

AStringFormat::AStringFormat(const AString& format)
{
    unsigned cut = 0; // what stands before it is in pieces
    unsigned place = 0;
    unsigned length = 0; // of the `%` at `place` and the digits behind it; 0 in plain text
    int number = 0;
    const auto end_of_digits = [&] {
        if (length != 2 && length != 3)
            return;
        if (place != cut)
            pieces_.push_back(Piece{format.substr(cut, place - cut), -1});
        pieces_.push_back(Piece{format.substr(place, length), number});
        cut = place + length;
    };

    unsigned pos = 0;
    for (const AChar c : format) {
        if (length != 0 && c.is_digit()) {
            if (++length <= 3)
                number = number * 10 + static_cast<int>(c.to_digit(0));
        } else {
            end_of_digits();
            place = pos;
            length = c == AChar('%');
            number = 0;
        }
        ++pos;
    }
    end_of_digits();
    if (!format.empty())
        pieces_.push_back(Piece{format.substr(cut), -1});
}

AStringFormat& AStringFormat::arg(const AString& text)
{
    Piece* lowest = nullptr;
    for (Piece& piece : pieces_)
        if (piece.number >= 0 && (!lowest || piece.number < lowest->number))
            lowest = &piece;
    if (lowest)
        *lowest = Piece{text, -1};
    return *this;
}

// clang-format off
AStringFormat& AStringFormat::arg(int value, int width, char fill) { return arg(AString::from_int(value, width, fill)); }
AStringFormat& AStringFormat::arg(unsigned value, int width, char fill) { return arg(AString::from_unsigned(value, width, fill)); }
AStringFormat& AStringFormat::arg(long value, int width, char fill) { return arg(AString::from_long(value, width, fill)); }
AStringFormat& AStringFormat::arg(unsigned long value, int width, char fill) { return arg(AString::from_unsigned_long(value, width, fill)); }
AStringFormat& AStringFormat::arg(long long value, int width, char fill) { return arg(AString::from_long_long(value, width, fill)); }
AStringFormat& AStringFormat::arg(unsigned long long value, int width, char fill) { return arg(AString::from_unsigned_long_long(value, width, fill)); }
// clang-format on

AStringFormat& AStringFormat::arg(const void* address)
{
    return arg(AString::sprintf("0x%08llX",
                                static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(address))));
}

// The chain that begins with a text: a format of its own, which goes to the caller.
// clang-format off
AStringFormat AString::arg(const AString& text) const { return std::move(AStringFormat(*this).arg(text)); }
AStringFormat AString::arg(const char* utf8) const { return std::move(AStringFormat(*this).arg(utf8)); }
AStringFormat AString::arg(const wchar_t* text) const { return std::move(AStringFormat(*this).arg(text)); }
AStringFormat AString::arg(int value, int width, char fill) const { return std::move(AStringFormat(*this).arg(value, width, fill)); }
AStringFormat AString::arg(unsigned value, int width, char fill) const { return std::move(AStringFormat(*this).arg(value, width, fill)); }
AStringFormat AString::arg(long value, int width, char fill) const { return std::move(AStringFormat(*this).arg(value, width, fill)); }
AStringFormat AString::arg(unsigned long value, int width, char fill) const { return std::move(AStringFormat(*this).arg(value, width, fill)); }
AStringFormat AString::arg(long long value, int width, char fill) const { return std::move(AStringFormat(*this).arg(value, width, fill)); }
AStringFormat AString::arg(unsigned long long value, int width, char fill) const { return std::move(AStringFormat(*this).arg(value, width, fill)); }
AStringFormat AString::arg(const void* address) const { return std::move(AStringFormat(*this).arg(address)); }
// clang-format on

AStringFormat::operator AString() const
{
    skuan::AStringBuilder joined;
    for (auto* entry = pieces_.first_entry(); entry; entry = entry->next)
        joined.append(entry->value.text);
    return joined.finish();
}

AStringFormat::operator AStringList() const
{
    AStringList texts;
    for (auto* entry = pieces_.first_entry(); entry; entry = entry->next)
        texts.push_back(entry->value.text);
    return texts;
}

AStringFormat::operator QString() const
{
    return AString(*this);
}

AStringFormat::operator std::string() const
{
    return AString(*this).to_string();
}

AStringFormat::operator std::wstring() const
{
    return AString(*this).to_wstring();
}
