// The tag rule, and the words for what was wrong.
#include <skuan/protocol/kvrp3_tree_p.h>

#include <skuan/protocol/kvrp3_children_p.h>

#include <initializer_list>

namespace KVRP3 {

/// `text` with each `%n` replaced by the nth value.
static AString filled(const char* text, std::initializer_list<AString> values)
{
    const AString form = AString::l1(text);
    AString result;
    unsigned from = 0;
    for (int at = form.find(AChar('%'), 0); at >= 0; at = form.find(AChar('%'), from)) {
        result += form.mid(from, static_cast<unsigned>(at) - from);
        result += values.begin()[form.getchar(static_cast<unsigned>(at) + 1).ord() - '1'];
        from = static_cast<unsigned>(at) + 2;
    }
    return result + form.mid(from);
}

const XMLTree* find_element(const XMLTree& within, const AString& tag, AString* error)
{
    if (within.has_tag(tag))
        return &within;
    const AString* const tags[] = {&tag};
    Child child;
    find_children(within, tags, 1, &child);
    if (!child.is_there())
        not_found(tag, within, error);
    else if (child.twice)
        found_twice(tag, within, error);
    else
        return child.element;
    return nullptr;
}

void find_children(const XMLTree& within, const AString* const* tags, unsigned count, Child* found)
{
    unsigned expected = 0;
    for (const auto* entry = within.get_subnodes().first_entry(); entry; entry = entry->next) {
        for (unsigned tried = 0, at = expected; tried != count; ++tried, at = at + 1 < count ? at + 1 : 0) {
            if (!entry->value.has_tag(*tags[at]))
                continue;
            if (found[at].is_there())
                found[at].twice = true;
            else
                found[at].element = &entry->value;
            expected = at + 1 < count ? at + 1 : 0;
            break;
        }
    }
}

bool not_found(const AString& tag, const XMLTree& within, AString* error)
{
    if (error)
        *error = filled("Tag '%1' not found within '%2'", {tag, within.get_tag()});
    return false;
}

bool found_twice(const AString& tag, const XMLTree& within, AString* error)
{
    if (error)
        *error = filled("More than one tag '%1' found within '%2'", {tag, within.get_tag()});
    return false;
}

bool invalid_value(const XMLTree& element, AString* error)
{
    if (error)
        *error = filled("Tag %1 contains invalid value '%2'",
                        {element.get_tag(), element.get_content().despace()});
    return false;
}

bool invalid_boolean(const XMLTree& element, AString* error)
{
    if (error)
        *error = filled("Tag %1 contains invalid %3 value '%2'",
                        {element.get_tag(), element.get_content().despace(), AString::l1("boolean")});
    return false;
}

bool too_many_members(const XMLTree& element, unsigned count, unsigned capacity, AString* error)
{
    if (error)
        *error = filled("Tag %1 contains %2 subelements. The maximum is %3.",
                        {element.get_tag(), AString::from_uint32_t(count), AString::from_uint32_t(capacity)});
    return false;
}

} // namespace KVRP3
