// Byte arrays: copy on write, growth and alignment, and the quirks of their text forms.
#include <skuan/foundation/abytearray.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

namespace {

AByteArray bytes(const std::string& text)
{
    return AByteArray(text.data(), static_cast<unsigned>(text.size()));
}

std::string text(const AByteArray& array)
{
    return std::string(reinterpret_cast<const char*>(array.const_data()), array.size());
}

TEST(AByteArray, BuildsAndAppends)
{
    EXPECT_EQ(text(AByteArray()), "");
    EXPECT_EQ(text(AByteArray('a')), "a");
    EXPECT_EQ(text(AByteArray('a', 'b', 'c', 'd')), "abcd");
    AByteArray array('a', 'b');
    array.append('c', 'd', 'e');
    array += AByteArray('f');
    EXPECT_EQ(text(array + bytes("gh")), "abcdefgh");
    EXPECT_EQ(text(array), "abcdef");
    array.set('x', 'y', 'z');
    array.append16(0x4141);
    array.append32(0x42424242);
    array.append64(0x4343434343434343);
    EXPECT_EQ(text(array), "xyzAABBBBCCCCCCCC");
    array.append(nullptr, 0);
    array.append(nullptr, 5);
    EXPECT_EQ(array.size(), 17u);
    array.clear();
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.const_data()[0], 0);
}

TEST(AByteArray, AppendsFromItself)
{
    AByteArray array = bytes("0123456789abcdef");
    for (int i = 0; i < 4; ++i)
        array.append(array); // grows over its own bytes
    EXPECT_EQ(array.size(), 256u);
    array.append(array.const_data() + 10, 6);
    EXPECT_EQ(text(array.right(8)), "efabcdef");
    array.set(array.const_data() + 1, 3);
    EXPECT_EQ(text(array), "123");
}

TEST(AByteArray, AChangeLeavesTheOtherCopyAlone)
{
    const struct
    {
        const char* what;
        void (*change)(AByteArray&);
        std::string expected;
    } rows[] = {
        {"data", [](AByteArray& a) { a.data()[0] = 'X'; }, "Xbc"},
        {"[]", [](AByteArray& a) { a[2] = 'X'; }, "abX"},
        {"append", [](AByteArray& a) { a.append('X'); }, "abcX"},
        {"resize", [](AByteArray& a) { a.resize(2); }, "ab"},
        {"resize up", [](AByteArray& a) { a.resize(5, 'X'); }, "abcXX"},
        {"replace", [](AByteArray& a) { a.replace('b', 'X'); }, "aXc"},
        {"copy_from", [](AByteArray& a) { a.copy_from("XYZ", 3, 1); }, "aXY"},
        {"set", [](AByteArray& a) { a.set('X'); }, "X"},
        {"clear", [](AByteArray& a) { a.clear(); }, ""},
    };
    for (const auto& row : rows) {
        AByteArray original = bytes("abc");
        AByteArray copy = original;
        EXPECT_EQ(copy.const_data(), original.const_data());
        row.change(copy);
        EXPECT_EQ(text(copy), row.expected) << row.what;
        EXPECT_EQ(copy.const_data()[copy.size()], 0) << row.what;
        EXPECT_EQ(text(original), "abc") << row.what;
    }
    AByteArray alone = bytes("abc");
    const unsigned char* const place = alone.const_data();
    alone[0] = 'X';
    EXPECT_EQ(alone.const_data(), place);
    alone[3] = 'Y'; // nobody's byte
    EXPECT_EQ(text(alone), "Xbc");
    EXPECT_EQ(std::as_const(alone)[3], 0);
}

TEST(AByteArray, RoomDoublesAndLargeArraysStartOnAPage)
{
    EXPECT_EQ(AByteArray().reserved_size(), 0u);
    const struct
    {
        unsigned n, room;
    } rows[] = {{1, 31}, {31, 31}, {32, 63}, {63, 63}, {64, 127}, {4094, 4095}, {4095, 4095}, {4096, 8191}};
    for (const auto& row : rows) {
        AByteArray array;
        array.resize(row.n, 'x');
        EXPECT_EQ(array.reserved_size(), row.room) << row.n;
        EXPECT_EQ(array.size(), row.n);
        EXPECT_EQ(array.const_data()[row.n], 0);
        const bool large = row.room >= 4095;
        EXPECT_TRUE(!large || reinterpret_cast<std::uintptr_t>(array.const_data()) % 4096 == 0);
    }
    AByteArray grown;
    std::string expected;
    for (unsigned i = 0; i < 10000; ++i) {
        grown.append(static_cast<unsigned char>(i));
        expected += static_cast<char>(i);
    }
    EXPECT_EQ(text(grown), expected);
    AByteArray empty;
    empty.data();
    EXPECT_EQ(empty.reserved_size(), 31u);
}

TEST(AByteArray, PartsAndSearch)
{
    const AByteArray array = bytes("abcabc");
    EXPECT_EQ(text(array.left(2)), "ab");
    EXPECT_EQ(text(array.left(9)), "abcabc");
    EXPECT_EQ(text(array.mid(2, 2)), "ca");
    EXPECT_EQ(text(array.mid(2)), "cabc");
    EXPECT_EQ(text(array.mid(6, 1)), "");
    EXPECT_EQ(text(array.mid(5, ~0u)), "c");
    EXPECT_EQ(text(array.right(2)), "bc");
    EXPECT_EQ(text(array.right(9)), "abcabc");
    EXPECT_EQ(array.find('b'), 1);
    EXPECT_EQ(array.find('b', 2), 4);
    EXPECT_EQ(array.find('b', 5), -1);
    EXPECT_EQ(array.find('b', ~0u), -1);
    EXPECT_EQ(array.rfind('b'), 4);
    EXPECT_EQ(array.rfind('b', 3), 1);
    EXPECT_EQ(array.rfind('x'), -1);
    EXPECT_EQ(AByteArray().rfind('x'), -1);
    EXPECT_TRUE(array.has_prefix(bytes("abc")));
    EXPECT_TRUE(array.has_prefix(AByteArray()));
    EXPECT_FALSE(array.has_prefix(bytes("abcabca")));
    char buf[4] = "...";
    EXPECT_EQ(array.copy_to(buf, 3, 4), 2u);
    EXPECT_STREQ(buf, "bc.");
    EXPECT_EQ(array.copy_to(buf, 3, 6), 0u);
    AByteArray target = array;
    EXPECT_EQ(target.copy_from("XYZ", 3, 6), 0u);
    EXPECT_EQ(target, array);
}

TEST(AByteArray, OrderIsByUnsignedBytesThenLength)
{
    const AByteArray ascending[] = {AByteArray(), bytes("a"), bytes("ab"), bytes("b"), bytes("\xFF")};
    for (int i = 0; i < 5; ++i)
        for (int k = 0; k < 5; ++k) {
            const AByteArray &a = ascending[i], &b = ascending[k];
            EXPECT_EQ(a.cmp(b), i < k ? -1 : i > k);
            EXPECT_EQ(a == b, i == k);
            EXPECT_EQ(a != b, i != k);
            EXPECT_EQ(a < b, i < k);
            EXPECT_EQ(a <= b, i <= k);
            EXPECT_EQ(a > b, i > k);
            EXPECT_EQ(a >= b, i >= k);
        }
}

TEST(AByteArray, Base64)
{
    const struct
    {
        std::string bytes, text;
    } rows[] = {
        {"", ""},
        {"M", "TQ"}, // no padding
        {"Ma", "TWE"},
        {"Man", "TWFu"},
        {std::string("\xFB\xFF\xFE\x00", 4), "+//+AA"},
        {"01234567890123456789",
         "MDEyMzQ1Njc4OTAxMjM0NTY3OD\nk"}, // the 20th byte ends the line within a group
        {"012345678901234567890", "MDEyMzQ1Njc4OTAxMjM0NTY3OD\nkw"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(AByteArray::fromBase64(AString(row.text)), bytes(row.bytes)) << row.text;
        EXPECT_EQ(bytes(row.bytes).toBase64().to_string(), row.text);
    }
    EXPECT_EQ(text(AByteArray::fromBase64(AString::l1(" T-W\nF*u=="))), "Man");
    EXPECT_EQ(text(AByteArray::fromBase64(AString::l1("T"))), "");
    std::string all(1000, '\0');
    std::iota(all.begin(), all.end(), '\0');
    EXPECT_EQ(AByteArray::fromBase64(bytes(all).toBase64()), bytes(all));
}

TEST(AByteArray, Hex)
{
    const AByteArray array = bytes("\x01\xAB\xFF");
    const struct
    {
        unsigned width;
        const char* text;
    } rows[] = {
        {0, "\n01\nAB\nFF"}, {1, "\n01\nAB\nFF"}, {2, "01\nAB\nFF"}, {3, "01\nAB\nFF"},
        {4, "01AB\nFF"},     {5, "01AB\nFF"},     {6, "01ABFF"},     {~0u, "01ABFF"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(array.toHex(row.width).to_string(), row.text) << row.width;
    EXPECT_EQ(text(array.toHexAscii()), "01ABFF");
    EXPECT_EQ(AByteArray::fromHexAscii(bytes("01 aB\nf:F")), array);
    EXPECT_EQ(AByteArray::fromHexAscii(bytes("1G")), AByteArray(0x20)); // G is 16
    EXPECT_EQ(AByteArray::fromHexAscii(bytes("Z0")), AByteArray(0x30)); // 35 * 16, one byte of it
    EXPECT_EQ(AByteArray::fromHexAscii(bytes("ABC")), AByteArray(0xAB));
    EXPECT_TRUE(AByteArray::fromHexAscii(AByteArray()).empty());
}

TEST(AByteArray, Utf8)
{
    const std::string long_text(1000, 'x');
    for (const std::string& t : {std::string(), std::string("a\xE2\x82\xAC"), long_text}) {
        const AByteArray array = AByteArray::toUtf8(AString(t));
        EXPECT_EQ(text(array), t);
        EXPECT_EQ(array.fromUtf8(), AString(t));
        EXPECT_EQ(AByteArray::fromUtf8(array), AString(t));
    }
    EXPECT_EQ(bytes("ab\xFFz").fromUtf8(), AString::l1("ab"));
}

} // namespace
