// Strings from and into the encodings of the outside world.
#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_builder.h>
#include <skuan/foundation/text_kernels.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

using skuan::AStringBuilder;
using skuan::StringRuns;

namespace {

/// The units before the first 0, at most `max`.
template <typename Unit>
unsigned length_up_to(const Unit* text, unsigned max)
{
    unsigned n = 0;
    while (n < max && text[n] != 0)
        ++n;
    return n;
}

unsigned length_up_to(const char* text, unsigned max)
{
    if (max == ~0u)
        return static_cast<unsigned>(std::min<std::size_t>(std::strlen(text), max));
    const void* const end = std::memchr(text, 0, max);
    return end ? static_cast<unsigned>(static_cast<const char*>(end) - text) : max;
}

unsigned length_of(std::size_t n)
{
    return static_cast<unsigned>(std::min<std::size_t>(n, ~0u));
}

/// Decodes with one of AChar's readers until it refuses.
template <typename Unit>
AString decode(const Unit* text, unsigned n, bool (*consume)(const Unit*, unsigned, AChar*, unsigned*))
{
    AStringBuilder builder;
    AChar c;
    for (unsigned used = 0; text && consume(text, n, &c, &used); text += used, n -= used)
        builder.append(c);
    return builder.finish();
}

bool consume_utf32(const unsigned* text, unsigned n, AChar* out, unsigned* used)
{
    if (n == 0 || text[0] == 0 || text[0] > 0x10FFFF)
        return false;
    *out = AChar(text[0]);
    *used = 1;
    return true;
}

/// Writes with `put(c, buf, room, &used)` while it succeeds.
template <typename Unit, typename Put>
bool encode(const AString& text, Unit* buf, unsigned n, unsigned* written, bool fill, Unit fillchar, Put put)
{
    unsigned at = 0;
    bool whole = true;
    for (StringRuns runs(text); runs.size() && whole; runs.skip(1)) {
        unsigned used = 0;
        whole = put(*runs.data(), buf + at, n - at, &used);
        at += used;
    }
    if (written)
        *written = at;
    if (fill)
        std::fill(buf + at, buf + n, fillchar);
    return whole;
}

/// Runs `f(buf, room, &written)` with room kept for a 0, and writes the 0.
template <typename Unit, typename F>
bool terminated(Unit* buf, unsigned n, F f)
{
    if (n == 0)
        return false;
    unsigned written = 0;
    const bool whole = f(buf, n - 1, &written);
    buf[written] = 0;
    return whole;
}

/// Encodes runs into `buf` from `at` on while whole characters fit below `end`. The runs stand then at the
/// first character that wasn't written.
void encode_utf8(StringRuns& runs, char* buf, unsigned* at, unsigned end)
{
    while (runs.size()) {
        unsigned taken = skuan::narrow(runs.data(), std::min(runs.size(), end - *at), 0x80, buf + *at);
        unsigned used = taken;
        if (taken == 0) {
            if (!runs.data()->to_utf8(buf + *at, end - *at, &used))
                return;
            taken = 1;
        }
        *at += used;
        runs.skip(taken);
    }
}

} // namespace

AString AString::from_latin1(const char* text, unsigned n)
{
    AStringBuilder builder;
    if (text)
        builder.append_latin1(text, n);
    return builder.finish();
}

AString AString::from_latin1z(const char* text, unsigned max)
{
    return text ? from_latin1(text, length_up_to(text, max)) : AString();
}

AString AString::from_utf8(const char* text, unsigned n)
{
    AStringBuilder builder;
    if (text)
        builder.append_utf8(text, n);
    return builder.finish();
}

AString AString::from_utf8z(const char* text, unsigned max)
{
    return text ? from_utf8(text, length_up_to(text, max)) : AString();
}

AString AString::from_utf16(const unsigned short* text, unsigned n)
{
    return decode(text, n, AChar::consume_utf16);
}

AString AString::from_utf32(const unsigned* text, unsigned n)
{
    return decode(text, n, consume_utf32);
}

AString AString::from_wchars(const wchar_t* text, unsigned n)
{
    return decode(text, n, AChar::consume_wchars);
}

AString AString::from_string(const std::string& utf8)
{
    return from_utf8(utf8.data(), length_of(utf8.size()));
}

AString AString::from_wstring(const std::wstring& text)
{
    return from_wchars(text.data(), length_of(text.size()));
}

AString::AString(const wchar_t* text) : AString(text, text ? length_up_to(text, ~0u) : 0) {}
AString::AString(const wchar_t* text, unsigned n) : AString(from_wchars(text, n)) {}
AString::AString(const std::string& utf8) : AString(from_string(utf8)) {}
AString::AString(const std::wstring& text) : AString(from_wstring(text)) {}
AString::AString(const char* utf8) : AString(from_utf8z(utf8)) {}

bool AString::to_latin1(char* buf, unsigned n, char bad, unsigned* written, bool fill, char fillchar) const
{
    unsigned at = 0;
    StringRuns runs(*this);
    while (runs.size() && at < n) {
        unsigned taken = skuan::narrow(runs.data(), std::min(runs.size(), n - at), 0x100, buf + at);
        if (taken == 0) {
            buf[at] = bad;
            taken = 1;
        }
        at += taken;
        runs.skip(taken);
    }
    if (written)
        *written = at;
    if (fill)
        std::fill(buf + at, buf + n, fillchar);
    return runs.size() == 0;
}

bool AString::to_latin1_z(char* buf, unsigned n, char bad) const
{
    return terminated(buf, n, [&](char* to, unsigned room, unsigned* written) {
        return to_latin1(to, room, bad, written);
    });
}

bool AString::to_utf8(char* buf, unsigned n, unsigned* written, bool fill, char fillchar) const
{
    unsigned at = 0;
    StringRuns runs(*this);
    encode_utf8(runs, buf, &at, n);
    if (written)
        *written = at;
    if (fill)
        std::fill(buf + at, buf + n, fillchar);
    return runs.size() == 0;
}

bool AString::to_utf8_z(char* buf, unsigned n) const
{
    return terminated(buf, n,
                      [&](char* to, unsigned room, unsigned* written) { return to_utf8(to, room, written); });
}

bool AString::to_utf16(unsigned short* buf, unsigned n, unsigned* written, bool fill,
                       unsigned short fillchar) const
{
    return encode(*this, buf, n, written, fill, fillchar,
                  [](AChar c, unsigned short* to, unsigned room, unsigned* used) {
                      return c.to_utf16(to, room, used);
                  });
}

bool AString::to_utf16_z(unsigned short* buf, unsigned n) const
{
    return terminated(buf, n, [&](unsigned short* to, unsigned room, unsigned* written) {
        return to_utf16(to, room, written);
    });
}

bool AString::to_utf32(unsigned* buf, unsigned n, unsigned* written, bool fill, unsigned fillchar) const
{
    return encode(*this, buf, n, written, fill, fillchar,
                  [](AChar c, unsigned* to, unsigned room, unsigned* used) {
                      if (room == 0)
                          return false;
                      *to = c.ord();
                      *used = 1;
                      return true;
                  });
}

bool AString::to_utf32_z(unsigned* buf, unsigned n) const
{
    return terminated(
        buf, n, [&](unsigned* to, unsigned room, unsigned* written) { return to_utf32(to, room, written); });
}

bool AString::to_wchars(wchar_t* buf, unsigned n, unsigned* written, bool fill, wchar_t fillchar) const
{
    return encode(
        *this, buf, n, written, fill, fillchar,
        [](AChar c, wchar_t* to, unsigned room, unsigned* used) { return c.to_wchars(to, room, used); });
}

bool AString::to_wchars_z(wchar_t* buf, unsigned n) const
{
    return terminated(
        buf, n, [&](wchar_t* to, unsigned room, unsigned* written) { return to_wchars(to, room, written); });
}

void AString::send_utf8(AFunction2<const char*, unsigned> sink) const
{
    constexpr unsigned longest_character = 4;
    char buf[128]; // flushed as soon as the longest character might not fit
    unsigned at = 0;
    StringRuns runs(*this);
    while (runs.size()) {
        if (sizeof buf - at < longest_character) {
            sink.run(buf, at);
            at = 0;
        }
        const unsigned room = sizeof buf - longest_character + 1 - at;
        unsigned taken = skuan::narrow(runs.data(), std::min(runs.size(), room), 0x80, buf + at);
        at += taken;
        if (taken == 0) {
            unsigned used = 0;
            if (!runs.data()->to_utf8(buf + at, sizeof buf - at, &used))
                break;
            at += used;
            taken = 1;
        }
        runs.skip(taken);
    }
    if (at != 0)
        sink.run(buf, at);
}

std::string AString::to_string() const
{
    std::string text(len_, '\0'); // enough if all is ASCII
    unsigned written = 0;
    StringRuns runs(*this);
    encode_utf8(runs, text.data(), &written, len_);
    if (runs.size()) {
        std::size_t bytes = written;
        for (StringRuns rest = runs; rest.size(); rest.skip(1)) {
            const unsigned c = rest.data()->ord();
            bytes += 1u + (c > 0x7F) + (c > 0x7FF) + (c > 0xFFFF);
        }
        text.resize(bytes);
        encode_utf8(runs, text.data(), &written, length_of(bytes));
        text.resize(written); // shorter where a character has no form in UTF-8
    }
    return text;
}

std::wstring AString::to_wstring() const
{
    std::wstring text;
    text.reserve(len_);
    for (StringRuns runs(*this); runs.size(); runs.skip(1)) {
        wchar_t form[2];
        unsigned used = 0;
        if (!runs.data()->to_wchars(form, 2, &used))
            break;
        text.append(form, used);
    }
    return text;
}
