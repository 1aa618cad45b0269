// A character's road through UTF-8, UTF-16 and wchar_t.
#include <skuan/foundation/achar.h>
#include <skuan/foundation/assertfail.h>

namespace {

/// One row per length, shortest first.
struct Utf8Form
{
    unsigned length;
    unsigned lead_bits; ///< data bits in the lead byte
    unsigned lead;      ///< its fixed upper bits
    unsigned greatest;  ///< code point
};
constexpr Utf8Form utf8_forms[] = {
    {1, 7, 0x00, 0x7F},
    {2, 5, 0xC0, 0x7FF},
    {3, 4, 0xE0, 0xFFFF},
    {4, 3, 0xF0, 0x10FFFF},
};

constexpr bool is_high_surrogate(unsigned unit)
{
    return (unit & ~0x3FFu) == 0xD800;
}
constexpr bool is_low_surrogate(unsigned unit)
{
    return (unit & ~0x3FFu) == 0xDC00;
}

bool result(AChar c, unsigned length, AChar* out, unsigned* used)
{
    if (out)
        *out = c;
    if (used)
        *used = length;
    return true;
}

template <typename Unit>
bool consume_surrogates(const Unit* text, unsigned n, AChar* out, unsigned* used)
{
    if (used)
        *used = 0;
    if (n == 0 || text[0] == 0)
        return false;
    const unsigned first = static_cast<unsigned>(text[0]);
    if (is_low_surrogate(first) || first > 0x10FFFF)
        return false;
    if (!is_high_surrogate(first))
        return result(AChar(first), 1, out, used);
    if (n < 2 || !is_low_surrogate(static_cast<unsigned>(text[1])))
        return false;
    const unsigned second = static_cast<unsigned>(text[1]);
    return result(AChar(((first & 0x3FF) + 64) * 1024 + (second & 0x3FF)), 2, out, used);
}

constexpr bool has_utf16_form(unsigned c)
{
    return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

/// Writes `c` in units of 16 bits, or in one of 32.
template <typename Unit>
bool put_units(unsigned c, Unit* buf, unsigned n, unsigned* used)
{
    if (used)
        *used = 0;
    const unsigned length = sizeof(Unit) == 2 && c > 0xFFFF ? 2 : 1;
    if (!has_utf16_form(c) || n < length)
        return false;
    if (length == 2) {
        buf[0] = static_cast<Unit>(0xD800 + (c >> 10) - 64);
        buf[1] = static_cast<Unit>(0xDC00 + (c & 0x3FF));
    } else {
        buf[0] = static_cast<Unit>(c);
    }
    if (used)
        *used = length;
    return true;
}

} // namespace

bool AChar::consume_utf8(const char* text, unsigned n, AChar* out, unsigned* used)
{
    if (used)
        *used = 0;
    if (n == 0 || text[0] == 0)
        return false;
    const unsigned lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80)
        return result(AChar(lead), 1, out, used);
    if (lead == 0xC0 || lead == 0xC1 || lead >= 0xF5)
        return false;
    for (const Utf8Form& form : utf8_forms) {
        if (lead >> form.lead_bits != form.lead >> form.lead_bits)
            continue;
        if (n < form.length)
            return false;
        unsigned c = lead & ((1u << form.lead_bits) - 1);
        for (unsigned i = 1; i < form.length; ++i) {
            const unsigned byte = static_cast<unsigned char>(text[i]);
            if (byte >> 6 != 2)
                return false;
            c = c << 6 | (byte & 0x3F);
        }
        return result(AChar(c), form.length, out, used);
    }
    return false;
}

bool AChar::consume_utf16(const unsigned short* text, unsigned n, AChar* out, unsigned* used)
{
    return consume_surrogates(text, n, out, used);
}

bool AChar::consume_wchars(const wchar_t* text, unsigned n, AChar* out, unsigned* used)
{
    return consume_surrogates(text, n, out, used);
}

bool AChar::to_utf8(char* buf, unsigned n, unsigned* used) const
{
    if (used)
        *used = 0;
    if (!SKUAN_CHECK(code_point_ <= 0x10FFFF))
        return false;
    const Utf8Form* form = utf8_forms;
    while (form->greatest < code_point_)
        ++form;
    if (n < form->length)
        return false;
    unsigned rest = code_point_;
    for (unsigned i = form->length - 1; i > 0; --i) {
        buf[i] = static_cast<char>(0x80 | (rest & 0x3F));
        rest >>= 6;
    }
    buf[0] = static_cast<char>(form->lead | rest);
    if (used)
        *used = form->length;
    return true;
}

bool AChar::to_utf16(unsigned short* buf, unsigned n, unsigned* used) const
{
    return put_units(code_point_, buf, n, used);
}

bool AChar::to_wchars(wchar_t* buf, unsigned n, unsigned* used) const
{
    return put_units(code_point_, buf, n, used);
}
