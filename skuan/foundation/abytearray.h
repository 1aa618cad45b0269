// Bytes as a value: what sockets give and take, blobs in messages, and their forms as text. Large arrays
// start on a page, so that they can be handed to the disk and the picture paths as they are.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/aref.h>
#include <skuan/foundation/astring.h>

#include <cstdint>

/// An array of up to 2^32 - 2 bytes with one 0 byte behind the last. Copies share the bytes until one of
/// them is changed; they may live on different threads, while one object belongs to one thread at a time.
/// From 4096 bytes of capacity on, the data begins at a multiple of 4096.
///
/// A growth for which there is no memory, or beyond the largest size, is not done and leaves the array as it
/// was.
class SKUAN_EXPORT AByteArray
{
public:
    /// The bytes and their room, four words.
    struct DataStruct
    {
        std::size_t capacity = 0; ///< with the 0 behind the bytes; 0 when nothing is allocated
        std::size_t size = 0;
        unsigned char* allocation = nullptr; ///< what is to be freed
        unsigned char* data = nullptr;       ///< inside `allocation`

        DataStruct() = default;
        DataStruct(const DataStruct&) = delete;
        DataStruct& operator=(const DataStruct&) = delete;
        SKUAN_EXPORT ~DataStruct();
        /// Room for `n` bytes and the 0. The room doubles, from 32 on. False when there is no memory.
        SKUAN_EXPORT bool reserve(std::size_t n);
    };

    AByteArray() = default;
    explicit AByteArray(unsigned char a) { set(a); }
    AByteArray(unsigned char a, unsigned char b) { set(a, b); }
    AByteArray(unsigned char a, unsigned char b, unsigned char c) { set(a, b, c); }
    AByteArray(unsigned char a, unsigned char b, unsigned char c, unsigned char d) { set(a, b, c, d); }
    AByteArray(const void* bytes, unsigned n) { append(bytes, n); }

    void set() { clear(); }
    void set(unsigned char a);
    void set(unsigned char a, unsigned char b);
    void set(unsigned char a, unsigned char b, unsigned char c);
    void set(unsigned char a, unsigned char b, unsigned char c, unsigned char d);
    void set(const void* bytes, unsigned n);

    void append(unsigned char a);
    void append(unsigned char a, unsigned char b);
    void append(unsigned char a, unsigned char b, unsigned char c);
    void append(unsigned char a, unsigned char b, unsigned char c, unsigned char d);
    /// `bytes` may lie in this array; null adds nothing, which is an assertion unless `n` is 0.
    void append(const void* bytes, unsigned n);
    void append(const AByteArray& other);
    // In this machine's byte order, as the number stands in memory.
    void append16(std::uint16_t value) { append(&value, sizeof value); }
    void append32(std::uint32_t value) { append(&value, sizeof value); }
    void append64(std::uint64_t value) { append(&value, sizeof value); }
    AByteArray operator+(const AByteArray& other) const { return AByteArray(*this) += other; }
    AByteArray& operator+=(const AByteArray& other)
    {
        append(other);
        return *this;
    }

    unsigned size() const { return shared_ ? static_cast<unsigned>(shared_->data.size) : 0; }
    bool empty() const { return size() == 0; }
    void clear() { shared_ = nullptr; }

    /// For writing; valid until the array is next changed, copied or destroyed. Never null, unless there is
    /// no memory.
    unsigned char* data();
    const unsigned char* data() const { return const_data(); }
    /// Valid until the array is changed or destroyed. Never null: an empty array gives its 0 byte.
    const unsigned char* const_data() const;
    /// An index beyond the end gives a byte that belongs to nobody.
    unsigned char& operator[](unsigned index);
    unsigned char operator[](unsigned index) const { return index < size() ? const_data()[index] : 0; }

    // Copies of a part; a position or length beyond the end is cut.
    AByteArray left(unsigned n) const { return mid(0, n); }
    AByteArray mid(unsigned pos, unsigned n = ~0u) const;
    AByteArray right(unsigned n) const { return n < size() ? mid(size() - n) : *this; }

    /// -1, 0 or 1: bytes as unsigned, then the shorter is the smaller.
    int cmp(const AByteArray& other) const;
    bool operator==(const AByteArray& other) const { return size() == other.size() && cmp(other) == 0; }
    bool operator!=(const AByteArray& other) const { return !(*this == other); }
    bool operator<(const AByteArray& other) const { return cmp(other) < 0; }
    bool operator<=(const AByteArray& other) const { return cmp(other) <= 0; }
    bool operator>(const AByteArray& other) const { return cmp(other) > 0; }
    bool operator>=(const AByteArray& other) const { return cmp(other) >= 0; }

    // The first (rfind: last) position, or -1.
    int find(unsigned char byte, unsigned from = 0) const;
    int rfind(unsigned char byte, unsigned from = ~0u) const; ///< at or before `from`
    bool has_prefix(const AByteArray& prefix) const;
    /// Every byte `from` becomes `to`.
    void replace(unsigned char from, unsigned char to);

    /// Room for `n` bytes without a further allocation.
    void reserve(unsigned n);
    /// The bytes for which there is room.
    unsigned reserved_size() const;
    /// Cuts, or fills what is new with `fill`.
    void resize(unsigned n, unsigned char fill = 0);

    /// Writes `count` bytes over this array from `dest_offset` on, and `copy_to` reads them from
    /// `source_offset` on; both give how many lay inside the array and were copied.
    unsigned copy_from(const void* from, unsigned count, unsigned dest_offset = 0);
    unsigned copy_to(void* to, unsigned count, unsigned source_offset = 0) const;

    /// Base 64 without padding and with a line feed behind every 20th byte: meant so, both ends expect it.
    AString toBase64() const;
    /// Skips every character outside the alphabet; a last group cut short gives the whole bytes in it.
    static AByteArray fromBase64(const AString& text);
    /// Upper-case digits, with a line feed before a byte where the line holds `width` - 1 digits or more. A
    /// width of 0 or 1 begins with a line feed: meant so.
    AString toHex(unsigned width) const;
    /// The same digits as bytes, in one line; nothing from 2^31 bytes on.
    AByteArray toHexAscii() const;
    /// From pairs of digits, skipping what is neither digit nor letter. Letters up to Z count, with the
    /// values of AChar::to_hexdigit; a last digit without its pair is dropped.
    static AByteArray fromHexAscii(const AByteArray& digits);

    static AByteArray toUtf8(const AString& text);
    /// Ends at the first sequence that is refused; see AString::from_utf8.
    static AString fromUtf8(const AByteArray& bytes) { return bytes.fromUtf8(); }
    AString fromUtf8() const;

private:
    struct Shared
    {
        AtomicUnsigned references{1};
        DataStruct data;
        SKUAN_EXPORT static void destroy(Shared* shared);
    };
    /// The bytes as ours alone, made or copied if need be; null when there is no memory.
    DataStruct* ref();

    ARef<Shared> shared_; // null for a new, empty array
};
static_assert(sizeof(AByteArray::DataStruct) == 4 * sizeof(void*));
