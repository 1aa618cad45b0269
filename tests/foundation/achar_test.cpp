// Characters: classes, digits, and the reading and writing of UTF-8 and UTF-16.
#include <skuan/foundation/achar.h>

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace {

TEST(AChar, Classes)
{
    for (unsigned c = 0; c < 0x200; ++c) {
        const AChar ch(c);
        const bool digit = c >= '0' && c <= '9';
        const bool upper = c >= 'A' && c <= 'Z';
        const bool lower = c >= 'a' && c <= 'z';
        const unsigned value = digit ? c - '0' : upper ? c - 'A' + 10 : lower ? c - 'a' + 10 : 99;
        EXPECT_EQ(ch.is_digit(), digit) << c;
        EXPECT_EQ(ch.is_hexdigit(), digit || upper || lower) << c; // G to Z too
        EXPECT_EQ(ch.to_digit(99), digit ? value : 99) << c;
        EXPECT_EQ(ch.to_hexdigit(99), value) << c;
        EXPECT_EQ(ch.is_space(), c == ' ' || c == '\t' || c == '\n' || c == '\r') << c;
        EXPECT_EQ(ch.to_lower().ord(), upper ? c + 32 : c) << c;
        EXPECT_EQ(ch.to_latin1('?'), c < 256 ? static_cast<char>(c) : '?') << c;
    }
}

TEST(AChar, Utf8Forms)
{
    // Bytes, what they read as, and whether that is written so again.
    const std::tuple<const char*, unsigned, bool> rows[] = {
        {"\x7F", 0x7F, true},
        {"\xC2\x80", 0x80, true},
        {"\xDF\xBF", 0x7FF, true},
        {"\xE0\xA0\x80", 0x800, true},
        {"\xED\xA0\x80", 0xD800, true}, // a surrogate passes
        {"\xEF\xBF\xBF", 0xFFFF, true},
        {"\xF0\x90\x80\x80", 0x10000, true},
        {"\xF4\x8F\xBF\xBF", 0x10FFFF, true},
        {"\xE0\x80\x80", 0, false}, // overlong forms of three and four bytes pass
        {"\xF0\x80\x81\x81", 'A', false},
    };
    for (const auto& [form, code, round_trip] : rows) {
        const std::string bytes = form;
        const unsigned n = static_cast<unsigned>(bytes.size());
        AChar c(7);
        unsigned used = 9;
        ASSERT_TRUE(AChar::consume_utf8((bytes + "xyz").data(), n + 3, &c, &used)) << std::hex << code;
        EXPECT_EQ(c.ord(), code);
        EXPECT_EQ(used, n);
        for (unsigned cut = 0; cut < n; ++cut) {
            EXPECT_FALSE(AChar::consume_utf8(bytes.data(), cut, &c, &used)) << std::hex << code;
            EXPECT_EQ(used, 0u);
            EXPECT_EQ(c.ord(), code); // as it was
        }
        if (!round_trip)
            continue;
        for (unsigned room = 0; room <= n + 1; ++room) {
            char buf[] = "#######";
            EXPECT_EQ(AChar(code).to_utf8(buf, room, &used), room >= n);
            EXPECT_EQ(used, room >= n ? n : 0);
            EXPECT_EQ(buf, (used == n ? bytes : "") + std::string(7 - used, '#'));
        }
    }
}

TEST(AChar, Utf8Refusals)
{
    std::vector<std::string> refused = {std::string(1, '\0'), "\xC0\x80",     "\xC1\xBF",
                                        "\xC2\x41",           "\xE2\x82\x41", "\xF0\x9F\x98\x41"};
    for (unsigned lead = 0x80; lead <= 0xFF; lead = lead == 0xBF ? 0xF5 : lead + 1)
        refused.push_back(std::string(1, static_cast<char>(lead)) + "\x80\x80\x80");
    for (const std::string& bytes : refused) {
        unsigned used = 9;
        AChar c;
        EXPECT_FALSE(AChar::consume_utf8(bytes.data(), static_cast<unsigned>(bytes.size()), &c, &used));
        EXPECT_EQ(used, 0u);
    }
}

TEST(AChar, Utf16)
{
    // 7: refused.
    const std::pair<std::vector<unsigned short>, unsigned> rows[] = {
        {{0}, 7},      {{0xFFFF}, 0xFFFF}, {{0xD800, 0xDC00}, 0x10000}, {{0xDBFF, 0xDFFF}, 0x10FFFF},
        {{0xD800}, 7}, {{0xD800, 'A'}, 7}, {{0xD800, 0xD800}, 7},       {{0xDC00, 0xD800}, 7},
    };
    for (const auto& [units, code] : rows) {
        AChar c(7);
        unsigned used = 9;
        const unsigned n = static_cast<unsigned>(units.size());
        EXPECT_EQ(AChar::consume_utf16(units.data(), n, &c, &used), code != 7);
        EXPECT_EQ(used, code != 7 ? n : 0);
        EXPECT_EQ(c.ord(), code);
        if (code == 7)
            continue;
        unsigned short buf[2] = {1, 1};
        EXPECT_FALSE(AChar(code).to_utf16(buf, n - 1, &used));
        EXPECT_TRUE(AChar(code).to_utf16(buf, 2, &used));
        EXPECT_EQ(std::vector<unsigned short>(buf, buf + used), units);
    }
    unsigned short buf[2];
    for (unsigned c : {0xD800u, 0xDBFFu, 0xDC00u, 0xDFFFu, 0x110000u, ~0u})
        EXPECT_FALSE(AChar(c).to_utf16(buf, 2, nullptr)) << c;
}

} // namespace
