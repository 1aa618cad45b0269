// Cutting a template at its places, filling them by number, and joining what came of it.
#include <skuan/foundation/astring_format.h>

#include <skuan/foundation/astring_builder.h>

#include <QString>

namespace {

/// How many characters of `text` at `pos`, where a `%` stands, make a place; 0 if they are plain text.
unsigned place_length(const AString& text, unsigned pos)
{
    const unsigned digits = text.substr(pos + 1, 3).leading_digits().length();
    return digits == 1 || digits == 2 ? 1 + digits : 0;
}

void find_place(const AString& text, unsigned from, int* position, unsigned* length)
{
    constexpr AChar percent('%');
    int at = text.find(percent, from);
    while (at >= 0 && !(*length = place_length(text, static_cast<unsigned>(at))))
        at = text.find(percent, static_cast<unsigned>(at) + 1);
    *position = at;
}

int place_number(const AString& piece)
{
    int number = -1;
    if (piece.firstchar() == AChar('%') && place_length(piece, 0) == piece.length())
        piece.remove_left(1).to_int(&number);
    return number;
}

} // namespace

AString::AString(const AStringFormat& format) : AString(format.operator AString()) {}

AStringFormat::AStringFormat(const AString& format)
{
    for (const AString& piece : format.split(&find_place, true, false))
        pieces_.push_back(Piece{piece, place_number(piece)});
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
