// Strings as values: what the comparison with a model (astring_model_test) can't see or wouldn't ask.
#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_builder.h>
#include <skuan/foundation/astring_list.h>

#include <support/on_threads.h>

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace {

constexpr auto l1 = AString::l1;
constexpr auto loose = AString::CaseInsensitive;

/// `n` characters that differ from their neighbours, over segment borders too.
AString numbered(unsigned n)
{
    skuan::AStringBuilder builder;
    for (unsigned i = 0; i < n; ++i)
        builder.append(AChar('a' + i % 26));
    return builder.finish();
}

std::string in_brackets(const AStringList& list)
{
    std::string text;
    for (const AString& item : list)
        text += "[" + item.to_string() + "]";
    return text;
}

TEST(AString, PiecesBeyondTheText)
{
    const std::pair<AString, const char*> rows[] = {
        {l1("abcdef").mid(4, ~0u - 1), "ef"},  {l1("abcdef").mid(1, 4).mid(1, 9), "cde"},
        {l1("abc").remove_front(3), ""},       {l1("abc").remove_end(4), ""},
        {l1("  a ").despace_front(), "a "},    {l1("  a ").despace_end(), "  a"},
        {l1("\va").despace(), "\va"}, // a vertical tab is no space
        {l1("123a4").leading_digits(), "123"}, {l1("abc").replace(1, ~0u, l1("X")), "aX"},
        {l1("ab").pad(-4, '.'), "ab.."},       {AString::rep(l1("ab"), 3), "ababab"},
    };
    for (const auto& [piece, expected] : rows) {
        EXPECT_EQ(piece.to_string(), expected);
        EXPECT_EQ(piece.length(), std::string(expected).size()) << expected;
    }
}

TEST(AString, BecomesItselfOrAPartOfItself)
{
    AString text = numbered(70);
    text = *&text;
    EXPECT_EQ(text, numbered(70));
    AString moved = std::move(text);
    EXPECT_TRUE(text.empty()); // NOLINT: a moved-from string is the empty one
    moved = moved.mid(10, 5);
    moved += moved;
    EXPECT_EQ(moved, l1("klmnoklmno"));
}

TEST(AString, SharesItsCharactersUntilADeepCopy)
{
    const AString text = numbered(60);
    EXPECT_EQ(text.mid(10, 20).contiguous(), text.contiguous() + 10);
    EXPECT_EQ((text + AString()).contiguous(), text.contiguous());
    EXPECT_EQ((AString() + text).contiguous(), text.contiguous());
    const std::tuple<unsigned, unsigned, bool> rows[] = {
        {60, 0, true}, {59, 0, false}, {59, 1, true}, {28, 32, true}, {27, 32, false}};
    for (const auto& [length, slack, shares] : rows) {
        const AString copy = text.left(length).deep_copy(slack);
        EXPECT_EQ(copy.contiguous() == text.contiguous(), shares) << length << ' ' << slack;
    }
}

TEST(AString, Comparison)
{
    const std::tuple<const char*, const char*, int, int> rows[] = {
        {"", "a", -1, -1},      {"a", "a", 0, 0},   {"B", "a", -1, 1},        {"abc", "ABC", 1, 0},
        {"ABCD", "abc", -1, 1}, {"_", "a", -1, -1}, {"\xC4", "\xE4", -1, -1}, {"a", "\xE4", -1, -1},
    };
    const std::string segment(64, '0');
    for (const auto& [first, second, exactly, loosely] : rows) {
        for (const char* before : {"", segment.c_str()}) {
            const AString a = l1(before) + l1(first);
            const AString b = l1(before) + l1(second);
            EXPECT_EQ(AString::compare(a, b), exactly) << first << " " << second;
            EXPECT_EQ(AString::compare(a, b, loose), loosely) << first << " " << second;
            EXPECT_EQ(AString::compare(b, a, loose), -loosely) << first << " " << second;
            EXPECT_EQ(a.equal_z((before + std::string(second)).c_str()), exactly == 0);
        }
    }
    EXPECT_EQ(AString::compare(l1("ab"), l1("abY"), 3), -1);
    EXPECT_EQ(AString::compare(l1("xxab"), 9, l1("ab"), 0, AString::CaseSensitive), -1);
    EXPECT_EQ(AString::compare(l1("xxab"), 2, l1("yABz"), 1, 2, loose), 0);
    EXPECT_TRUE(AString().equal_z(nullptr));
    EXPECT_FALSE(l1("a").equal_z(nullptr));
    EXPECT_FALSE(AString(AChar(0x161)).equal_z("a")); // 0x161 is not 0x61
    bool had = false;
    EXPECT_EQ(l1("clip.XML").remove_suffix(l1(".xml"), &had, loose), l1("clip"));
    EXPECT_TRUE(had);
    EXPECT_EQ(l1("ab").remove_suffix(l1("aab"), &had), l1("ab"));
    EXPECT_FALSE(had);
    EXPECT_EQ(l1("ab").hash(), l1("ba").hash()); // meant so: the hash adds up its characters
}

TEST(AString, FindsAcrossSegments)
{
    const AString text = numbered(60) + l1("needle") + numbered(60);
    EXPECT_EQ(text.find(l1("needle"), 60), 60);
    EXPECT_EQ(AString().find(AString(), 5), 0);      // meant so, in any string
    EXPECT_EQ(l1("abababac").find(l1("ababac")), 2); // a match that begins inside a failed one
    EXPECT_EQ(text.find(AChar('a'), ~0u), -1);
    EXPECT_EQ(text.rfind(AChar('a'), 65), 52);
}

TEST(AString, Split)
{
    // The pieces with and without empty ones.
    const std::tuple<const char*, const char*, const char*, const char*> rows[] = {
        {"", ",", "", ""},
        {"a,,b", ",", "[a][][b]", "[a][b]"},
        {"a,", ",", "[a][]", "[a][]"}, // the last piece stays, empty or not
        {",a", ",", "[][a]", "[a]"},
        {",", ",", "[][]", "[]"},
        {"a:::b", "::", "[a][:b]", "[a][:b]"},
        {"abc", "", "[][bc]", "[bc]"}, // an empty separator splits once, and takes a character
    };
    for (const auto& [text, separator, keeping, dropping] : rows) {
        EXPECT_EQ(in_brackets(l1(text).split(l1(separator), true)), keeping) << text;
        EXPECT_EQ(in_brackets(l1(text).split(l1(separator), false)), dropping) << text;
    }
    AStringList list = l1("a,b,ab").split(l1(","), true);
    EXPECT_EQ(in_brackets(list.filter(l1("a"))), "[a][ab]");
    EXPECT_EQ(in_brackets(list.pop_back(2)), "[b][ab]");
    EXPECT_EQ(in_brackets(list.pop_front(9)), "[a]");
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
    EXPECT_EQ(in_brackets(l1("a12b3").split(digits, true, true)), "[a][12][b][3][]");
    EXPECT_EQ(in_brackets(l1("12b").split(digits, true, false)), "[12][b]");
    EXPECT_EQ(in_brackets(l1("ab").split(Finder(), true, true)), "[ab]");
    // A finder that sets one of its results only: it starts from -1 and 1.
    const Finder semicolon([](const AString& text, unsigned from, int* position, unsigned*) {
        if (text.find(AChar(';'), from) >= 0)
            *position = text.find(AChar(';'), from);
    });
    EXPECT_EQ(in_brackets(l1("a;b").split(semicolon, false, true)), "[a][b]");

    // Finders that lie end the splitting instead of looping or reading beyond the text.
    const Finder here([](const AString&, unsigned from, int* position, unsigned* length) {
        *position = static_cast<int>(from);
        *length = 0;
    });
    EXPECT_EQ(in_brackets(l1("abc").split(here, false, false)), "[]");
    const Finder behind([](const AString&, unsigned, int* position, unsigned*) { *position = 0; });
    EXPECT_EQ(in_brackets(l1("abc").split(behind, false, true)), "[][bc]");
    const Finder beyond([](const AString&, unsigned, int* position, unsigned* length) {
        *position = 2;
        *length = ~0u;
    });
    EXPECT_EQ(in_brackets(l1("abc").split(beyond, true, true)), "[ab][c][]");
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
    EXPECT_EQ(*--(--(--at)), AChar('l'));
    EXPECT_FALSE((--(--at)).valid());
    AString::iterator nowhere;
    EXPECT_FALSE((--nowhere).valid());
}

TEST(AString, OneStringOnManyThreads)
{
    static const AString permanent = skuan::permanent_string("channel_status", 14);
    const AString shared = numbered(100);
    const AString expected = numbered(100);
    support::on_threads(4, [&](unsigned) {
        for (unsigned round = 0; round < 500; ++round) {
            const AString piece = shared.mid(round % 90, 10);
            ASSERT_EQ((piece + piece).left(10), expected.mid(round % 90, 10));
            ASSERT_EQ(shared.hash(), expected.hash());
            ASSERT_TRUE(permanent.mid(8).equal_z("status"));
        }
    });
}

} // namespace
