// Numbers from text and into text.
#include <skuan/foundation/astring.h>
#include <skuan/foundation/number_scan_p.h>

#include <cstdio>
#include <limits>
#include <memory>
#include <type_traits>

using skuan::NumberScan;

namespace {

bool parse(const AString& text, std::uint64_t* out)
{
    return NumberScan(text).magnitude(out);
}

bool parse(const AString& text, std::int64_t* out)
{
    NumberScan digits(text);
    const bool minus = digits.take_sign();
    std::uint64_t magnitude = 0;
    const std::uint64_t limit = std::uint64_t{std::numeric_limits<std::int64_t>::max()} + minus;
    if (!digits.magnitude(&magnitude) || magnitude > limit)
        return false;
    *out = static_cast<std::int64_t>(minus ? 0 - magnitude : magnitude);
    return true;
}

/// Parses at 64 bits and checks the range of `T`.
template <typename T>
bool parse_as(const AString& text, T* out)
{
    std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t> value = 0;
    if (!parse(text, &value) || value < std::numeric_limits<T>::min() ||
        value > std::numeric_limits<T>::max())
        return false;
    if (out)
        *out = static_cast<T>(value);
    return true;
}

AString digits_of(std::uint64_t value)
{
    char digits[20];
    char* const end = digits + sizeof digits;
    char* at = end;
    do
        *--at = static_cast<char>('0' + value % 10);
    while (value /= 10);
    return AString::from_latin1(at, static_cast<unsigned>(end - at));
}

} // namespace

// clang-format off
bool AString::to_int8_t(std::int8_t* out) const { return parse_as(*this, out); }
bool AString::to_int16_t(std::int16_t* out) const { return parse_as(*this, out); }
bool AString::to_int32_t(std::int32_t* out) const { return parse_as(*this, out); }
bool AString::to_int64_t(std::int64_t* out) const { return parse_as(*this, out); }
bool AString::to_int(int* out) const { return parse_as(*this, out); }
bool AString::to_long(long* out) const { return parse_as(*this, out); }
bool AString::to_long_long(long long* out) const { return parse_as(*this, out); }
bool AString::to_short(short* out) const { return parse_as(*this, out); }
bool AString::to_signed_int(int* out) const { return parse_as(*this, out); }
bool AString::to_signed_long(long* out) const { return parse_as(*this, out); }
bool AString::to_signed_long_long(long long* out) const { return parse_as(*this, out); }
bool AString::to_signed_short(short* out) const { return parse_as(*this, out); }
bool AString::to_uint8_t(std::uint8_t* out) const { return parse_as(*this, out); }
bool AString::to_uint16_t(std::uint16_t* out) const { return parse_as(*this, out); }
bool AString::to_uint32_t(std::uint32_t* out) const { return parse_as(*this, out); }
bool AString::to_uint64_t(std::uint64_t* out) const { return parse_as(*this, out); }
bool AString::to_unsigned(unsigned* out) const { return parse_as(*this, out); }
bool AString::to_unsigned_int(unsigned* out) const { return parse_as(*this, out); }
bool AString::to_unsigned_long(unsigned long* out) const { return parse_as(*this, out); }
bool AString::to_unsigned_long_long(unsigned long long* out) const { return parse_as(*this, out); }
bool AString::to_unsigned_short(unsigned short* out) const { return parse_as(*this, out); }

AString AString::from_int8_t(std::int8_t value, int width, char fill) { return from_int64_t(value, width, fill); }
AString AString::from_int16_t(std::int16_t value, int width, char fill) { return from_int64_t(value, width, fill); }
AString AString::from_int32_t(std::int32_t value, int width, char fill) { return from_int64_t(value, width, fill); }
AString AString::from_uint8_t(std::uint8_t value, int width, char fill) { return from_uint64_t(value, width, fill); }
AString AString::from_uint16_t(std::uint16_t value, int width, char fill) { return from_uint64_t(value, width, fill); }
AString AString::from_uint32_t(std::uint32_t value, int width, char fill) { return from_uint64_t(value, width, fill); }
AString AString::from_int(int value, int width, char fill) { return from_int64_t(value, width, fill); }
AString AString::from_short(short value, int width, char fill) { return from_int64_t(value, width, fill); }
AString AString::from_long(long value, int width, char fill) { return from_int64_t(value, width, fill); }
AString AString::from_long_long(long long value, int width, char fill) { return from_int64_t(value, width, fill); }
AString AString::from_unsigned(unsigned value, int width, char fill) { return from_uint64_t(value, width, fill); }
AString AString::from_unsigned_short(unsigned short value, int width, char fill) { return from_uint64_t(value, width, fill); }
AString AString::from_unsigned_long(unsigned long value, int width, char fill) { return from_uint64_t(value, width, fill); }
AString AString::from_unsigned_long_long(unsigned long long value, int width, char fill) { return from_uint64_t(value, width, fill); }
// clang-format on

AString AString::from_uint64_t(std::uint64_t value, int width, char fill)
{
    return digits_of(value).pad(width, fill);
}

AString AString::from_int64_t(std::int64_t value, int width, char fill)
{
    if (value >= 0)
        return from_uint64_t(static_cast<std::uint64_t>(value), width, fill);
    const int rest = width > 0 ? width - 1 : width < 0 ? width + 1 : 0; // the sign takes one
    return l1("-") + from_uint64_t(0 - static_cast<std::uint64_t>(value), rest, fill);
}

AString AString::sprintf(const char* format, ...)
{
    std::va_list args;
    va_start(args, format);
    const AString text = vsprintf(format, args);
    va_end(args);
    return text;
}

AString AString::vsprintf(const char* format, std::va_list args)
{
    char buf[256];
    std::va_list again;
    va_copy(again, args);
    const int n = std::vsnprintf(buf, sizeof buf, format, args);
    AString text;
    if (n >= 0 && static_cast<std::size_t>(n) < sizeof buf) {
        text = from_latin1(buf, static_cast<unsigned>(n));
    } else if (n >= 0) {
        const std::size_t size = static_cast<std::size_t>(n) + 1;
        const auto room = std::make_unique<char[]>(size);
        std::vsnprintf(room.get(), size, format, again);
        text = from_latin1(room.get(), static_cast<unsigned>(n));
    }
    va_end(again);
    return text;
}
