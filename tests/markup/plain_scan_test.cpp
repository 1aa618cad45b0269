// The inner loops as a machine without SSE2 compiles them: no other build here would see them break.
#include <skuan/foundation/achar.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#undef __SSE2__
#include <skuan/foundation/text_kernels.h>
#include <skuan/markup/byte_scan.h>

namespace {

TEST(PlainScan, FindsMarkup)
{
    const std::string text = "a &amp; b</tag >\xC3\xA9";
    const char* const p = text.data();
    const char* const end = p + text.size();
    const char* const lt = p + text.find('<');
    const char* const gt = p + text.find('>');
    EXPECT_EQ(skuan::find_tag_start(p, end), lt);
    EXPECT_EQ(skuan::find_tag_end(p, end), gt);
    EXPECT_EQ(skuan::find_end_tag(p, end, 't'), lt);
    EXPECT_EQ(skuan::find_end_tag(gt, end, 't'), end);

    const skuan::TextRun run = skuan::scan_text(p, end);
    EXPECT_EQ(run.end, lt);
    EXPECT_TRUE(run.has_ampersand);
    EXPECT_TRUE(run.is_plain);
    EXPECT_FALSE(skuan::scan_text(gt + 1, end).is_plain);
    EXPECT_EQ(skuan::scan_text(gt, end).end, gt);
}

TEST(PlainScan, ConvertsUpToTheFirstCharacterOutOfRange)
{
    const std::string ascii(50, 'x');
    for (unsigned at = 0; at <= ascii.size(); ++at) {
        std::string text = ascii;
        if (at < text.size())
            text[at] = '\xE9';
        const auto n = static_cast<unsigned>(text.size());
        std::vector<AChar> wide(n);
        EXPECT_EQ(skuan::widen_ascii(text.data(), n, wide.data()), at);
        skuan::widen_latin1(text.data(), n, wide.data());
        std::string back(n, '\0');
        EXPECT_EQ(skuan::narrow(wide.data(), n, 128, back.data()), at);
        EXPECT_EQ(back.substr(0, at), text.substr(0, at));
        EXPECT_EQ(skuan::narrow(wide.data(), n, 256, back.data()), n);
        EXPECT_EQ(back, text);
    }
}

} // namespace
