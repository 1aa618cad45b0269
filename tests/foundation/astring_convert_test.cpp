// Strings from and into other encodings: where input ends, what fits, and the way through Qt.
#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_builder.h>

#include <QByteArray>
#include <QString>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// One to four bytes a character; "aé€😀" 40 times crosses several segment borders.
const std::string mixed_utf8 = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";

std::string repeated(const std::string& text, int n)
{
    return QByteArray::fromStdString(text).repeated(n).toStdString();
}

TEST(AStringConvert, Utf8EndsAtTheFirstRefusal)
{
    using namespace std::string_literals;
    const std::pair<std::string, std::string> rows[] = {
        {"abc\xFFxyz", "abc"},
        {"abc\0def"s, "abc"},
        {"ab\xE2\x82", "ab"},
        {"ab\xE2\x28\xA1", "ab"},
        {mixed_utf8 + "\xC0\x80x", mixed_utf8},
        {mixed_utf8, mixed_utf8},
    };
    for (const auto& [bytes, kept] : rows) {
        // In front, so that the refusal falls into every place of a block and of a segment.
        for (unsigned before : {0u, 1u, 15u, 16u, 17u, 62u, 63u, 64u, 65u, 130u}) {
            const std::string all = std::string(before, '.') + bytes;
            const AString text = AString::from_string(all);
            EXPECT_EQ(text.to_string(), std::string(before, '.') + kept);
            AString whole = AString::l1("untouched");
            EXPECT_EQ(skuan::string_from_utf8(all.data(), static_cast<unsigned>(all.size()), &whole),
                      bytes == kept);
            EXPECT_EQ(whole, bytes == kept ? text : AString::l1("untouched"));
        }
    }
}

TEST(AStringConvert, Utf8IntoEveryRoom)
{
    const std::string bytes = repeated(mixed_utf8, 14);
    const AString text = AString::from_string("x" + bytes).mid(1);
    for (unsigned room = 0; room <= bytes.size() + 2; ++room) {
        std::string buf(room + 1, '#');
        unsigned written = 99;
        const bool whole = text.to_utf8(buf.data(), room, &written, true, '.');
        ASSERT_EQ(whole, room >= bytes.size());
        ASSERT_LE(written, room);
        ASSERT_GE(written + 3, std::min<unsigned>(room, bytes.size()));
        ASSERT_EQ(buf, bytes.substr(0, written) + std::string(room - written, '.') + "#");
        ASSERT_TRUE(written == bytes.size() || (bytes[written] & 0xC0) != 0x80) << "cut inside a character";

        std::string z(room + 1, '#');
        ASSERT_EQ(text.to_utf8_z(z.data(), room), room > bytes.size());
        ASSERT_TRUE(room == 0 || bytes.compare(0, std::string(z.c_str()).size(), z.c_str()) == 0);
        ASSERT_EQ(z[room], '#');
    }
}

TEST(AStringConvert, SendUtf8CutsBetweenCharacters)
{
    for (unsigned before = 0; before < 10; ++before) { // so that every byte of a character falls on the limit
        const std::string bytes = std::string(before, 'x') + repeated(mixed_utf8, 40);
        std::string joined;
        auto sink = [&](const char* chunk, unsigned n) {
            EXPECT_TRUE(n <= 128 && (chunk[0] & 0xC0) != 0x80) << n;
            joined.append(chunk, n);
        };
        AString::from_string(bytes).send_utf8(AFunction2<const char*, unsigned>::ref(sink));
        EXPECT_EQ(joined, bytes);
    }
}

TEST(AStringConvert, Latin1)
{
    std::string all;
    for (unsigned c = 0; c < 256; ++c)
        all += static_cast<char>(c);
    const AString text = AString::from_latin1(all.data(), 256); // its 0 is a character
    std::string back(256, '#');
    EXPECT_TRUE(text.to_latin1(back.data(), 256));
    EXPECT_EQ(back, all);

    const AString high = AString::from_string(mixed_utf8 + "z");
    char buf[9] = "########";
    unsigned written = 0;
    EXPECT_TRUE(high.to_latin1(buf, 7, '?', &written, true, '.'));
    EXPECT_STREQ(buf, "a\xE9??z..#");
    EXPECT_EQ(written, 5u);
    EXPECT_FALSE(high.to_latin1_z(buf, 5, '?'));
    EXPECT_STREQ(buf, "a\xE9??");
    EXPECT_EQ(AString::from_latin1z("abc", 2).to_string(), "ab");
    EXPECT_EQ(AString::from_utf8z("a\xC3\xA9", 2).to_string(), "a");
}

TEST(AStringConvert, Utf16AndUtf32AndWide)
{
    const std::vector<unsigned short> units = {'a', 0xE9, 0x20AC, 0xD83D, 0xDE00, 'z'};
    const AString text = AString::from_string(mixed_utf8 + "z");
    EXPECT_EQ(AString::from_utf16(units.data(), 6), text);
    EXPECT_EQ(AString::from_utf16(units.data(), 4), text.left(3)); // cut inside a pair
    const unsigned points[] = {'a', 0x110000, 'z'};
    EXPECT_EQ(AString::from_utf32(points, 3), text.left(1));

    unsigned short small[5] = {1, 1, 1, 1, 1};
    unsigned written = 0;
    EXPECT_FALSE(text.to_utf16(small, 4, &written, true, '.')); // the pair doesn't fit
    EXPECT_EQ(written, 3u);
    EXPECT_EQ(small[3], '.');
    EXPECT_EQ(small[4], 1);
    unsigned short z[7];
    EXPECT_TRUE(text.to_utf16_z(z, 7));
    EXPECT_EQ(std::vector<unsigned short>(z, z + 6), units);
    unsigned wide[6];
    EXPECT_TRUE(text.to_utf32_z(wide, 6));
    EXPECT_EQ(wide[3], 0x1F600u);
    EXPECT_EQ(wide[5], 0u);

    const std::wstring wtext = L"a\u00E9\u20AC\U0001F600z";
    EXPECT_EQ(AString(wtext), text);
    EXPECT_EQ(text.to_wstring(), wtext);

    EXPECT_TRUE(AString::l1(nullptr).empty() && AString::from_utf8(nullptr, 3).empty());
    EXPECT_TRUE(AString::from_utf32(nullptr, 3).empty());
    EXPECT_TRUE(AString(static_cast<const wchar_t*>(nullptr)).empty());
}

TEST(AStringConvert, CharactersWithoutAFormEndTheText)
{
    const QString qt = QString::fromStdString(repeated(mixed_utf8, 40));
    EXPECT_EQ(QString(AString(qt)), qt);
    const QString lone = QStringLiteral("ab") + QChar(0xD800) + QStringLiteral("c");
    EXPECT_EQ(AString(lone).to_string(), "ab"); // half a pair ends the text
    const AString without_form = AString(AChar('a')) + AString(AChar(0x110000)) + AString(AChar('z'));
    EXPECT_EQ(without_form.length(), 3u);
    EXPECT_EQ(without_form.to_string(), "a");
    EXPECT_EQ(QString(AString::from_string("ab\xED\xA0\x80")), QStringLiteral("ab"));
}

} // namespace
