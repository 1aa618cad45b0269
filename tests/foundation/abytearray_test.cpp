// Byte arrays: copy on write, growth and alignment, and the quirks of their text forms.
#include <skuan/foundation/abytearray.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>

namespace {

AByteArray bytes(const std::string& text)
{
    return AByteArray(text.data(), static_cast<unsigned>(text.size()));
}

std::string text(const AByteArray& array)
{
    return std::string(reinterpret_cast<const char*>(array.const_data()), array.size());
}

TEST(AByteArray, AppendsFromNowhereAndFromItself)
{
    AByteArray array = bytes("0123456789abcdef");
    for (int i = 0; i < 4; ++i)
        array.append(array); // grows over its own bytes
    EXPECT_EQ(array.size(), 256u);
    array.append(array.const_data() + 10, 6);
    array.append(nullptr, 0);
    array.append(nullptr, 5);
    EXPECT_EQ(text(array.right(8)), "efabcdef");
    array.set(array.const_data() + 1, 3);
    EXPECT_EQ(text(array), "123");
    array.append32(0x42424242);
    EXPECT_EQ(text(array), "123BBBB");
}

TEST(AByteArray, AChangeLeavesTheOtherCopyAlone)
{
    const std::tuple<const char*, void (*)(AByteArray&), std::string> rows[] = {
        {"data", [](AByteArray& a) { a.data()[0] = 'X'; }, "Xbc"},
        {"[]", [](AByteArray& a) { a[2] = 'X'; }, "abX"},
        {"append", [](AByteArray& a) { a.append('X'); }, "abcX"},
        {"resize up", [](AByteArray& a) { a.resize(5, 'X'); }, "abcXX"},
        {"replace", [](AByteArray& a) { a.replace('b', 'X'); }, "aXc"},
        {"copy_from", [](AByteArray& a) { a.copy_from("XYZ", 3, 1); }, "aXY"},
        {"clear", [](AByteArray& a) { a.clear(); }, ""},
    };
    for (const auto& [what, change, expected] : rows) {
        AByteArray original = bytes("abc");
        AByteArray copy = original;
        EXPECT_EQ(copy.const_data(), original.const_data());
        change(copy);
        EXPECT_EQ(text(copy), expected) << what;
        EXPECT_EQ(copy.const_data()[copy.size()], 0) << what;
        EXPECT_EQ(text(original), "abc") << what;
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
    const std::pair<unsigned, unsigned> rows[] = {{1, 31}, {31, 31}, {32, 63}, {4095, 4095}, {4096, 8191}};
    for (const auto& [n, room] : rows) {
        AByteArray array;
        array.resize(n, 'x');
        EXPECT_EQ(array.reserved_size(), room) << n;
        EXPECT_EQ(array.const_data()[n], 0);
        const bool large = room >= 4095;
        EXPECT_TRUE(!large || reinterpret_cast<std::uintptr_t>(array.const_data()) % 4096 == 0);
    }
}

TEST(AByteArray, PartsAndSearchBeyondTheEnds)
{
    const AByteArray array = bytes("abcabc");
    EXPECT_EQ(text(array.left(9)), "abcabc");
    EXPECT_EQ(text(array.mid(5, ~0u)), "c");
    EXPECT_EQ(text(array.right(9)), "abcabc");
    EXPECT_EQ(array.find('b', ~0u), -1);
    EXPECT_EQ(array.rfind('b', 3), 1);
    EXPECT_EQ(AByteArray().rfind('x'), -1);
    EXPECT_FALSE(array.has_prefix(bytes("abcabca")));
    char buf[4] = "...";
    EXPECT_EQ(array.copy_to(buf, 3, 4), 2u);
    EXPECT_STREQ(buf, "bc.");
    AByteArray target = array;
    EXPECT_EQ(target.copy_from("XYZ", 3, 6), 0u);
    EXPECT_EQ(target, array);
}

TEST(AByteArray, OrderIsByUnsignedBytesThenLength)
{
    const AByteArray ascending[] = {AByteArray(), bytes("a"), bytes("ab"), bytes("b"), bytes("\xFF")};
    for (int i = 0; i < 5; ++i)
        for (int k = 0; k < 5; ++k)
            EXPECT_EQ(ascending[i].cmp(ascending[k]), i < k ? -1 : i > k);
}

TEST(AByteArray, Base64)
{
    const std::pair<std::string, std::string> rows[] = {
        {std::string("\xFB\xFF\xFE\x00", 4), "+//+AA"}, // no padding
        // The 20th byte ends the line within a group.
        {"01234567890123456789", "MDEyMzQ1Njc4OTAxMjM0NTY3OD\nk"},
        {"012345678901234567890", "MDEyMzQ1Njc4OTAxMjM0NTY3OD\nkw"},
    };
    for (const auto& [decoded, encoded] : rows) {
        EXPECT_EQ(AByteArray::fromBase64(AString(encoded)), bytes(decoded)) << encoded;
        EXPECT_EQ(bytes(decoded).toBase64().to_string(), encoded);
    }
    EXPECT_EQ(text(AByteArray::fromBase64(AString::l1(" T-W\nF*u=="))), "Man");
    EXPECT_EQ(text(AByteArray::fromBase64(AString::l1("T"))), "");
}

TEST(AByteArray, Hex)
{
    const AByteArray array = bytes("\x01\xAB\xFF");
    const std::pair<unsigned, const char*> rows[] = {
        {0, "\n01\nAB\nFF"}, {1, "\n01\nAB\nFF"}, {2, "01\nAB\nFF"}, {3, "01\nAB\nFF"},
        {4, "01AB\nFF"},     {5, "01AB\nFF"},     {6, "01ABFF"},     {~0u, "01ABFF"},
    };
    for (const auto& [width, expected] : rows)
        EXPECT_EQ(array.toHex(width).to_string(), expected) << width;
    EXPECT_EQ(AByteArray::fromHexAscii(bytes("01 aB\nf:F")), array);
    EXPECT_EQ(AByteArray::fromHexAscii(bytes("1G")), AByteArray(0x20)); // G is 16
    EXPECT_EQ(AByteArray::fromHexAscii(bytes("Z0")), AByteArray(0x30)); // 35 * 16, one byte of it
    EXPECT_EQ(AByteArray::fromHexAscii(bytes("ABC")), AByteArray(0xAB));
}

} // namespace
