// How strings are made: the only code that writes into a string's storage. Parsers and converters fill
// a builder; nothing else needs to know that a storage has segments.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>

namespace skuan {

/// Collects characters and makes one AString of them. Cheap enough for one per element: nothing is
/// allocated before the first character, and short texts take one pooled block. One thread at a time.
///
/// When memory runs out, or a text would pass 2^32 - 2 characters, what doesn't fit is dropped.
class SKUAN_EXPORT AStringBuilder
{
public:
    AStringBuilder() = default;
    ~AStringBuilder() { clear(); }
    AStringBuilder(const AStringBuilder&) = delete;
    AStringBuilder& operator=(const AStringBuilder&) = delete;

    void append(AChar c)
    {
        if (at_ != end_ || grow())
            *at_++ = c;
    }
    void append(const AChar* text, unsigned n);
    void append(const AString& text);
    void append(AChar c, unsigned count);
    /// False at a sequence that AChar::consume_utf8 refuses, a 0 byte included; what stood before it is
    /// kept. A character must not be cut between two calls.
    bool append_utf8(const char* text, unsigned n);
    void append_latin1(const char* text, unsigned n);

    unsigned length() const { return full_ + static_cast<unsigned>(at_ - begin_); }

    /// The string; the builder is empty again.
    AString finish();
    /// The same as a string that is never freed and costs no count when copied: for names that live as
    /// long as the process.
    AString finish_permanently();
    void clear();

private:
    bool grow();
    AStringInternalStorageStruct* release();

    AStringInternalStorageStruct* storage_ = nullptr;
    AStringSegment* tail_ = nullptr;
    AChar* begin_ = nullptr; // of the tail segment
    AChar* at_ = nullptr;
    AChar* end_ = nullptr;
    unsigned full_ = 0; // characters in the segments before the tail
};

/// The whole of `bytes` as a string, or false, and `out` untouched, if any of it is refused.
SKUAN_EXPORT bool string_from_utf8(const char* bytes, unsigned n, AString* out);

/// A string for a name that lives as long as the process; `ascii` is copied.
SKUAN_EXPORT AString permanent_string(const char* ascii, unsigned n);

} // namespace skuan
