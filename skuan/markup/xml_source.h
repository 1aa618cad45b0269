// What TreeBuilder asks of the text it reads, for the two texts there are: the bytes of a stream, and
// the characters of an AString.
#pragma once

#include <skuan/foundation/achar.h>
#include <skuan/foundation/astring_builder.h>
#include <skuan/markup/byte_scan.h>
#include <skuan/markup/name_table.h>
#include <skuan/markup/xml_entities.h>

#include <string>

namespace skuan {

/// Steps that are written alike for bytes and characters. `Self` is the source itself.
template <typename Self, typename CharType>
struct XMLSource
{
    using Char = CharType;

    static bool is_blank(const Char* p, const Char* end)
    {
        while (p != end && Self::is_space(*p))
            ++p;
        return p == end;
    }
    static void trim(const Char** begin, const Char** end)
    {
        while (*begin != *end && Self::is_space(**begin))
            ++*begin;
        while (*begin != *end && Self::is_space((*end)[-1]))
            --*end;
    }

    /// Adds [p, end) to `out` with its entities replaced; false if `out` refused some of it.
    static bool append_unescaped(AStringBuilder& out, const Char* p, const Char* end)
    {
        const Char* kept = p; // what stands from here on has yet to be added
        for (; p != end; ++p) {
            if (!Self::is(*p, '&'))
                continue;
            const XMLEntity* entity = entity_at(p, end, Self::is);
            if (!entity)
                continue;
            if (!Self::append(out, kept, p))
                return false;
            out.append(AChar::from_latin1(entity->character));
            kept = p + entity->length;
            p = kept - 1;
        }
        return Self::append(out, kept, end);
    }
};

/// UTF-8 bytes, of which `scan_slack` more than the range must be readable. Sequences that are not
/// UTF-8, and 0 bytes, make the text bad.
struct ByteSource : XMLSource<ByteSource, char>
{
    using Run = TextRun;

    static bool is(char c, char wanted) { return c == wanted; }
    static bool is_space(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
    static bool same(const char* a, const char* b, unsigned n) { return same_bytes(a, b, n); }
    static Run scan_text(const char* p, const char* end) { return skuan::scan_text(p, end); }
    static const char* find_tag_end(const char* p, const char* end) { return skuan::find_tag_end(p, end); }

    static bool make_name(const char* p, unsigned n, AString* name)
    {
        const AString* shared = find_name(p, n);
        if (!shared) {
            if (!is_name(p, n))
                return false;
            shared = add_name(p, n);
        }
        *name = shared ? *shared : AString::from_latin1(p, n);
        return true;
    }

    static bool make_text(const char* p, const Run& run, AString* text)
    {
        const auto n = static_cast<unsigned>(run.end - p);
        if (!run.has_ampersand) {
            if (!run.is_plain)
                return string_from_utf8(p, n, text);
            *text = AString::from_latin1(p, n);
            return true;
        }
        AStringBuilder builder;
        if (!append_unescaped(builder, p, run.end))
            return false;
        *text = builder.finish();
        return true;
    }

    static bool append(AStringBuilder& out, const char* p, const char* end)
    {
        return out.append_utf8(p, static_cast<unsigned>(end - p));
    }

    static bool is_name(const char* p, unsigned n)
    {
        const auto letter = [](char c) { return ('A' <= c && c <= 'Z') || ('a' <= c && c <= 'z'); };
        if (n == 0 || !letter(*p))
            return false;
        for (unsigned i = 1; i < n; ++i)
            if (!letter(p[i]) && p[i] != '_' && !('0' <= p[i] && p[i] <= '9'))
                return false;
        return true;
    }
};

/// Characters. Any of them may stand in text.
struct CharacterSource : XMLSource<CharacterSource, AChar>
{
    struct Run
    {
        const AChar* end;
    };

    static bool is(AChar c, char wanted) { return c.ord() == static_cast<unsigned char>(wanted); }
    static bool is_space(AChar c) { return c.is_space(); }
    static bool same(const AChar* a, const AChar* b, unsigned n)
    {
        for (unsigned i = 0; i < n; ++i)
            if (a[i] != b[i])
                return false;
        return true;
    }
    static Run scan_text(const AChar* p, const AChar* end)
    {
        while (p != end && !is(*p, '<') && !is(*p, '>'))
            ++p;
        return {p};
    }
    static const AChar* find_tag_end(const AChar* p, const AChar* end)
    {
        while (p != end && !is(*p, '>'))
            ++p;
        return p;
    }

    static bool make_name(const AChar* p, unsigned n, AString* name)
    {
        std::string bytes(n, '\0');
        for (unsigned i = 0; i < n; ++i)
            bytes[i] = p[i].to_latin1('\0'); // 0 is in no name
        return ByteSource::make_name(bytes.data(), n, name);
    }
    static bool make_text(const AChar* p, const Run& run, AString* text)
    {
        AStringBuilder builder;
        append_unescaped(builder, p, run.end);
        *text = builder.finish();
        return true;
    }
    static bool append(AStringBuilder& out, const AChar* p, const AChar* end)
    {
        out.append(p, static_cast<unsigned>(end - p));
        return true;
    }
};

} // namespace skuan
