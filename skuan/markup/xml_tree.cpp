#include <skuan/markup/xml_tree.h>

#include <utility>

namespace {

/// The most characters outside a value that it may keep alive with its storage.
constexpr unsigned pinned_at_most = 32;

} // namespace

XMLTree::XMLTree(AString tag) : is_null_(false), tag_(tag.deep_copy(pinned_at_most)) {}

XMLTree::XMLTree(AString tag, AString content) : XMLTree(std::move(tag))
{
    content_ = content.deep_copy(pinned_at_most);
}

XMLTree::XMLTree(AString tag, XMLTree child) : XMLTree(std::move(tag))
{
    subnodes_.emplace_back(std::move(child));
}

XMLTree::XMLTree(AString tag, AList<XMLTree> children) : XMLTree(std::move(tag))
{
    subnodes_ = std::move(children);
}

XMLTree::XMLTree(AString tag, unsigned value) : XMLTree(std::move(tag), AString::from_unsigned(value, 0, ' '))
{
}

XMLTree::XMLTree(AString tag, std::int64_t value)
    : XMLTree(std::move(tag), AString::from_int64_t(value, 0, ' '))
{
}

XMLTree::XMLTree(AString tag, std::uint64_t value)
    : XMLTree(std::move(tag), AString::from_uint64_t(value, 0, ' '))
{
}

void XMLTree::swap(XMLTree& other) noexcept
{
    std::swap(is_null_, other.is_null_);
    tag_.swap(other.tag_);
    content_.swap(other.content_);
    std::swap(subnodes_, other.subnodes_);
    attributes_.swap(other.attributes_);
}

const XMLTree* XMLTree::find(const AString& tag) const
{
    for (const auto* entry = subnodes_.first_entry(); entry; entry = entry->next)
        if (entry->value.tag_ == tag)
            return &entry->value;
    return nullptr;
}

unsigned XMLTree::count_subnodes(const AString& tag, XMLTree* first) const
{
    const XMLTree* found = nullptr;
    unsigned count = 0;
    for (const auto* entry = subnodes_.first_entry(); entry; entry = entry->next)
        if (entry->value.tag_ == tag && count++ == 0)
            found = &entry->value;
    if (found && first)
        *first = *found; // last, as it may be this tree itself
    return count;
}

AList<XMLTree> XMLTree::get_subnodes(const AString& tag) const
{
    AList<XMLTree> found;
    for (const auto* entry = subnodes_.first_entry(); entry; entry = entry->next)
        if (entry->value.tag_ == tag)
            found.push_back(entry->value);
    return found;
}

const XMLTree& XMLTree::get_subnode(const AString& tag) const
{
    static const XMLTree none;
    const XMLTree* found = find(tag);
    return found ? *found : none;
}

void XMLTree::set_content(const AString& content)
{
    content_ = content.deep_copy(pinned_at_most); // first, as it may be a subnode's
    subnodes_.clear();
}

void XMLTree::add_subnode(XMLTree child)
{
    subnodes_.emplace_back(std::move(child));
}

XMLTree& XMLTree::operator+=(XMLTree child)
{
    add_subnode(std::move(child));
    return *this;
}

void XMLTree::add_subnodes(const AList<XMLTree>& children)
{
    subnodes_.push_back(children);
}

void XMLTree::set_subnode(XMLTree child)
{
    XMLTree* present = get_modifiable_subnode(child.tag_);
    if (!present) {
        add_subnode(std::move(child));
        return;
    }
    present->content_ = std::move(child.content_);
    present->subnodes_ = std::move(child.subnodes_);
}

void XMLTree::set_subnode(AString tag, AString content)
{
    set_subnode(XMLTree(std::move(tag), std::move(content)));
}

void XMLTree::set_subnode(AString tag, AList<XMLTree> children)
{
    set_subnode(XMLTree(std::move(tag), std::move(children)));
}

XMLTree* XMLTree::get_modifiable_subnode(const AString& tag)
{
    if (!find(tag))
        return nullptr;
    auto child = subnodes_.begin(); // from here on, the list is this tree's alone
    while (child->tag_ != tag)
        ++child;
    return &*child;
}

unsigned XMLTree::remove_subnodes(const AString& tag)
{
    auto has_this_tag = [&tag](const XMLTree& child) { return child.tag_ == tag; };
    const unsigned before = count_subnodes();
    subnodes_ = subnodes_.remove_matches(AFunction1R<bool, const XMLTree&>::ref(has_this_tag));
    return before - count_subnodes();
}
