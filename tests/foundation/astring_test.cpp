// Strings as values: sharing, pieces, comparison, searching, splitting.
#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_builder.h>
#include <skuan/foundation/astring_list.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

AString l1(const char* text)
{
    return AString::l1(text);
}

/// `n` characters that differ from their neighbours, over segment borders too.
AString numbered(unsigned n)
{
    skuan::AStringBuilder builder;
    for (unsigned i = 0; i < n; ++i)
        builder.append(AChar('a' + i % 26));
    return builder.finish();
}

std::string text_of(const AString& text)
{
    return text.to_string();
}

std::vector<std::string> texts_of(const AStringList& list)
{
    std::vector<std::string> texts;
    for (const AString& item : list)
        texts.push_back(text_of(item));
    return texts;
}

using Texts = std::vector<std::string>;

TEST(AString, LengthsAroundSegmentBorders)
{
    for (unsigned n : {0u, 1u, 63u, 64u, 65u, 127u, 128u, 129u, 200u}) {
        const AString text = numbered(n);
        ASSERT_EQ(text.length(), n);
        EXPECT_EQ(text.empty(), n == 0);
        unsigned i = 0;
        for (AChar c : text) {
            EXPECT_EQ(c, AChar('a' + i % 26));
            EXPECT_EQ(text.getchar(i), c);
            ++i;
        }
        EXPECT_EQ(i, n);
        EXPECT_EQ(text.getchar(n, AChar('!')), AChar('!'));
        EXPECT_EQ(text.lastchar(AChar('!')), n ? AChar('a' + (n - 1) % 26) : AChar('!'));
        EXPECT_EQ(text.contiguous() != nullptr, n >= 1 && n <= 64);

        std::string backwards;
        for (auto at = text.end(); n != 0 && at != text.begin();)
            backwards += (--at)->to_latin1('?');
        const std::string forwards = text_of(text);
        EXPECT_EQ(backwards, std::string(forwards.rbegin(), forwards.rend()));
    }
}

TEST(AString, Pieces)
{
    const struct
    {
        const char* what;
        AString piece;
        const char* expected;
    } rows[] = {
        {"left", l1("abcdef").left(2), "ab"},
        {"left too long", l1("abc").left(9), "abc"},
        {"left 0", l1("abc").left(0), ""},
        {"right", l1("abcdef").right(2), "ef"},
        {"right too long", l1("abc").right(9), "abc"},
        {"right 0", l1("abc").right(0), ""},
        {"front", l1("abc").front(1), "a"},
        {"end", l1("abc").end(1), "c"},
        {"mid", l1("abcdef").mid(2, 3), "cde"},
        {"mid to the end", l1("abcdef").mid(4), "ef"},
        {"mid overrunning", l1("abcdef").mid(4, ~0u - 1), "ef"},
        {"mid beyond", l1("abc").mid(3, 1), ""},
        {"mid of mid", l1("abcdef").mid(1, 4).mid(1, 9), "cde"},
        {"constructor", AString(l1("abcdef"), 1, 2), "bc"},
        {"remove_left", l1("abc").remove_left(1), "bc"},
        {"remove_front all", l1("abc").remove_front(3), ""},
        {"remove_right", l1("abc").remove_right(1), "ab"},
        {"remove_end more", l1("abc").remove_end(4), ""},
        {"despace", l1(" \t\n\ra b \r\n").despace(), "a b"},
        {"despace_front", l1("  a ").despace_front(), "a "},
        {"despace_end", l1("  a ").despace_end(), "  a"},
        {"despace nothing left", l1(" \n ").despace(), ""},
        {"vertical tab is no space", l1("\va").despace(), "\va"},
        {"leading_digits", l1("123a4").leading_digits(), "123"},
        {"replace", l1("abcdef").replace(1, 2, l1("XYZ")), "aXYZdef"},
        {"replace beyond", l1("abc").replace(9, 2, l1("X")), "abcX"},
        {"replace overrunning", l1("abc").replace(1, ~0u, l1("X")), "aX"},
        {"pad front", l1("ab").pad(4, '.'), "..ab"},
        {"pad behind", l1("ab").pad(-4, '.'), "ab.."},
        {"pad enough", l1("abcd").pad(-3, '.'), "abcd"},
        {"rep", AString::rep(l1("ab"), 3), "ababab"},
        {"rep 0", AString::rep(l1("ab"), 0), ""},
        {"cat", l1("ab") + l1("cd"), "abcd"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(text_of(row.piece), row.expected) << row.what;
        EXPECT_EQ(row.piece.length(), std::string(row.expected).size()) << row.what;
    }
    EXPECT_TRUE(AString().all_space());
    EXPECT_TRUE(l1(" \t").all_space());
    EXPECT_FALSE(l1(" x").all_space());
}

TEST(AString, CopiesAndMovesKeepTheirText)
{
    AString text = numbered(70);
    const AString copy = text;
    AString& alias = text;
    text = alias;
    EXPECT_EQ(text, copy);
    AString moved = std::move(text);
    EXPECT_EQ(moved, copy);
    EXPECT_TRUE(text.empty()); // NOLINT: a moved-from string is the empty one
    text = moved.mid(10, 5);
    moved = AString();
    EXPECT_EQ(text_of(text), "klmno");
    text += text;
    EXPECT_EQ(text_of(text), "klmnoklmno");
}

TEST(AString, SharingIsVisibleInTheCharacters)
{
    const AString text = numbered(60);
    EXPECT_EQ(AString(text).contiguous(), text.contiguous());
    EXPECT_EQ(text.mid(10, 20).contiguous(), text.contiguous() + 10);
    // With one side empty, joining gives the other side itself; otherwise it copies.
    EXPECT_EQ((text + AString()).contiguous(), text.contiguous());
    EXPECT_EQ((AString() + text).contiguous(), text.contiguous());
    EXPECT_NE((text.left(30) + text.mid(30)).contiguous(), text.contiguous());
}

TEST(AString, DeepCopyLetsGoOfALongText)
{
    const AString text = numbered(60);
    const struct
    {
        unsigned length, slack;
        bool shares;
    } rows[] = {{60, 0, true}, {59, 0, false}, {59, 1, true}, {28, 32, true}, {27, 32, false}};
    for (const auto& row : rows) {
        const AString piece = text.left(row.length);
        const AString copy = piece.deep_copy(row.slack);
        EXPECT_EQ(copy, piece);
        EXPECT_EQ(copy.contiguous() == text.contiguous(), row.shares) << row.length << ' ' << row.slack;
    }
    EXPECT_EQ(AString().deep_copy(0), AString());
    EXPECT_EQ(text_of(numbered(300).mid(100, 100).deep_copy(32)), text_of(numbered(300)).substr(100, 100));
}

TEST(AString, HashAddsUpTheCharacters)
{
    EXPECT_EQ(AString().hash(), 1u);
    EXPECT_EQ(l1("ab").hash(), l1("ba").hash());
    EXPECT_NE(l1("ab").hash(), l1("ac").hash());
    // FNV-1a over 61 00 00 00, and over AC 20 00 00.
    auto fnv = [](std::initializer_list<unsigned> bytes) {
        unsigned h = 0x811C9DC5u;
        for (unsigned byte : bytes)
            h = (h ^ byte) * 16777619u;
        return h;
    };
    EXPECT_EQ(l1("a").hash(), fnv({0x61, 0, 0, 0}));
    EXPECT_EQ(AString(AChar(0x20AC)).hash(), fnv({0xAC, 0x20, 0, 0}));
    EXPECT_EQ(AString(AChar(0x10FFFF)).hash(), fnv({0xFF, 0xFF, 0x10, 0}));
    EXPECT_EQ(numbered(130).mid(60, 10).hash(), l1("ijklmnopqr").hash());
}

TEST(AString, Comparison)
{
    constexpr auto exact = AString::CaseSensitive;
    constexpr auto loose = AString::CaseInsensitive;
    const struct
    {
        const char *a, *b;
        int exactly, loosely;
    } rows[] = {
        {"", "", 0, 0},     {"", "a", -1, -1},        {"a", "a", 0, 0},        {"a", "b", -1, -1},
        {"B", "a", -1, 1},  {"abc", "ABC", 1, 0},     {"abc", "abcd", -1, -1}, {"ABCD", "abc", -1, 1},
        {"_", "a", -1, -1}, {"\xC4", "\xE4", -1, -1}, {"a", "\xE4", -1, -1},
    };
    for (const auto& row : rows) {
        for (const char* before : {"", "0123456789012345678901234567890123456789012345678901234567890123"}) {
            const AString a = l1(before) + l1(row.a);
            const AString b = l1(before) + l1(row.b);
            EXPECT_EQ(AString::compare(a, b, exact), row.exactly) << row.a << " " << row.b;
            EXPECT_EQ(AString::compare(b, a, exact), -row.exactly) << row.a << " " << row.b;
            EXPECT_EQ(AString::compare(a, b, loose), row.loosely) << row.a << " " << row.b;
            EXPECT_EQ(a == b, row.exactly == 0);
            EXPECT_EQ(a != b, row.exactly != 0);
            EXPECT_EQ(a < b, row.exactly < 0);
            EXPECT_EQ(AString::equal(a, b, loose), row.loosely == 0);
            EXPECT_EQ(a.equal_z((std::string(before) + row.b).c_str()), row.exactly == 0);
        }
    }
    EXPECT_EQ(AString::compare(l1("abX"), l1("abY"), 2), 0);
    EXPECT_EQ(AString::compare(l1("ab"), l1("abY"), 3), -1);
    EXPECT_EQ(AString::compare(l1("a"), l1("b"), 0), 0);
    EXPECT_EQ(AString::compare(l1("xxab"), 2, l1("ab"), 0, exact), 0);
    EXPECT_EQ(AString::compare(l1("xxab"), 9, l1("ab"), 0, exact), -1);
    EXPECT_EQ(AString::compare(l1("xxab"), 2, l1("yABz"), 1, 2, loose), 0);
    EXPECT_TRUE(AString().equal_z(""));
    EXPECT_TRUE(AString().equal_z(nullptr));
    EXPECT_FALSE(l1("a").equal_z(nullptr));
    EXPECT_FALSE(AString(AChar(0x161)).equal_z("a")); // 0x161 is not 0x61
}

TEST(AString, PrefixAndSuffix)
{
    bool had = false;
    EXPECT_EQ(l1("Channel_A").remove_prefix(l1("Channel_"), &had), l1("A"));
    EXPECT_TRUE(had);
    EXPECT_EQ(l1("Channel_A").remove_prefix(l1("channel_"), &had), l1("Channel_A"));
    EXPECT_FALSE(had);
    EXPECT_EQ(l1("Channel_A").remove_prefix(l1("channel_"), nullptr, AString::CaseInsensitive), l1("A"));
    EXPECT_EQ(l1("clip.XML").remove_suffix(l1(".xml"), &had, AString::CaseInsensitive), l1("clip"));
    EXPECT_TRUE(had);
    EXPECT_EQ(l1("ab").remove_suffix(l1("aab"), &had), l1("ab"));
    EXPECT_FALSE(had);
    EXPECT_EQ(l1("ab").remove_prefix(l1("ab")), AString());
    EXPECT_TRUE(AString().has_prefix(AString()));
    EXPECT_TRUE(l1("a").has_suffix(AString()));
}

TEST(AString, FindAndRfind)
{
    const AString text = numbered(60) + l1("needle") + numbered(60); // over the border at 64
    EXPECT_EQ(text.find(l1("needle")), 60);
    EXPECT_EQ(text.find(l1("needle"), 60), 60);
    EXPECT_EQ(text.find(l1("needle"), 61), -1);
    EXPECT_EQ(text.find(AString(), 5), 0); // meant so
    EXPECT_EQ(AString().find(AString(), 5), 0);
    EXPECT_EQ(AString().find(l1("a")), -1);
    EXPECT_EQ(l1("aab").find(l1("ab")), 1);
    EXPECT_EQ(l1("abababac").find(l1("ababac")), 2);
    EXPECT_EQ(l1("abc").find(l1("abcd")), -1);
    EXPECT_EQ(l1("abc").find(l1("c"), 2), 2);
    EXPECT_EQ(l1("abc").find(l1("c"), 3), -1);
    EXPECT_EQ(text.find(AChar('a')), 0);
    EXPECT_EQ(text.find(AChar('a'), 1), 26);
    EXPECT_EQ(text.find(AChar('!')), -1);
    EXPECT_EQ(text.find(AChar('a'), ~0u), -1);
    EXPECT_EQ(text.rfind(AChar('a')), 66 + 52);
    EXPECT_EQ(text.rfind(AChar('a'), 66), 66);
    EXPECT_EQ(text.rfind(AChar('a'), 65), 52);
    EXPECT_EQ(text.rfind(AChar('!')), -1);
    EXPECT_EQ(l1("b").rfind(AChar('a'), 0), -1);
}

TEST(AString, Split)
{
    const struct
    {
        const char *text, *separator;
        Texts keeping, dropping; // with and without empty pieces
    } rows[] = {
        {"", ",", {}, {}},
        {"a", ",", {"a"}, {"a"}},
        {"a,,b", ",", {"a", "", "b"}, {"a", "b"}},
        {"a,", ",", {"a", ""}, {"a", ""}},
        {",a", ",", {"", "a"}, {"a"}},
        {",", ",", {"", ""}, {""}},
        {"a::b::c", "::", {"a", "b", "c"}, {"a", "b", "c"}},
        {"a:::b", "::", {"a", ":b"}, {"a", ":b"}},
        {"abc", "", {"", "bc"}, {"bc"}}, // an empty separator splits once, and takes a character
    };
    for (const auto& row : rows) {
        EXPECT_EQ(texts_of(l1(row.text).split(l1(row.separator), true)), row.keeping) << row.text;
        EXPECT_EQ(texts_of(l1(row.text).split(l1(row.separator), false)), row.dropping) << row.text;
    }
}

TEST(AString, SplitByFinder)
{
    using Finder = AFunction4<const AString&, unsigned, int*, unsigned*>;
    const Finder digits([](const AString& text, unsigned from, int* position, unsigned* length) {
        for (unsigned i = from; i < text.length(); ++i)
            if (text.getchar(i).is_digit()) {
                *position = static_cast<int>(i);
                *length = text.mid(i).leading_digits().length();
                return;
            }
    });
    EXPECT_EQ(texts_of(l1("a12b3").split(digits, true, true)), (Texts{"a", "12", "b", "3", ""}));
    EXPECT_EQ(texts_of(l1("12b").split(digits, true, false)), (Texts{"12", "b"}));
    EXPECT_EQ(texts_of(l1("a12b").split(digits, false, true)), (Texts{"a", "b"}));
    EXPECT_EQ(texts_of(l1("ab").split(Finder(), true, true)), Texts{"ab"});
    EXPECT_EQ(texts_of(AString().split(Finder(), true, true)), Texts{});

    const Finder preset([](const AString& text, unsigned from, int* position, unsigned* length) {
        EXPECT_EQ(*position, -1);
        EXPECT_EQ(*length, 1u);
        *position = text.find(AChar(';'), from);
    });
    EXPECT_EQ(texts_of(l1("a;b").split(preset, false, true)), (Texts{"a", "b"}));

    // Finders that lie end the splitting instead of looping or reading beyond the text.
    const Finder here([](const AString&, unsigned from, int* position, unsigned* length) {
        *position = static_cast<int>(from);
        *length = 0;
    });
    EXPECT_EQ(texts_of(l1("abc").split(here, false, false)), Texts{""});
    const Finder behind([](const AString&, unsigned, int* position, unsigned*) { *position = 0; });
    EXPECT_EQ(texts_of(l1("abc").split(behind, false, true)), (Texts{"", "bc"}));
    const Finder beyond([](const AString&, unsigned, int* position, unsigned* length) {
        *position = 2;
        *length = ~0u;
    });
    EXPECT_EQ(texts_of(l1("abc").split(beyond, true, true)), (Texts{"ab", "c", ""}));
}

TEST(AString, SendsRunsOfSegments)
{
    const AString text = numbered(200).mid(60, 100);
    std::vector<unsigned> sizes;
    AString joined;
    auto sink = [&](const AChar* run, unsigned n) {
        sizes.push_back(n);
        skuan::AStringBuilder builder;
        builder.append(run, n);
        joined += builder.finish();
    };
    text.send_achars(AFunction2<const AChar*, unsigned>::ref(sink));
    EXPECT_EQ(sizes, (std::vector<unsigned>{4, 64, 32}));
    EXPECT_EQ(joined, text);
}

TEST(AString, IteratorKeepsItsString)
{
    AString text = numbered(66).mid(62);
    auto at = text.begin();
    text = AString();
    std::string seen;
    for (; at.valid(); ++at)
        seen += at->to_latin1('?');
    EXPECT_EQ(seen, "klmn");
    EXPECT_EQ(*at, AChar(0));
    ++at;
    EXPECT_FALSE(at.valid());
    EXPECT_EQ(*--at, AChar('n'));
    EXPECT_EQ(*--(--at), AChar('l'));
    EXPECT_FALSE((--(--at)).valid());
    AString::iterator nowhere;
    EXPECT_FALSE((--nowhere).valid());
}

TEST(AString, PermanentStringsAreOrdinaryToTheirUsers)
{
    static const AString name = skuan::permanent_string("channel_status", 14);
    EXPECT_TRUE(name.equal_z("channel_status"));
    const AString piece = name.mid(8);
    EXPECT_EQ(text_of(piece), "status");
    EXPECT_EQ(piece.contiguous(), name.contiguous() + 8);
}

TEST(AString, OneStringOnManyThreads)
{
    const AString shared = numbered(100);
    const AString expected = numbered(100);
    std::atomic<unsigned> wrong{0};
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (unsigned round = 0; round < 500; ++round) {
                AString mine = shared;
                AString piece = mine.mid(round % 90, 10);
                mine = piece + piece;
                wrong += shared.hash() != expected.hash() || mine.length() != 20 || !(shared == expected);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0u);
}

} // namespace
