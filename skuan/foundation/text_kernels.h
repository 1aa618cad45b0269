// The inner loops between bytes and code points, 16 characters at a step. For this folder's sources.
#pragma once

#include <skuan/foundation/achar.h>

#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace skuan {

static_assert(sizeof(AChar) == 4, "a run of characters is a run of 32-bit words");

#ifdef __SSE2__

inline void widen_block(__m128i bytes, AChar* out)
{
    const __m128i zero = _mm_setzero_si128();
    const __m128i low = _mm_unpacklo_epi8(bytes, zero);
    const __m128i high = _mm_unpackhi_epi8(bytes, zero);
    __m128i* const to = reinterpret_cast<__m128i*>(out);
    _mm_storeu_si128(to, _mm_unpacklo_epi16(low, zero));
    _mm_storeu_si128(to + 1, _mm_unpackhi_epi16(low, zero));
    _mm_storeu_si128(to + 2, _mm_unpacklo_epi16(high, zero));
    _mm_storeu_si128(to + 3, _mm_unpackhi_epi16(high, zero));
}

/// Widens 16 bytes if all are ASCII and none is 0.
inline bool widen_ascii_block(const char* text, AChar* out)
{
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    // As signed bytes, 0 and everything from 0x80 up are the ones not greater than 0.
    if (_mm_movemask_epi8(_mm_cmpgt_epi8(bytes, _mm_setzero_si128())) != 0xFFFF)
        return false;
    widen_block(bytes, out);
    return true;
}

inline void widen_latin1_block(const char* text, AChar* out)
{
    widen_block(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text)), out);
}

/// Narrows 16 characters if all lie below `limit`, a power of two of at most 256.
inline bool narrow_block(const AChar* text, unsigned limit, char* out)
{
    const __m128i* const from = reinterpret_cast<const __m128i*>(text);
    const __m128i a = _mm_loadu_si128(from);
    const __m128i b = _mm_loadu_si128(from + 1);
    const __m128i c = _mm_loadu_si128(from + 2);
    const __m128i d = _mm_loadu_si128(from + 3);
    const __m128i above = _mm_and_si128(_mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d)),
                                        _mm_set1_epi32(static_cast<int>(~(limit - 1))));
    if (_mm_movemask_epi8(_mm_cmpeq_epi32(above, _mm_setzero_si128())) != 0xFFFF)
        return false;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out),
                     _mm_packus_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d)));
    return true;
}

#else

inline void widen_latin1_block(const char* text, AChar* out)
{
    for (unsigned i = 0; i < 16; ++i)
        out[i] = AChar::from_latin1(text[i]);
}

inline bool widen_ascii_block(const char* text, AChar* out)
{
    bool all = true;
    for (unsigned i = 0; i < 16; ++i)
        all &= static_cast<signed char>(text[i]) > 0;
    if (all)
        widen_latin1_block(text, out);
    return all;
}

inline bool narrow_block(const AChar* text, unsigned limit, char* out)
{
    unsigned bits = 0;
    for (unsigned i = 0; i < 16; ++i)
        bits |= text[i].ord();
    if (bits >= limit)
        return false;
    for (unsigned i = 0; i < 16; ++i)
        out[i] = static_cast<char>(text[i].ord());
    return true;
}

#endif

/// Widens bytes up to the first 0 or non-ASCII byte; gives how many.
inline unsigned widen_ascii(const char* text, unsigned n, AChar* out)
{
    unsigned done = 0;
    while (n - done >= 16 && widen_ascii_block(text + done, out + done))
        done += 16;
    // The last few once more as part of a whole block, which is quicker than one by one.
    if (done != 0 && n - done < 16 && widen_ascii_block(text + n - 16, out + n - 16))
        return n;
    for (; done<n&& static_cast<signed char>(text[done])> 0; ++done)
        out[done] = AChar(static_cast<unsigned char>(text[done]));
    return done;
}

inline void widen_latin1(const char* text, unsigned n, AChar* out)
{
    unsigned done = 0;
    for (; n - done >= 16; done += 16)
        widen_latin1_block(text + done, out + done);
    for (; done < n; ++done)
        out[done] = AChar::from_latin1(text[done]);
}

/// Narrows characters up to the first that isn't below `limit`, 128 or 256; gives how many.
inline unsigned narrow(const AChar* text, unsigned n, unsigned limit, char* out)
{
    unsigned done = 0;
    while (n - done >= 16 && narrow_block(text + done, limit, out + done))
        done += 16;
    if (done != 0 && n - done < 16 && narrow_block(text + n - 16, limit, out + n - 16))
        return n;
    for (; done < n && text[done].ord() < limit; ++done)
        out[done] = static_cast<char>(text[done].ord());
    return done;
}

} // namespace skuan
