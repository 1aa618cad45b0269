// The five characters that text may hold only by name, and those names. Nothing else is escaped, and
// character references such as "&#65;" are not known here: they stay as they stand.
#pragma once

#include <cstdint>

namespace skuan {

struct XMLEntity
{
    char character;
    unsigned length; ///< of `text`
    const char* text;
};

constexpr XMLEntity xml_entities[] = {
    {'\'', 6, "&apos;"}, {'<', 4, "&lt;"}, {'>', 4, "&gt;"}, {'"', 6, "&quot;"}, {'&', 5, "&amp;"},
};

namespace detail {
constexpr std::uint64_t escaped_characters()
{
    std::uint64_t set = 0;
    for (const XMLEntity& entity : xml_entities)
        set |= std::uint64_t{1} << entity.character; // all are below 64
    return set;
}
} // namespace detail

inline bool must_escape(unsigned character)
{
    return character < 64 && (detail::escaped_characters() >> character & 1) != 0;
}

/// The row for a character that must be escaped, or null.
inline const XMLEntity* entity_for(unsigned character)
{
    if (!must_escape(character))
        return nullptr;
    for (const XMLEntity& entity : xml_entities)
        if (static_cast<unsigned char>(entity.character) == character)
            return &entity;
    return nullptr;
}

/// The row whose text stands at `p`, which points at an '&', within [p, end); null if none does.
/// `Char` is anything that compares with a character of the entity's text by `same(Char, char)`.
template <typename Char, typename Same>
const XMLEntity* entity_at(const Char* p, const Char* end, Same same)
{
    for (const XMLEntity& entity : xml_entities) {
        if (end - p < static_cast<long>(entity.length))
            continue;
        unsigned i = 1;
        while (i < entity.length && same(p[i], entity.text[i]))
            ++i;
        if (i == entity.length)
            return &entity;
    }
    return nullptr;
}

} // namespace skuan
