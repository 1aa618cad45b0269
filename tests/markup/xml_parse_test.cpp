#include <skuan/markup/xml_parse.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string compact(const XMLTree& tree)
{
    return tree.is_null() ? "(null)" : tree.flatten(XMLTree::flatten_compact, true).to_string();
}

/// What the characters' parser and the stream's make of a text; they have to agree.
std::string parsed(const std::string& text)
{
    bool error = false;
    const std::string result = compact(XMLParse(AString::from_string(text), &error));
    EXPECT_EQ(error, result == "(null)") << text;

    XMLParseEngine engine(4096);
    engine.config_tag("root");
    const std::string message = "<root>" + text + "</root>";
    EXPECT_EQ(engine.input_bytes(static_cast<unsigned>(message.size()), message.data()), message.size());
    const XMLTree tree = engine.get_xml();
    if (!error) {
        EXPECT_EQ(compact(tree), "<root>" + result + "</root>") << text;
    }
    EXPECT_EQ(engine.parse_error(), tree.is_null()) << text;
    return result;
}

class Stream
{
public:
    explicit Stream(unsigned bufsize = 1024) : engine(bufsize)
    {
        engine.config_tag("reply");
        engine.config_tag("report");
    }

    /// Feeds the bytes in the given steps and gives the trees that came, and "!" for an error.
    std::vector<std::string> feed(const std::string& bytes, std::size_t step)
    {
        std::vector<std::string> out;
        for (std::size_t at = 0; at < bytes.size(); at += step) {
            const auto n = static_cast<unsigned>(std::min(step, bytes.size() - at));
            const bool full = engine.input_bytes(n, bytes.data() + at) != n;
            for (XMLTree tree = engine.get_xml(); !tree.is_null(); tree = engine.get_xml())
                out.push_back(compact(tree));
            if (full || engine.parse_error()) {
                out.emplace_back(full ? "full" : "!");
                break;
            }
        }
        return out;
    }

    XMLParseEngine engine;
};

TEST(XMLParse, AcceptsTheGrammar)
{
    const std::pair<const char*, const char*> rows[] = {
        {"<a/>", "<a />"},
        {" \t\r\n<a> </a>\n", "<a> </a>"},
        {"<x> 1 </x>", "<x> 1 </x>"},
        {"< a >1</ a >", "<a>1</a>"},
        {"<a ><b / ></ a>", "<a><b /></a>"},
        {"<reply><x>1</x>  </reply>", "<reply><x>1</x></reply>"},
        {"<r>\r\n<a>1</a>\r\n<b/>\r\n</r>", "<r><a>1</a><b /></r>"},
        {"<a>a &gt; b</a>", "<a>a &gt; b</a>"},
        {"<a>&amp;lt;</a>", "<a>&amp;lt;</a>"},
        {"<a>&apos;&quot;&lt;&gt;&amp;</a>", "<a>&apos;&quot;&lt;&gt;&amp;</a>"},
        {"<a>&#65;&nbsp;& &lt</a>", "<a>&amp;#65;&amp;nbsp;&amp; &amp;lt</a>"},
        {"<A1_b>\xC3\xA9&amp;\xF0\x9F\x8E\xAC</A1_b>", "<A1_b>\xC3\xA9&amp;\xF0\x9F\x8E\xAC</A1_b>"},
    };
    for (const auto& [text, tree] : rows)
        EXPECT_EQ(parsed(text), tree);
}

TEST(XMLParse, RefusesEverythingElse)
{
    const char* const tags[] = {"<a>",    "<a></b>", "<></>", "<//>",        "</a/>", "<a-b/>",
                                "<n:a/>", "<1a/>",   "<_a/>", "<\xC3\xA9/>", "<a/b>", "<a><b></b"};
    for (const char* row : tags)
        EXPECT_EQ(parsed(row), "(null)") << row;
    const char* const contents[] = {
        "<a><b></a></b>",       "<a><b>1</b>text</a>", "<a>text<b>1</b></a>",         "<a>a > b</a>",
        "<a>a < b</a>",         "<a k=\"1\"></a>",     "<?xml version=\"1.0\"?><a/>", "<a><!-- c --></a>",
        "<a><![CDATA[x]]></a>", "<!DOCTYPE a><a/>"};
    for (const char* row : contents)
        EXPECT_EQ(parsed(row), "(null)") << row;
    // Not inside a root, where some of these would be fine.
    for (const char* row : {"", "  \n ", "text", "</a>", "<a/><b/>", "<a/>text", "text<a/>", "<a></a></a>"}) {
        bool error = false;
        EXPECT_TRUE(XMLParse(AString::from_string(row), &error).is_null()) << row;
        EXPECT_TRUE(error) << row;
    }
}

TEST(XMLParse, BadUtf8InAMessageIsAnError)
{
    using namespace std::string_literals;
    for (const std::string& bad : {"\xFF"s, "\xE2\x82"s, "\xC0\x80"s, "\x80"s, "ok\xC3&amp;\xA9"s, "\0"s})
        EXPECT_EQ(Stream().feed("<reply><a>" + bad + "</a></reply>", 1000), std::vector<std::string>{"!"})
            << bad;
}

TEST(XMLParse, DeepNestingIsOnlyMemory)
{
    std::string begins, ends;
    for (unsigned i = 0; i < 100000; ++i) {
        begins += "<a>";
        ends += "</a>";
    }
    bool error = true;
    EXPECT_FALSE(XMLParse(AString::from_string(begins + ends), &error).is_null());
    EXPECT_FALSE(error);
    EXPECT_TRUE(XMLParse(AString::from_string(begins), &error).is_null());
}

TEST(XMLParseEngine, FindsTheFirstMessageAndDropsWhatStandsBefore)
{
    const std::pair<const char*, std::vector<std::string>> rows[] = {
        {"junk < <x> </reply> <<report>1</report>", {"<report>1</report>"}},
        {"\xFF\xFE<reply>1</reply>", {"<reply>1</reply>"}},
        {"<replyx>1</replyx><re<reply>1</reply>", {"<reply>1</reply>"}},
        {"<reply a=\"1\">x</reply>", {}},
        {"<reply/><report>1</report>", {"<report>1</report>"}},
        {"<report></reply>", {}},
        {"<report></reply></report>", {"!"}},
        {"<reply><reply>1</reply></reply>", {"!"}},
        {"<reply><ok></reply>", {"!"}},
        // The search for the end takes a backspace for white space, the grammar does not.
        {"< reply\t><a>1</a></ \x08reply\n><report>1</report>", {"!"}},
        {"<reply><report>1</report></reply><report></report>",
         {"<reply><report>1</report></reply>", "<report />"}},
        {"<reply><a></a><</reply>", {"!"}},
        {"<reply>1< /reply><report>2</report>", {"<reply>1</reply>", "<report>2</report>"}},
    };
    for (const auto& [bytes, out] : rows)
        for (std::size_t step : {1, 7, 1000})
            EXPECT_EQ(Stream().feed(bytes, step), out) << bytes;
}

TEST(XMLParseEngine, HoldsAMessageOfItsSizeAndNoMore)
{
    const std::string fits = "<reply>" + std::string(64 - 15, 'x') + "</reply>";
    for (std::size_t step : {1, 64}) {
        EXPECT_EQ(Stream(64).feed(fits + fits, step), std::vector<std::string>(2, fits));
        EXPECT_EQ(Stream(63).feed(fits, step), std::vector<std::string>{"full"});
    }
    EXPECT_EQ(XMLParseEngine(0).available_buffer_space(), 1024u);
}

TEST(XMLParseEngine, ThrowsAllAwayAfterAnErrorUntilReset)
{
    Stream stream(64);
    EXPECT_EQ(stream.feed("<reply><</reply>", 100), std::vector<std::string>{"!"});
    EXPECT_EQ(stream.engine.input_bytes(100000, std::string(100000, 'x').data()), 100000u);
    EXPECT_TRUE(stream.engine.get_xml().is_null());
    stream.engine.reset();
    EXPECT_FALSE(stream.engine.parse_error());
    EXPECT_EQ(stream.engine.available_buffer_space(), 64u);
    EXPECT_EQ(stream.feed("<reply>1</reply>", 100), std::vector<std::string>{"<reply>1</reply>"});
}

// Names that a peer invents fill the shared table of names; after that, tags still work.
TEST(XMLParseEngine, ManyInventedNamesAreFine)
{
    Stream stream(4096);
    for (int i = 0; i < 5000; ++i) {
        const std::string name = "N" + std::to_string(i);
        const std::string message = "<reply><" + name + ">1</" + name + "></reply>";
        ASSERT_EQ(stream.feed(message, 4096), std::vector<std::string>{message});
    }
    const std::string longest = "<reply><L" + std::string(2000, 'x') + " /></reply>";
    EXPECT_EQ(stream.feed(longest, 4096), std::vector<std::string>{longest});
}

} // namespace
