// The walk over the children of an element, and the words for what was wrong with one.
#include <skuan/protocol/kvrp3_tree_p.h>

#include <skuan/foundation/astring_format.h>
#include <skuan/protocol/kvrp3_children_p.h>

namespace KVRP3 {

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
        *error = AString::l1("Tag '%1' not found within '%2'").arg(tag).arg(within.get_tag());
    return false;
}

bool found_twice(const AString& tag, const XMLTree& within, AString* error)
{
    if (error)
        *error = AString::l1("More than one tag '%1' found within '%2'").arg(tag).arg(within.get_tag());
    return false;
}

bool invalid_value(const XMLTree& element, AString* error)
{
    const AString text = element.get_content().despace();
    if (error)
        *error = AString::l1("Tag %1 contains invalid value '%2'").arg(element.get_tag()).arg(text);
    return false;
}

bool invalid_boolean(const XMLTree& element, AString* error)
{
    const AString text = element.get_content().despace();
    if (error)
        *error = AString::l1("Tag %1 contains invalid %3 value '%2'")
                     .arg(element.get_tag())
                     .arg(text)
                     .arg("boolean");
    return false;
}

bool too_many_members(const XMLTree& element, unsigned count, unsigned capacity, AString* error)
{
    if (error)
        *error = AString::l1("Tag %1 contains %2 subelements. The maximum is %3.")
                     .arg(element.get_tag())
                     .arg(count)
                     .arg(capacity);
    return false;
}

} // namespace KVRP3
