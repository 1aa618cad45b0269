// Splitting a string into a list, and what lists of strings do as one text.
#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_list.h>

AStringList AString::split(const AString& separator, bool keep_empty) const
{
    auto find_separator = [&](const AString& text, unsigned from, int* position, unsigned* length) {
        *position = text.find(separator, from);
        *length = separator.length();
    };
    return split(AFunction4<const AString&, unsigned, int*, unsigned*>::ref(find_separator), false,
                 keep_empty);
}

AStringList AString::split(AFunction4<const AString&, unsigned, int*, unsigned*> finder, bool keep_separators,
                           bool keep_empty) const
{
    AStringList pieces;
    if (empty())
        return pieces;
    unsigned start = 0;
    while (!finder.is_null() && start <= len_) {
        int found = -1;
        unsigned separator_length = 1;
        finder.run(*this, start, &found, &separator_length);
        if (found < 0)
            break;
        // An empty separator text is found at 0 again and again: it splits once.
        const unsigned position = static_cast<unsigned>(found);
        if (position < start || position > len_)
            break;
        if (position > start || keep_empty)
            pieces.push_back(substr(start, position - start));
        if (keep_separators)
            pieces.push_back(substr(position, separator_length));
        if (separator_length > len_ - position)
            separator_length = len_ - position;
        start = position + (separator_length ? separator_length : 1);
    }
    pieces.push_back(substr(start));
    return pieces;
}

AString AStringList::join(const AString& separator) const
{
    return AString(*this, separator);
}

AStringList AStringList::filter(const AString& text) const
{
    AStringList kept;
    for (auto* entry = first_entry(); entry; entry = entry->next)
        if (entry->value.contains(text))
            kept.push_back(entry->value);
    return kept;
}

AStringList AStringList::pop_back(unsigned n)
{
    AStringList popped;
    for (; n != 0 && !empty(); --n)
        popped.push_front(pop_back());
    return popped;
}

AStringList AStringList::pop_front(unsigned n)
{
    AStringList popped;
    for (; n != 0 && !empty(); --n)
        popped.push_back(pop_front());
    return popped;
}

void AStringList::send_achars(AFunction2<const AChar*, unsigned> sink) const
{
    for (auto* entry = first_entry(); entry; entry = entry->next)
        entry->value.send_achars(sink);
}

void AStringList::send_utf8(AFunction2<const char*, unsigned> sink) const
{
    for (auto* entry = first_entry(); entry; entry = entry->next)
        entry->value.send_utf8(sink);
}
