// What a state file is made of: groups of entries, each kind read by a layout as a message is.
#pragma once

#include <simulator/call_p.h>
#include <simulator/catalogue_p.h>

#include <deque>
#include <functional>

namespace simulator {

// Takes the children of an entry.
using Put = std::function<void(std::vector<Element>)>;

// One kind of entry.
struct StateEntry
{
    const char* name;
    Layout layout;
    Refusal (*take)(ServerState&, const Element& entry); // approved by the layout
    void (*give)(const ServerState&, const Put& put);    // every such entry that there is
};

// One that a file has, even an empty one, stands for all of its kind; of one that it lacks the server has
// what it has without the file.
struct StateGroup
{
    const char* name;
    std::vector<StateEntry> entries;
    void (*clear)(ServerState&) = [](ServerState&) {};
};

// In the order in which they can be taken. Immutable; any thread.
const std::vector<StateGroup>& content_groups(); // what clients have put there
const std::vector<StateGroup>& machine_groups(); // what the server is

// For those who make layouts.

// Tags and records that the protocol does not have; here until the program ends, as layouts point at them.
inline Tag& own_tag(const char* name, Kind kind)
{
    static std::deque<Tag> tags;
    return tags.emplace_back(Tag{QLatin1String(name), kind});
}
inline const Tag* tag(const char* name)
{
    return Catalogue::get().tag(QLatin1String(name));
}
inline Field required(const char* name)
{
    return {tag(name), false};
}
inline Layout command(const char* name)
{
    return *Catalogue::get().command(QLatin1String(name));
}
// For those who take entries.

inline Refusal twice(const QString& name)
{
    return refuse(QStringLiteral("%1 is there twice").arg(quoted(name)));
}

inline Refusal no_name(const char* what)
{
    return refuse(QStringLiteral("%1 needs a name").arg(QLatin1String(what)));
}

} // namespace simulator
