// Finding markup characters sixteen bytes at a time. Where the bytes of a message are read more than
// they are thought about, this is most of the time spent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace skuan {

/// How many bytes behind the end of its range a scan may read. It does not use what it reads there.
constexpr std::size_t scan_slack = 18;

/// Where a run of text ends, and what stood in it.
struct TextRun
{
    const char* end;    ///< the first '<' or '>', or the end of the range
    bool has_ampersand; ///< an '&' stands in the run
    bool is_plain;      ///< every byte is ASCII and none is 0
};

#if defined(__SSE2__)

namespace detail {
inline unsigned equal_mask(__m128i block, char c)
{
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8(c))));
}
inline __m128i load_block(const char* p)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}
/// Bytes from 128 up count as below everything.
inline unsigned above_mask(__m128i block, char c)
{
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpgt_epi8(block, _mm_set1_epi8(c))));
}
/// The bits of the first `n` bytes of a block.
inline unsigned first_bytes(std::ptrdiff_t n)
{
    return n >= 16 ? 0xFFFFu : n > 0 ? (1u << n) - 1 : 0;
}
} // namespace detail

/// Finds the end of the text that starts at `p`.
inline TextRun scan_text(const char* p, const char* end)
{
    unsigned ampersand = 0;
    unsigned unusual = 0;
    for (; p < end; p += 16) {
        const __m128i block = detail::load_block(p);
        const unsigned within = detail::first_bytes(end - p);
        const unsigned stop = (detail::equal_mask(block, '<') | detail::equal_mask(block, '>')) & within;
        const unsigned before = stop ? (stop & -stop) - 1 : within;
        ampersand |= detail::equal_mask(block, '&') & before;
        unusual |=
            (static_cast<unsigned>(_mm_movemask_epi8(block)) | detail::equal_mask(block, '\0')) & before;
        if (stop)
            return {p + __builtin_ctz(stop), ampersand != 0, unusual == 0};
    }
    return {end, ampersand != 0, unusual == 0};
}

/// The first '>' in [p, end), or `end`.
inline const char* find_tag_end(const char* p, const char* end)
{
    for (; p < end; p += 16) {
        const unsigned found = detail::equal_mask(detail::load_block(p), '>') & detail::first_bytes(end - p);
        if (found)
            return p + __builtin_ctz(found);
    }
    return end;
}

/// The first '<' in [p, end), or `end`.
inline const char* find_tag_start(const char* p, const char* end)
{
    for (; p < end; p += 16) {
        const unsigned found = detail::equal_mask(detail::load_block(p), '<') & detail::first_bytes(end - p);
        if (found)
            return p + __builtin_ctz(found);
    }
    return end;
}

/// The first '<' in [p, end) that may open an end tag whose name starts with `first`, or `end`. What is
/// passed over is '<' before a letter, and "</" before some other name.
inline const char* find_end_tag(const char* p, const char* end, char first)
{
    for (; p < end; p += 16) {
        const unsigned tags = detail::equal_mask(detail::load_block(p), '<') & detail::first_bytes(end - p);
        if (!tags)
            continue;
        // All that may stand between '<' and the name is below '@'. What lies behind the end is not known
        // yet, so that nothing is passed over for it.
        const __m128i second = detail::load_block(p + 1);
        const __m128i third = detail::load_block(p + 2);
        const unsigned letter = detail::above_mask(second, '@') & detail::first_bytes(end - p - 1);
        const unsigned other_name = detail::equal_mask(second, '/') & detail::above_mask(third, ' ') &
                                    ~detail::equal_mask(third, first) & detail::first_bytes(end - p - 2);
        if (const unsigned found = tags & ~letter & ~other_name)
            return p + __builtin_ctz(found);
    }
    return end;
}

#else // the same, a byte at a time

inline TextRun scan_text(const char* p, const char* end)
{
    bool ampersand = false;
    bool plain = true;
    for (; p < end && *p != '<' && *p != '>'; ++p) {
        ampersand |= *p == '&';
        plain &= static_cast<signed char>(*p) > 0;
    }
    return {p, ampersand, plain};
}

inline const char* find_tag_end(const char* p, const char* end)
{
    while (p < end && *p != '>')
        ++p;
    return p;
}

inline const char* find_tag_start(const char* p, const char* end)
{
    while (p < end && *p != '<')
        ++p;
    return p;
}

inline const char* find_end_tag(const char* p, const char* end, char)
{
    return find_tag_start(p, end);
}

#endif

/// Whether two names are the same bytes. Names are short, so that a call costs more than the comparison.
inline bool same_bytes(const char* a, const char* b, std::size_t n)
{
    const auto differ = [](const char* x, const char* y, auto word) {
        auto other = word;
        std::memcpy(&word, x, sizeof word);
        std::memcpy(&other, y, sizeof other);
        return word != other;
    };
    if (n >= 8) {
        for (std::size_t i = 0; i + 8 <= n; i += 8)
            if (differ(a + i, b + i, std::uint64_t{}))
                return false;
        return !differ(a + n - 8, b + n - 8, std::uint64_t{});
    }
    if (n >= 4)
        return !differ(a, b, std::uint32_t{}) && !differ(a + n - 4, b + n - 4, std::uint32_t{});
    for (std::size_t i = 0; i < n; ++i)
        if (a[i] != b[i])
            return false;
    return true;
}

} // namespace skuan
