// The field's own notations in text: speeds as multiples of normal play, and network addresses.
#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/astring.h>
#include <skuan/foundation/number_scan_p.h>
#include <skuan/foundation/speed_notation_p.h>

#include <algorithm>

namespace skuan {

/// The decimals as 16 bits, truncated; 60 bits carry them on the way.
static bool fraction_bits(const AChar* begin, const AChar* end, unsigned* out)
{
    for (const AChar* at = begin; at != end; ++at) {
        const unsigned c = at->ord();
        if (!SKUAN_CHECK('0' <= c && c <= '9'))
            return false;
    }
    // A multiple of 1/65536 ends after 16 decimals, so what follows them cannot reach the next one.
    std::uint64_t acc = 0;
    for (const AChar* at = begin + std::min<std::ptrdiff_t>(end - begin, 16); at != begin; --at)
        acc = (acc + (std::uint64_t{at[-1].to_digit(0)} << 60)) / 10;
    *out = static_cast<unsigned>(acc >> 44);
    return true;
}

/// A signed decimal number as a speed. A part may be missing, and so may both.
static bool read_multiple(NumberScan& number, int* out)
{
    const bool minus = number.take_sign();
    const AChar* const begin = number.begin();
    const AChar* const end = number.end();
    const AChar* const point = std::find(begin, end, AChar('.'));
    const AChar* const decimals = point == end ? end : point + 1;

    std::uint64_t whole = 0;
    unsigned fraction = 0;
    if (has_hex_prefix(begin, point) || has_hex_prefix(decimals, end) ||
        (begin != point && !NumberScan(begin, point).magnitude(&whole)) || whole > 32767u + minus ||
        !fraction_bits(decimals, end, &fraction))
        return false;
    // Below -32768 the sum wraps to a positive speed, here as on the other side of the wire.
    const unsigned magnitude = static_cast<unsigned>(whole) << 16 | fraction;
    if (out)
        *out = static_cast<int>(minus ? 0 - magnitude : magnitude);
    return true;
}

static bool read_raw(const AString& text, int* out)
{
    std::uint32_t bits = 0;
    if (text.to_int(out))
        return true;
    if (!text.to_uint32_t(&bits))
        return false;
    if (out)
        *out = static_cast<int>(bits);
    return true;
}

bool read_speed(const AString& text, SpeedLetter letter, int* out)
{
    NumberScan number(text);
    if (number.empty())
        return false;
    if (number.take_last('X'))
        return read_multiple(number, out);
    // A point or sign alone is no speed; 0 would stop a channel that is on air.
    const bool has_digit = std::any_of(number.begin(), number.end(), [](AChar c) { return c.is_digit(); });
    return (letter == SpeedLetter::optional && has_digit && read_multiple(number, out)) ||
           read_raw(text, out);
}

} // namespace skuan

AString AString::from_speed(int speed, unsigned digits)
{
    const bool minus = speed < 0;
    const unsigned magnitude = minus ? 0 - static_cast<unsigned>(speed) : static_cast<unsigned>(speed);
    unsigned whole = magnitude >> 16;
    unsigned rest = magnitude & 0xFFFF;
    unsigned places = std::min(digits, 16u); // where every fraction of 16 bits has ended
    std::uint64_t decimals = 0;
    std::uint64_t limit = 1;
    for (unsigned i = 0; i < places; ++i) {
        rest *= 10;
        decimals = decimals * 10 + (rest >> 16);
        rest &= 0xFFFF;
        limit *= 10;
    }
    decimals += rest >= 0x8000;
    if (decimals == limit) {
        ++whole;
        decimals = 0;
    }

    char text[32];
    char* const end = text + sizeof text;
    char* at = end;
    *--at = 'X';
    if (decimals != 0) {
        for (; decimals % 10 == 0; decimals /= 10)
            --places;
        for (; places != 0; --places, decimals /= 10)
            *--at = static_cast<char>('0' + decimals % 10);
        *--at = '.';
    }
    const bool zero = whole == 0 && *at == 'X';
    do
        *--at = static_cast<char>('0' + whole % 10);
    while (whole /= 10);
    if (minus && (!zero || digits == 0)) // no digits asked for: -0X, meant so
        *--at = '-';
    return from_latin1(at, static_cast<unsigned>(end - at));
}

bool AString::to_speed(int* out) const
{
    return skuan::read_speed(*this, skuan::SpeedLetter::required, out);
}

AString AString::from_ipaddr(unsigned address)
{
    return sprintf("%u.%u.%u.%u", address & 0xFF, address >> 8 & 0xFF, address >> 16 & 0xFF, address >> 24);
}

unsigned AString::to_ipaddr(unsigned bad) const
{
    AString rest = *this;
    unsigned address = 0;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        const unsigned point = static_cast<unsigned>(rest.find(AChar('.')));
        const bool last = point == ~0u;
        std::uint8_t byte = 0;
        if (last != (shift == 24) || !rest.left(point).to_uint8_t(&byte))
            return bad;
        address |= unsigned{byte} << shift;
        rest = rest.remove_left(point + 1);
    }
    return address;
}
