// The text form of a tree, once, for every output: bytes for a socket, pieces, or one string.
#pragma once

#include <skuan/foundation/assertfail.h>
#include <skuan/markup/xml_tree.h>

#include <vector>

namespace skuan {

/// Writes trees to `Out`, which has `mark(const char*, unsigned)` for ASCII markup, `blanks(unsigned)`,
/// `name(const AString&)` for text as it stands and `escaped(const AString&)`. Open elements are kept
/// in a list and not on the stack, so a tree of any depth can be written.
template <typename Out>
class TreeWriter
{
public:
    TreeWriter(Out& out, XMLTree::FlattenStyle style, bool collapse_empty)
        : out_(out), style_(style), collapse_empty_(collapse_empty)
    {
    }

    void write(const XMLTree& root)
    {
        if (!SKUAN_CHECK(XMLTree::flatten_compact <= style_ && style_ <= XMLTree::flatten_indented))
            return;
        enter(root);
        while (!open_.empty()) {
            Level& level = open_.back();
            line_break();
            if (level.next) {
                const XMLTree& child = level.next->value;
                level.next = level.next->next;
                enter(child);
            } else {
                const XMLTree& element = *level.element;
                open_.pop_back();
                indent();
                end_tag(element);
            }
        }
    }

private:
    using Entry = typename AList<XMLTree>::EntryStruct;

    struct Level
    {
        const XMLTree* element;
        const Entry* next; ///< the subnode to be written next
    };

    /// Writes an element whole, or, if it has subnodes, its start tag.
    void enter(const XMLTree& tree)
    {
        if (!SKUAN_CHECK(!tree.is_null()))
            return;
        indent();
        out_.mark("<", 1);
        out_.name(tree.get_tag());
        for (const auto& [key, value] : tree.attr()) {
            out_.mark(" ", 1);
            out_.name(key);
            out_.mark("=\"", 2);
            out_.escaped(value);
            out_.mark("\"", 1);
        }
        const Entry* const first = tree.get_subnodes().first_entry();
        if (!first && collapse_empty_ && tree.get_content().empty()) {
            out_.mark(" />", 3);
            return;
        }
        out_.mark(">", 1);
        if (first) {
            open_.push_back({&tree, first});
            return;
        }
        out_.escaped(tree.get_content());
        end_tag(tree);
    }

    void end_tag(const XMLTree& tree)
    {
        out_.mark("</", 2);
        out_.name(tree.get_tag());
        out_.mark(">", 1);
    }
    void line_break()
    {
        if (style_ != XMLTree::flatten_compact)
            out_.mark("\r\n", 2);
    }
    void indent()
    {
        if (style_ == XMLTree::flatten_indented)
            out_.blanks(4 * static_cast<unsigned>(open_.size()));
    }

    Out& out_;
    const XMLTree::FlattenStyle style_;
    const bool collapse_empty_;
    std::vector<Level> open_;
};

} // namespace skuan
