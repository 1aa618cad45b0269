// Text as a value: code points in a chain of shared segments, so that a copy or a piece of a string is
// a reference and two numbers. Storages never change once a string holds them, which is why any thread
// may read any string without a lock.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/achar.h>
#include <skuan/foundation/afunction.h>
#include <skuan/foundation/astring_storage.h>

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

class AString;
class AStringFormat;
class AStringList;
class QString;

namespace skuan {
class AStringBuilder;
class StringRuns;
} // namespace skuan

/// An immutable text of up to 2^32 - 2 characters. A value: copying it never copies characters and
/// never allocates. One object must not be assigned to while another thread uses that same object;
/// copies are independent.
///
/// Positions and lengths count characters. A position beyond the end gives the empty string, a length
/// that overruns is cut to the end.
class SKUAN_EXPORT AString
{
public:
    enum CaseSensitivity {
        CaseSensitive = 0,
        CaseInsensitive = 1, ///< compares through AChar::to_lower, so A to Z only
    };
    class iterator;
    using const_iterator = iterator;

    AString() = default;
    AString(const AString& other)
        : storage_(other.storage_),
          start_offset_(other.start_offset_),
          len_(other.len_),
          hash_(other.cached_hash())
    {
    }
    AString(AString&& other) noexcept
        : storage_(std::move(other.storage_)),
          start_offset_(std::exchange(other.start_offset_, 0)),
          len_(std::exchange(other.len_, 0)),
          hash_(std::exchange(other.hash_, 0))
    {
    }
    ~AString() = default;
    AString& operator=(const AString& other) { return *this = AString(other); }
    AString& operator=(AString&& other) noexcept
    {
        AString(std::move(other)).swap(*this);
        return *this;
    }
    void swap(AString& other) noexcept
    {
        storage_.swap(other.storage_);
        std::swap(start_offset_, other.start_offset_);
        std::swap(len_, other.len_);
        std::swap(hash_, other.hash_);
    }

    /// The piece of `whole` from `pos`, sharing its storage.
    AString(const AString& whole, unsigned pos, unsigned len) : AString(whole.substr(pos, len)) {}
    AString(AChar c);
    AString(const QString& text);
    AString(const wchar_t* text); ///< up to the 0; null gives the empty string
    AString(const wchar_t* text, unsigned n);
    AString(const std::string& utf8);
    AString(const std::wstring& text);
    explicit AString(const char* utf8); ///< up to the 0; null gives the empty string
    explicit AString(const AStringList& items);
    AString(const AStringList& items, const AString& separator);
    explicit AString(const AStringFormat& format); ///< as far as it is filled in

    // Makers from the encodings. Where a sequence is refused, or a 0 stands, the string ends: what came
    // before is kept, the rest is dropped, and nothing is reported. Latin-1 has no such sequence; its
    // counted form keeps 0 bytes as characters. A null pointer gives the empty string. The forms with
    // `max` stop at the first 0 or after `max` units.

    static AString l1(const char* latin1) { return from_latin1(latin1); }
    static AString from_latin1(const char* text) { return from_latin1z(text, ~0u); }
    static AString from_latin1(const char* text, unsigned n);
    static AString from_latin1z(const char* text, unsigned max);
    /// See AChar::consume_utf8 for what is refused.
    static AString from_utf8(const char* text, unsigned n);
    static AString from_utf8z(const char* text, unsigned max = ~0u);
    static AString from_utf16(const unsigned short* text, unsigned n);
    /// Values above 0x10FFFF are refused.
    static AString from_utf32(const unsigned* text, unsigned n);
    static AString from_wchars(const wchar_t* text, unsigned n);
    static AString from_string(const std::string& utf8);
    static AString from_wstring(const std::wstring& text);
    static AString from_achar(AChar c) { return AString(c); }

    /// `text`, `count` times over.
    static AString rep(const AString& text, unsigned count);
    /// Both texts in one new storage; if one side is empty, the other side itself.
    static AString cat(const AString& a, const AString& b);
    static AString from_join(const AStringList& items, const AString& separator);

    /// The C formatter's result, taken as Latin-1. For numbers and short literals, not for user text.
    [[gnu::format(printf, 1, 2)]] static AString sprintf(const char* format, ...);
    static AString vsprintf(const char* format, std::va_list args);

    // Decimal digits, filled up to |width| characters: in front for a positive width, behind for a
    // negative one. A minus sign stands before the fill: -5 at width 4 with fill 0 is -005.

    static AString from_int8_t(std::int8_t value, int width = 0, char fill = ' ');
    static AString from_int16_t(std::int16_t value, int width = 0, char fill = ' ');
    static AString from_int32_t(std::int32_t value, int width = 0, char fill = ' ');
    static AString from_int64_t(std::int64_t value, int width = 0, char fill = ' ');
    static AString from_uint8_t(std::uint8_t value, int width = 0, char fill = ' ');
    static AString from_uint16_t(std::uint16_t value, int width = 0, char fill = ' ');
    static AString from_uint32_t(std::uint32_t value, int width = 0, char fill = ' ');
    static AString from_uint64_t(std::uint64_t value, int width = 0, char fill = ' ');
    static AString from_int(int value, int width = 0, char fill = ' ');
    static AString from_short(short value, int width = 0, char fill = ' ');
    static AString from_long(long value, int width = 0, char fill = ' ');
    static AString from_long_long(long long value, int width = 0, char fill = ' ');
    static AString from_unsigned(unsigned value, int width = 0, char fill = ' ');
    static AString from_unsigned_short(unsigned short value, int width = 0, char fill = ' ');
    static AString from_unsigned_long(unsigned long value, int width = 0, char fill = ' ');
    static AString from_unsigned_long_long(unsigned long long value, int width = 0, char fill = ' ');

    /// A speed in units of 1/65536 of normal play, as a decimal multiple of it with up to `digits` decimals
    /// and the letter X behind: 65536 is 1X, 98304 is 1.5X. Rounded, half away from zero; a number has no
    /// zeros at its end. Above 16, `digits` changes nothing.
    static AString from_speed(int speed, unsigned digits);
    /// Four numbers with points between them, the lowest byte first.
    static AString from_ipaddr(unsigned address);

    unsigned length() const { return len_; }
    bool empty() const { return len_ == 0; }
    bool is_empty() const { return len_ == 0; }

    /// Walks the segments up to `i`: not for loops over long strings, which iterators and runs are for.
    AChar getchar(unsigned i, AChar bad = AChar(0)) const
    {
        return i < len_ ? segment_of(start_offset_ + i)->buf[(start_offset_ + i) % AStringSegment::capacity]
                        : bad;
    }
    AChar firstchar(AChar bad = AChar(0)) const { return getchar(0, bad); }
    AChar lastchar(AChar bad = AChar(0)) const { return getchar(len_ - 1, bad); }

    iterator begin() const;
    iterator end() const;

    /// The characters of the whole view if they lie in one segment, else (and for the empty string) null.
    /// Valid while any string holds this storage.
    const AChar* contiguous() const
    {
        if (len_ - 1 < AStringSegment::capacity && start_offset_ + len_ <= AStringSegment::capacity)
            return storage_->head.buf + start_offset_;
        return contiguous_further_on();
    }
    /// Calls `f(const AChar* characters, unsigned n)` for each run, in order, without copying.
    template <typename F>
    void for_each_run(F&& f) const;
    /// The same for a function value.
    void send_achars(AFunction2<const AChar*, unsigned> sink) const;
    /// Encodes into chunks of up to 128 bytes; no chunk ends inside a character.
    void send_utf8(AFunction2<const char*, unsigned> sink) const;

    /// Never 0. The characters' own hashes are added up, not chained, so strings with the same characters
    /// in another order share a hash: meant so, the value is known outside.
    unsigned hash() const
    {
        const unsigned known = cached_hash();
        return known ? known : compute_hash();
    }

    // Comparison by code point; of two strings with one beginning, the shorter is the smaller. `compare`
    // gives -1, 0 or 1, from `apos` and `bpos` on, over at most `count` characters of each side.

    static bool equal(const AString& a, const AString& b, CaseSensitivity cs = CaseSensitive)
    {
        return a.len_ == b.len_ && (cs == CaseSensitive ? a.same_characters(b) : compare(a, b, cs) == 0);
    }
    /// Against a 0-terminated Latin-1 text: the form for tag names. Null equals the empty string.
    bool equal_z(const char* latin1) const;
    static int compare(const AString& a, const AString& b, unsigned count,
                       CaseSensitivity cs = CaseSensitive);
    static int compare(const AString& a, const AString& b, CaseSensitivity cs = CaseSensitive)
    {
        return compare(a, b, ~0u, cs);
    }
    static int compare(const AString& a, unsigned apos, const AString& b, unsigned bpos, CaseSensitivity cs)
    {
        return compare(a, apos, b, bpos, ~0u, cs);
    }
    static int compare(const AString& a, unsigned apos, const AString& b, unsigned bpos, unsigned count,
                       CaseSensitivity cs);
    friend bool operator==(const AString& a, const AString& b) { return equal(a, b); }
    friend bool operator!=(const AString& a, const AString& b) { return !equal(a, b); }
    friend bool operator<(const AString& a, const AString& b) { return compare(a, b, ~0u) < 0; }

    bool has_prefix(const AString& prefix, CaseSensitivity cs = CaseSensitive) const;
    bool has_suffix(const AString& suffix, CaseSensitivity cs = CaseSensitive) const;
    /// The rest after `prefix`, or the string itself without it; `had`, which may be null, tells which.
    AString remove_prefix(const AString& prefix, bool* had = nullptr,
                          CaseSensitivity cs = CaseSensitive) const;
    AString remove_suffix(const AString& suffix, bool* had = nullptr,
                          CaseSensitivity cs = CaseSensitive) const;

    // Pieces, which share the storage.

    AString substr(unsigned pos, unsigned n = ~0u) const
    {
        if (pos >= len_)
            return AString();
        return view(pos, n < len_ - pos ? n : len_ - pos);
    }
    AString mid(unsigned pos, unsigned n = ~0u) const { return substr(pos, n); }
    AString left(unsigned n) const { return view(0, n < len_ ? n : len_); }
    AString right(unsigned n) const { return n < len_ ? view(len_ - n, n) : *this; }
    AString front(unsigned n) const { return left(n); }
    AString end(unsigned n) const { return right(n); }
    AString remove_left(unsigned n) const { return substr(n); }
    AString remove_right(unsigned n) const { return n < len_ ? view(0, len_ - n) : AString(); }
    AString remove_front(unsigned n) const { return remove_left(n); }
    AString remove_end(unsigned n) const { return remove_right(n); }
    AString despace() const { return despace_front().despace_end(); }
    AString despace_front() const { return remove_front(count_spaces_front()); }
    AString despace_end() const;
    unsigned count_spaces_front() const;
    bool all_space() const { return count_spaces_front() == len_; } ///< true for the empty string too
    AString leading_digits() const;                                 ///< the piece of digits 0 to 9 in front

    /// Splits at each `separator`. An empty string gives an empty list; otherwise the piece behind the last
    /// separator is always an item, even if empty, and other empty pieces are items if `keep_empty` is set.
    AStringList split(const AString& separator, bool keep_empty) const;
    /// Splits where `finder(string, from, &position, &length)` finds separators: it leaves a position of
    /// -1 if there is none from `from` on; the length is preset to 1. With `keep_separators` they become
    /// items too. An empty separator still takes the split one character on, and a position before `from`
    /// counts as none. An empty finder gives the string as the one item.
    AStringList split(AFunction4<const AString&, unsigned, int*, unsigned*> finder, bool keep_separators,
                      bool keep_empty) const;

    // New strings made of copied characters.

    AString replace(unsigned pos, unsigned len, const AString& with) const;
    /// Fills up to |width| characters with `c`, in front for a positive width, behind for a negative one.
    AString pad(int width, char c) const;
    /// A string that shares its storage with nobody, if the storage holds more than `slack` characters
    /// beside this view; otherwise the string itself. It keeps a short piece from holding a long text.
    AString deep_copy(unsigned slack) const
    {
        return len_ == 0 || storage_->len - len_ <= slack ? *this : copied();
    }

    // The first (rfind: last) position of what is looked for, or -1.

    int find(AChar c, unsigned from = 0) const;
    /// An empty needle is found at 0, whatever `from` is.
    int find(const AString& needle, unsigned from = 0) const;
    int rfind(AChar c) const { return rfind(c, ~0u); }
    /// At or before `from`.
    int rfind(AChar c, unsigned from) const;
    bool contains(AChar c) const { return find(c) != -1; }
    bool contains(const AString& needle) const { return find(needle) != -1; }

    // This text as a template, with the first value filled in; each is told of at AStringFormat::arg, whose
    // header belongs to every use.

    AStringFormat arg(const AString& text) const;
    AStringFormat arg(const char* utf8) const;
    AStringFormat arg(const wchar_t* text) const;
    AStringFormat arg(int value, int width = 0, char fill = ' ') const;
    AStringFormat arg(unsigned value, int width = 0, char fill = ' ') const;
    AStringFormat arg(long value, int width = 0, char fill = ' ') const;
    AStringFormat arg(unsigned long value, int width = 0, char fill = ' ') const;
    AStringFormat arg(long long value, int width = 0, char fill = ' ') const;
    AStringFormat arg(unsigned long long value, int width = 0, char fill = ' ') const;
    AStringFormat arg(const void* address) const;

    AString operator+(const AString& other) const { return cat(*this, other); }
    AString& operator+=(const AString& other) { return *this = cat(*this, other); }

    // Into a buffer of `n` units. Whole characters are written while they fit, and the first that has no
    // form in the encoding ends the text; `written`, which may be null, counts the units. With `fill` the
    // rest of the buffer is filled with `fillchar`. True when the whole string was written. The `_z` forms
    // keep the last unit for a 0, which is always written unless `n` is 0.

    /// A character from 256 up is written as `bad`.
    bool to_latin1(char* buf, unsigned n, char bad = '?', unsigned* written = nullptr, bool fill = false,
                   char fillchar = ' ') const;
    bool to_latin1_z(char* buf, unsigned n, char bad = '?') const;
    bool to_utf8(char* buf, unsigned n, unsigned* written = nullptr, bool fill = false,
                 char fillchar = ' ') const;
    bool to_utf8_z(char* buf, unsigned n) const;
    bool to_utf16(unsigned short* buf, unsigned n, unsigned* written = nullptr, bool fill = false,
                  unsigned short fillchar = ' ') const;
    bool to_utf16_z(unsigned short* buf, unsigned n) const;
    bool to_utf32(unsigned* buf, unsigned n, unsigned* written = nullptr, bool fill = false,
                  unsigned fillchar = ' ') const;
    bool to_utf32_z(unsigned* buf, unsigned n) const;
    bool to_wchars(wchar_t* buf, unsigned n, unsigned* written = nullptr, bool fill = false,
                   wchar_t fillchar = L' ') const;
    bool to_wchars_z(wchar_t* buf, unsigned n) const;

    std::string to_string() const; ///< UTF-8
    std::wstring to_wstring() const;
    operator QString() const;

    // Numbers, with space around them allowed. The digits may follow a lower-case 0x: then any letter is a
    // digit too, but the base stays 10 (0x20 is 20, 0x1F is 25); meant so. False leaves `out` untouched,
    // and `out` may be null. Signed forms take one leading + or -.

    bool to_int8_t(std::int8_t* out) const;
    bool to_int16_t(std::int16_t* out) const;
    bool to_int32_t(std::int32_t* out) const;
    bool to_int64_t(std::int64_t* out) const;
    bool to_int(int* out) const;
    bool to_long(long* out) const;
    bool to_long_long(long long* out) const;
    bool to_short(short* out) const;
    bool to_signed_int(int* out) const;
    bool to_signed_long(long* out) const;
    bool to_signed_long_long(long long* out) const;
    bool to_signed_short(short* out) const;
    bool to_uint8_t(std::uint8_t* out) const;
    bool to_uint16_t(std::uint16_t* out) const;
    bool to_uint32_t(std::uint32_t* out) const;
    bool to_uint64_t(std::uint64_t* out) const;
    bool to_unsigned(unsigned* out) const;
    bool to_unsigned_int(unsigned* out) const;
    bool to_unsigned_long(unsigned long* out) const;
    bool to_unsigned_long_long(unsigned long long* out) const;
    bool to_unsigned_short(unsigned short* out) const;

    /// Reads what from_speed writes, truncating decimals beyond 1/65536; a part that is missing is 0. A text
    /// without the X is the speed in units of 1/65536, signed or as unsigned 32 bits.
    bool to_speed(int* out) const;
    /// The address written as four numbers from 0 to 255, the first in the lowest byte; else `bad`.
    unsigned to_ipaddr(unsigned bad) const;

private:
    friend class skuan::AStringBuilder;
    friend class skuan::StringRuns;
    using Storage = ARef<AStringInternalStorageStruct>;

    /// Of the caller: `len` is above 0 and inside the storage.
    AString(Storage storage, unsigned start_offset, unsigned len)
        : storage_(std::move(storage)), start_offset_(start_offset), len_(len)
    {
    }
    /// Of the caller: pos + n <= len_.
    AString view(unsigned pos, unsigned n) const
    {
        return n ? AString(storage_, start_offset_ + pos, n) : AString();
    }

    unsigned cached_hash() const { return __atomic_load_n(&hash_, __ATOMIC_RELAXED); }
    unsigned compute_hash() const;
    const AStringSegment* segment_of(unsigned absolute_position) const
    {
        const AStringSegment* segment = &storage_->head;
        for (; absolute_position >= AStringSegment::capacity; absolute_position -= AStringSegment::capacity)
            segment = segment->next;
        return segment;
    }
    const AChar* contiguous_further_on() const;
    bool same_characters(const AString& other) const; // of the caller: the lengths are equal
    AString copied() const;

    Storage storage_; // null if and only if len_ is 0
    unsigned start_offset_ = 0;
    unsigned len_ = 0;
    mutable unsigned hash_ = 0; // 0 until computed; raced for by compare-and-swap
};
// A pointer and three counts, filled up to whole pointers.
static_assert(sizeof(AString) == (sizeof(void*) == 4 ? 16 : 24));

template <>
struct std::hash<AString>
{
    std::size_t operator()(const AString& text) const { return text.hash(); }
};

#include <skuan/foundation/astring_walk.h>
