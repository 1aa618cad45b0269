#include <skuan/markup/xml_tree.h>

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr auto s = AString::l1;

XMLTree leaf(const char* tag, const char* content)
{
    return XMLTree(s(tag), s(content));
}

std::string text_of(const XMLTree& tree, XMLTree::FlattenStyle style = XMLTree::flatten_compact,
                    bool collapse = true)
{
    std::string sent;
    auto sink = [&sent](const char* bytes, unsigned n) { sent.append(bytes, n); };
    tree.send_utf8(AFunction2<const char*, unsigned>::ref(sink), style, collapse);
    // The three outputs are one text.
    EXPECT_EQ(tree.flatten(style, collapse).to_string(), sent);
    std::string joined;
    for (const AString& piece : tree.flatten_base(style, collapse))
        joined += piece.to_string();
    EXPECT_EQ(joined, sent);
    return sent;
}

TEST(XMLTree, WritesEachStyle)
{
    XMLTree tree(s("cmd"), leaf("xid", "1"));
    tree += XMLTree(s("list"), XMLTree(s("empty")));
    EXPECT_EQ(text_of(tree), "<cmd><xid>1</xid><list><empty /></list></cmd>");
    EXPECT_EQ(text_of(tree, XMLTree::flatten_compact, false),
              "<cmd><xid>1</xid><list><empty></empty></list></cmd>");
    EXPECT_EQ(text_of(tree, XMLTree::flatten_lines),
              "<cmd>\r\n<xid>1</xid>\r\n<list>\r\n<empty />\r\n</list>\r\n</cmd>");
    EXPECT_EQ(text_of(tree, XMLTree::flatten_indented),
              "<cmd>\r\n    <xid>1</xid>\r\n    <list>\r\n        <empty />\r\n    </list>\r\n</cmd>");
    EXPECT_EQ(text_of(tree, static_cast<XMLTree::FlattenStyle>(3)), "");
    EXPECT_EQ(text_of(XMLTree()), "");
    const std::string content(700, 'x'); // longer than a segment and than what is sent at once
    EXPECT_EQ(text_of(leaf("t", content.c_str())), "<t>" + content + "</t>");
}

TEST(XMLTree, EscapesTextAndAttributeValuesButNotKeys)
{
    XMLTree tree = leaf("a", "a<b & 'c' > \"d\"");
    EXPECT_EQ(text_of(tree), "<a>a&lt;b &amp; &apos;c&apos; &gt; &quot;d&quot;</a>");
    tree.set_content(AString());
    tree.attr()[s("z")] = s("1");
    tree.attr()[s("k&")] = s("<\"");
    EXPECT_EQ(text_of(tree), "<a k&=\"&lt;&quot;\" z=\"1\" />");
}

TEST(XMLTree, LooksUpDirectSubnodesInOrder)
{
    XMLTree tree(s("r"));
    tree += leaf("a", "1");
    tree += leaf("b", "2");
    tree += leaf("a", "3");
    tree += XMLTree(s("c"), leaf("deep", "4"));

    XMLTree first;
    EXPECT_EQ(tree.count_subnodes(s("a"), &first), 2u);
    EXPECT_EQ(first.get_content(), s("1"));
    EXPECT_FALSE(tree.has_subnodes(s("deep")));
    const XMLTree& missing = tree.get_subnode(s("x"));
    EXPECT_TRUE(missing.is_null());
    EXPECT_EQ(&missing, &XMLTree().get_subnode(s("y")));
    EXPECT_EQ(tree.get_modifiable_subnode(s("x")), nullptr);
}

TEST(XMLTree, ChangesOnlyTheFirstOfItsTagAndOnlyItself)
{
    XMLTree tree(s("r"));
    tree += leaf("a", "1");
    tree += leaf("a", "2");
    tree.get_modifiable_subnode(s("a"))->attr()[s("k")] = s("v");
    const XMLTree before = tree;

    tree.set_subnode(s("a"), s("new"));
    tree.set_subnode(leaf("b", "added"));
    tree.get_modifiable_subnode(s("b"))->set_content(s("changed"));
    EXPECT_EQ(text_of(tree), "<r><a k=\"v\">new</a><a>2</a><b>changed</b></r>");
    EXPECT_EQ(text_of(before), "<r><a k=\"v\">1</a><a>2</a></r>");

    EXPECT_EQ(tree.remove_subnodes(s("a")), 2u);
    EXPECT_EQ(text_of(tree), "<r><b>changed</b></r>");
}

TEST(XMLTree, AddsItselfToItself)
{
    XMLTree tree = leaf("a", "hidden behind subnodes");
    tree.add_subnode(leaf("b", "1"));
    tree += tree;
    tree.add_subnodes(tree.get_subnodes());
    EXPECT_EQ(text_of(tree), "<a><b>1</b><a><b>1</b></a><b>1</b><a><b>1</b></a></a>");
    tree.set_content(s("z"));
    EXPECT_EQ(text_of(tree), "<a>z</a>");
}

// One walks down a message by assigning to one variable.
TEST(XMLTree, BecomesAPartOfItself)
{
    const auto make = [] {
        XMLTree inner(s("b"), leaf("c", "text that is longer than a value would keep alive"));
        inner.attr()[s("k")] = s("v");
        return XMLTree(s("a"), std::move(inner));
    };
    const char* const inner = "<b k=\"v\"><c>text that is longer than a value would keep alive</c></b>";
    XMLTree tree = make();
    tree = tree.get_subnode(s("b"));
    EXPECT_EQ(text_of(tree), inner);
    tree = make();
    tree = std::move(*tree.get_modifiable_subnode(s("b")));
    EXPECT_EQ(text_of(tree), inner);
    tree.set_content(tree.get_subnode(s("c")).get_content());
    EXPECT_EQ(text_of(tree), "<b k=\"v\">text that is longer than a value would keep alive</b>");
}

// A peer chooses how deep a tree is, so nothing may cost stack for each level.
TEST(XMLTree, DepthCostsNoStack)
{
    constexpr unsigned depth = 300000;
    XMLTree tree(s("x"));
    for (unsigned i = 1; i < depth; ++i)
        tree = XMLTree(s("x"), std::move(tree));
    const XMLTree copy = tree;
    unsigned bytes = 0;
    auto sink = [&bytes](const char*, unsigned n) { bytes += n; };
    copy.send_utf8(AFunction2<const char*, unsigned>::ref(sink), XMLTree::flatten_compact, false);
    EXPECT_EQ(bytes, 7 * depth);

    AList<XMLTree> kept = tree.get_subnodes(); // a second holder half way up
    tree = XMLTree(s("y"));
    tree.set_subnode(s("x"), std::move(kept));
    tree.set_content(AString());
    EXPECT_FALSE(tree.has_subnodes());
}

} // namespace
