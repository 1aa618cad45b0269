// Bytes as text and back: base 64, hexadecimal, UTF-8.
#include <skuan/foundation/abytearray.h>
#include <skuan/foundation/astring_builder.h>

namespace {

constexpr char base64_alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char hex_alphabet[] = "0123456789ABCDEF";

/// The value of a base-64 character, or 64.
unsigned base64_value(AChar c)
{
    const unsigned v = c.ord();
    if (v - 'A' < 26)
        return v - 'A';
    if (v - 'a' < 26)
        return v - 'a' + 26;
    if (v - '0' < 10)
        return v - '0' + 52;
    return v == '+' ? 62 : v == '/' ? 63 : 64;
}

} // namespace

AString AByteArray::toBase64() const
{
    constexpr unsigned bytes_per_line = 20;
    skuan::AStringBuilder text;
    const unsigned char* const bytes = const_data();
    unsigned pending = 0; // bits not yet written, the oldest on top
    unsigned pending_bits = 0;
    for (unsigned i = 0; i < size(); ++i) {
        pending = pending << 8 | bytes[i];
        for (pending_bits += 8; pending_bits >= 6; pending_bits -= 6)
            text.append(AChar(base64_alphabet[pending >> (pending_bits - 6) & 63]));
        if ((i + 1) % bytes_per_line == 0)
            text.append(AChar('\n'));
    }
    if (pending_bits != 0)
        text.append(AChar(base64_alphabet[pending << (6 - pending_bits) & 63]));
    return text.finish();
}

AByteArray AByteArray::fromBase64(const AString& text)
{
    AByteArray bytes;
    bytes.reserve(static_cast<unsigned>(std::uint64_t{text.length()} * 3 / 4 + 2));
    unsigned pending = 0;
    unsigned pending_bits = 0;
    text.for_each_run([&](const AChar* run, unsigned n) {
        for (unsigned i = 0; i < n; ++i) {
            const unsigned value = base64_value(run[i]);
            if (value == 64)
                continue;
            pending = pending << 6 | value;
            pending_bits += 6;
            if (pending_bits >= 8) {
                pending_bits -= 8;
                bytes.append(static_cast<unsigned char>(pending >> pending_bits));
            }
        }
    });
    return bytes;
}

AString AByteArray::toHex(unsigned width) const
{
    skuan::AStringBuilder text;
    const unsigned char* const bytes = const_data();
    unsigned on_line = 0;
    for (unsigned i = 0; i < size(); ++i) {
        if (std::uint64_t{on_line} + 1 >= width) { // not width - 1, which wraps
            text.append(AChar('\n'));
            on_line = 0;
        }
        text.append(AChar(hex_alphabet[bytes[i] >> 4]));
        text.append(AChar(hex_alphabet[bytes[i] & 15]));
        on_line += 2;
    }
    return text.finish();
}

AByteArray AByteArray::toHexAscii() const
{
    AByteArray digits;
    if (!SKUAN_CHECK(size() <= ~0u / 2))
        return digits;
    digits.resize(size() * 2);
    if (digits.size() != size() * 2)
        return digits; // there was no memory
    unsigned char* to = digits.data();
    const unsigned char* const bytes = const_data();
    for (unsigned i = 0; i < size(); ++i) {
        *to++ = static_cast<unsigned char>(hex_alphabet[bytes[i] >> 4]);
        *to++ = static_cast<unsigned char>(hex_alphabet[bytes[i] & 15]);
    }
    return digits;
}

AByteArray AByteArray::fromHexAscii(const AByteArray& digits)
{
    constexpr unsigned none = ~0u;
    AByteArray bytes;
    bytes.reserve(digits.size() / 2);
    unsigned high = none;
    for (unsigned i = 0; i < digits.size(); ++i) {
        const unsigned digit = AChar(digits.const_data()[i]).to_hexdigit(none);
        if (digit == none)
            continue;
        if (high == none) {
            high = digit;
            continue;
        }
        bytes.append(static_cast<unsigned char>(high * 16 + digit)); // wraps where a letter is above F
        high = none;
    }
    return bytes;
}

AByteArray AByteArray::toUtf8(const AString& text)
{
    AByteArray bytes;
    bytes.reserve(text.length());
    auto add = [&](const char* chunk, unsigned n) { bytes.append(chunk, n); };
    text.send_utf8(AFunction2<const char*, unsigned>::ref(add));
    return bytes;
}

AString AByteArray::fromUtf8() const
{
    return AString::from_utf8(reinterpret_cast<const char*>(const_data()), size());
}
