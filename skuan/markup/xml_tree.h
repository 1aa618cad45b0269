// One protocol message, or any element in it, as a plain value: commands are built as trees and
// written out, replies and reports arrive as trees and are walked.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/afunction.h>
#include <skuan/foundation/alist.h>
#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_list.h>

#include <cstdint>
#include <map>

namespace skuan {
class TreeBuilder;
} // namespace skuan

/// An element: a tag, attributes, and either text or subnodes. There is nothing else of XML here, no
/// namespaces, comments or mixed content. Subnodes that are added to an element with text hide the
/// text in the output.
///
/// A tree is a value. Copies share what they can and are independent of each other, on any thread;
/// one tree object must not be changed by two threads at once. Depth is bounded by memory alone:
/// nothing here recurses.
class SKUAN_EXPORT XMLTree
{
public:
    using Attributes = std::map<AString, AString>;

    /// How `flatten` and `send_utf8` lay out nested elements.
    enum FlattenStyle {
        flatten_compact = 0, ///< no line breaks
        flatten_lines = 1,   ///< CR LF around each subnode
        flatten_indented = 2 ///< as flatten_lines, each level indented by four more blanks
    };
    static constexpr FlattenStyle default_flatten_style = flatten_lines;

    /// The null tree: the absence of a tree, as a failed look-up gives it.
    XMLTree() = default;
    XMLTree(const XMLTree&) = default;
    XMLTree(XMLTree&&) = default;
    ~XMLTree() = default;
    /// By value, and the old tree ends last: what is assigned may be one of its own subnodes.
    XMLTree& operator=(XMLTree other) noexcept
    {
        swap(other);
        return *this;
    }
    void swap(XMLTree& other) noexcept;

    // Tag and text are kept through AString::deep_copy, so that a tree never pins the large text from
    // which a small piece of it was cut.
    explicit XMLTree(AString tag);
    XMLTree(AString tag, AString content);
    XMLTree(AString tag, XMLTree child);
    XMLTree(AString tag, AList<XMLTree> children);
    XMLTree(AString tag, unsigned value); ///< the text is the plain decimal number; also below
    XMLTree(AString tag, std::int64_t value);
    XMLTree(AString tag, std::uint64_t value);

    bool is_null() const { return is_null_; }

    const AString& get_tag() const { return tag_; }
    bool has_tag(const AString& tag) const { return tag_ == tag; }
    /// Compares with a NUL-terminated Latin-1 text, without building a string.
    bool has_tag_z(const char* tag) const { return tag_.equal_z(tag); }

    const AString& get_content() const { return content_; }

    const Attributes& attr() const { return attributes_; }
    Attributes& attr() { return attributes_; }

    // Look-ups see direct subnodes only, in order; tags are compared exactly.
    unsigned count_subnodes() const { return subnodes_.size(); }
    /// How many subnodes have this tag; the first of them is copied to `*first` if that is not null.
    unsigned count_subnodes(const AString& tag, XMLTree* first) const;
    bool has_subnodes() const { return subnodes_.first_entry() != nullptr; }
    bool has_subnodes(const AString& tag) const { return find(tag) != nullptr; }
    const AList<XMLTree>& get_subnodes() const { return subnodes_; }
    AList<XMLTree> get_subnodes(const AString& tag) const;
    /// The first subnode with this tag; if there is none, one shared null tree. The reference is good
    /// until this tree changes or ends.
    const XMLTree& get_subnode(const AString& tag) const;

    /// Sets the text and drops the subnodes.
    void set_content(const AString& content);
    void add_subnode(XMLTree child);
    XMLTree& operator+=(XMLTree child);
    void add_subnodes(const AList<XMLTree>& children);
    /// Gives the first subnode with the tag of `child` its subnodes and text (the attributes stay as
    /// they are), or appends `child` if there is none.
    void set_subnode(XMLTree child);
    void set_subnode(AString tag, AString content);
    void set_subnode(AString tag, AList<XMLTree> children);
    /// The first subnode with this tag, for changing; null if there is none. Good until the next
    /// change of this tree, and not after this tree has been copied.
    XMLTree* get_modifiable_subnode(const AString& tag);
    /// Removes every subnode with this tag and gives their number.
    unsigned remove_subnodes(const AString& tag);

    // Text output. With `collapse_empty`, an element without subnodes and text is written as `<tag />`.
    // A null tree and an unknown style write nothing.

    /// Pieces that concatenate to the text.
    AStringList flatten_base(FlattenStyle style = default_flatten_style, bool collapse_empty = false) const;
    AString flatten(FlattenStyle style = default_flatten_style, bool collapse_empty = false) const;
    /// Hands the text to `sink` as UTF-8, piece by piece on this thread; no piece is empty, and the
    /// bytes are good during the call only. A character that UTF-8 cannot hold is left out.
    void send_utf8(AFunction2<const char*, unsigned> sink, FlattenStyle style = default_flatten_style,
                   bool collapse_empty = false) const;

private:
    friend class skuan::TreeBuilder;

    const XMLTree* find(const AString& tag) const;

    bool is_null_ = true;
    AString tag_;
    AString content_;
    AList<XMLTree> subnodes_;
    Attributes attributes_;
};
