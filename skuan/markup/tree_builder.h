// The text of one message, turned into a tree in one pass: elements are made where they will stay,
// in their parent's list, and no text is built that the tree does not keep.
#pragma once

#include <skuan/markup/xml_tree.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace skuan {

/// What a tag between '<' and '>' does.
enum class TagKind { start, end, empty };

/// Turns a text into a tree. `Source` tells what the text is made of; see xml_source.h. One builder
/// makes one tree.
///
/// The grammar is a small part of XML: elements and text with five named entities. Whatever else
/// stands there, attributes, comments, declarations, mixed content, makes the whole text bad.
class TreeBuilder
{
public:
    /// The tree of [begin, end), or false and an untouched `*result` if the text is bad.
    template <typename Source>
    static bool build(const typename Source::Char* begin, const typename Source::Char* end, XMLTree* result);

private:
    template <typename Source>
    struct Pass;

    static void start(XMLTree& tree, AString&& tag)
    {
        tree.is_null_ = false;
        tree.tag_ = std::move(tag);
    }
    static void set_text(XMLTree& tree, AString&& text) { tree.content_ = std::move(text); }
    static XMLTree& add_child(XMLTree& parent) { return parent.subnodes_.emplace_back(); }
};

template <typename Source>
struct TreeBuilder::Pass
{
    using Char = typename Source::Char;
    using Run = typename Source::Run;

    struct OpenElement
    {
        XMLTree* tree;
        const Char* name;
        unsigned length;
    };

    bool run(const Char* p, const Char* end)
    {
        Source::trim(&p, &end);
        for (;;) {
            const Run text = Source::scan_text(p, end);
            if (text.end == end) // no tag is left
                return complete && p == end;
            if (!Source::is(*text.end, '<'))
                return false;
            if (const Char* behind = own_end_tag(text.end, end)) {
                if (!close(p, text))
                    return false;
                p = behind;
                continue;
            }
            const Char* const tag_end = Source::find_tag_end(text.end + 1, end);
            if (tag_end == end || !take_tag(p, text, tag_end))
                return false;
            p = tag_end + 1;
        }
    }

    /// Where the text goes on if the innermost element's end tag stands at `p` in its plain form.
    const Char* own_end_tag(const Char* p, const Char* end) const
    {
        if (open.empty())
            return nullptr;
        const OpenElement& element = open.back();
        if (end - p < static_cast<std::ptrdiff_t>(element.length) + 3 || !Source::is(p[1], '/') ||
            !Source::is(p[element.length + 2], '>'))
            return nullptr;
        return Source::same(p + 2, element.name, element.length) ? p + element.length + 3 : nullptr;
    }

    /// A tag from `text.end` to `tag_end`, with the text from `p` before it.
    bool take_tag(const Char* p, const Run& text, const Char* tag_end)
    {
        const Char* name = text.end + 1;
        const Char* name_end = tag_end;
        TagKind kind = TagKind::start;
        Source::trim(&name, &name_end);
        if (name == name_end)
            return false;
        if (Source::is(*name, '/')) {
            if (Source::is(name_end[-1], '/'))
                return false;
            kind = TagKind::end;
            ++name;
        } else if (Source::is(name_end[-1], '/')) {
            kind = TagKind::empty;
            --name_end;
        }
        Source::trim(&name, &name_end);
        const auto length = static_cast<unsigned>(name_end - name);

        if (kind == TagKind::end)
            return !open.empty() && open.back().length == length &&
                   Source::same(name, open.back().name, length) && close(p, text);

        // Text before a further element is mixed content, or stands outside the root.
        AString tag;
        if (complete || !Source::is_blank(p, text.end) || !Source::make_name(name, length, &tag))
            return false;
        XMLTree& tree = open.empty() ? root : add_child(*open.back().tree);
        start(tree, std::move(tag));
        if (kind == TagKind::start)
            open.push_back({&tree, name, length});
        else
            complete = open.empty();
        return true;
    }

    /// Ends the innermost element, with the text that stands between `p` and its end tag.
    bool close(const Char* p, const Run& text)
    {
        XMLTree& tree = *open.back().tree;
        if (tree.has_subnodes()) {
            if (!Source::is_blank(p, text.end))
                return false;
        } else if (p != text.end) {
            AString content;
            if (!Source::make_text(p, text, &content))
                return false;
            set_text(tree, std::move(content));
        }
        open.pop_back();
        complete = open.empty();
        return true;
    }

    XMLTree root;
    bool complete = false; ///< the root has been closed
    std::vector<OpenElement> open;
};

template <typename Source>
bool TreeBuilder::build(const typename Source::Char* begin, const typename Source::Char* end, XMLTree* result)
{
    Pass<Source> pass;
    pass.open.reserve(8); // deeper than any message of the protocol
    if (!pass.run(begin, end))
        return false;
    *result = std::move(pass.root);
    return true;
}

} // namespace skuan
