// Templates: what a place is, the order in which places are filled, and which overload a value takes.
#include <skuan/foundation/astring_format.h>

#include <QString>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace {

TEST(AStringFormat, fills_the_lowest_place_once_with_each_text)
{
    const std::tuple<const char*, std::vector<const char*>, const char*> rows[] = {
        {"%1 and %1", {"a"}, "a and %1"},
        {"%1 and %1", {"a", "b", "dropped"}, "a and b"},
        {"%9%2%10", {"a", "b", "c"}, "bac"},
        {"%1-%2", {"%2%1", "b"}, "%2%1-b"}, // what is filled in has no places
        {"100% %123 %x %", {"a"}, "100% %123 %x %"},
        {"%%1%1234%2", {"a", "b"}, "%a%1234b"},
        {"%00|%0", {"a", "b"}, "a|b"},
        {"", {"a"}, ""},
    };
    for (const auto& [given, texts, result] : rows) {
        AStringFormat format = AString(given);
        for (const char* text : texts)
            format.arg(text);
        EXPECT_EQ(std::string(format), result) << given;
    }
}

TEST(AStringFormat, takes_each_type_and_turns_into_each_text)
{
    const AString place = AString("%1");
    EXPECT_EQ(place.arg(-5, 4, '0'), AString("-005"));
    EXPECT_EQ(place.arg(5u, -3), AString("5  "));
    EXPECT_EQ(place.arg(-5L), AString("-5"));
    EXPECT_EQ(place.arg(~0ull), AString("18446744073709551615"));
    EXPECT_EQ(place.arg("\xC3\xA9"), AString(AChar(0xE9)));
    EXPECT_EQ(place.arg(L"wide"), AString("wide"));
    EXPECT_EQ(place.arg(QStringLiteral("qt")), AString("qt"));
    EXPECT_EQ(place.arg(reinterpret_cast<const void*>(0xAB)), AString("0x000000AB"));

    const AStringFormat format = AString("<%2|%1>").arg(place.arg(7));
    const AStringFormat other = AStringFormat(format).arg("x");
    const AStringList pieces = {AString("<"), AString("%2"), AString("|"), AString("7"), AString(">")};
    EXPECT_TRUE(static_cast<AStringList>(format) == pieces); // a copy that was filled leaves it alone
    EXPECT_EQ(QString(other), QStringLiteral("<x|7>"));
    EXPECT_EQ(std::wstring(other), L"<x|7>");
    EXPECT_EQ(AString(other), other);
}

} // namespace
