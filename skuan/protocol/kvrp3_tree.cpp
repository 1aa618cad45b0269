// The tag rule, and the words for what was wrong.
#include <skuan/protocol/kvrp3_tree_p.h>

namespace KVRP3 {

/// `text` with `%1` and `%2` replaced; each stands in it at most once.
static AString filled(const char* text, const AString& first, const AString& second)
{
    const AString form = AString::l1(text);
    AString result;
    unsigned from = 0;
    for (int at = form.find(AChar::from_latin1('%'), 0); at >= 0;
         at = form.find(AChar::from_latin1('%'), from)) {
        result += form.mid(from, static_cast<unsigned>(at) - from);
        result += form.substr(static_cast<unsigned>(at) + 1, 1).equal_z("1") ? first : second;
        from = static_cast<unsigned>(at) + 2;
    }
    return result + form.mid(from);
}

const XMLTree* find_element(const XMLTree& within, const AString& tag, AString* error)
{
    if (within.has_tag(tag))
        return &within;
    const XMLTree* found = nullptr;
    for (const auto* entry = within.get_subnodes().first_entry(); entry; entry = entry->next) {
        if (!entry->value.has_tag(tag))
            continue;
        if (found) {
            if (error)
                *error = filled("More than one tag '%1' found within '%2'", tag, within.get_tag());
            return nullptr;
        }
        found = &entry->value;
    }
    if (!found && error)
        *error = filled("Tag '%1' not found within '%2'", tag, within.get_tag());
    return found;
}

bool invalid_value(const AString& tag, const AString& text, AString* error)
{
    if (error)
        *error = filled("Tag %1 contains invalid value '%2'", tag, text);
    return false;
}

} // namespace KVRP3
