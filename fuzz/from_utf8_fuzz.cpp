// Bytes to characters and back, against a decoder written plainly from the encoding's bit patterns.
#include <require.h>

#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_builder.h>

#include <cstdint>
#include <string>
#include <vector>

using fuzz::require;

namespace {

/// Up to the first sequence that is refused. Overlong forms of three and four bytes, surrogates and what
/// four bytes hold above 0x10FFFF are taken as they stand.
std::vector<unsigned> decode(const std::uint8_t* p, std::size_t n)
{
    std::vector<unsigned> out;
    while (n > 0) {
        const unsigned lead = p[0];
        const unsigned length = lead < 0x80   ? 1
                                : lead < 0xC2 ? 0
                                : lead < 0xE0 ? 2
                                : lead < 0xF0 ? 3
                                : lead < 0xF5 ? 4
                                              : 0;
        if (lead == 0 || length == 0 || length > n)
            return out;
        unsigned value = length == 1 ? lead : lead & (0x7Fu >> length);
        for (unsigned i = 1; i < length; ++i) {
            if ((p[i] & 0xC0) != 0x80)
                return out;
            value = value << 6 | (p[i] & 0x3Fu);
        }
        out.push_back(value);
        p += length;
        n -= length;
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto n = static_cast<unsigned>(size);
    const char* bytes = reinterpret_cast<const char*>(data);
    const AString text = AString::from_utf8(bytes, n);
    const std::vector<unsigned> expected = decode(data, size);
    require(text.length() == expected.size());
    std::size_t at = 0;
    text.for_each_run([&](const AChar* run, unsigned length) {
        for (unsigned i = 0; i < length; ++i)
            require(run[i].ord() == expected[at++]);
    });

    // Back to bytes, whole and into a buffer that is too small. A decoded 0 ends the way back.
    const std::string whole_text = text.to_string();
    const AString again = AString::from_string(whole_text);
    require(text.left(again.length()) == again);
    std::vector<char> small(n / 2 + 1);
    unsigned written = 0;
    text.to_utf8(small.data(), static_cast<unsigned>(small.size()), &written);
    require(written <= small.size() && whole_text.compare(0, written, small.data(), written) == 0);

    // The strict form gives the same or refuses.
    AString whole;
    const bool good = skuan::string_from_utf8(bytes, n, &whole);
    require(!good || whole == text);
    return 0;
}
