// What a state file is made of: groups of entries, each kind read by a layout as a message is.
#pragma once

#include <simulator/call_p.h>
#include <simulator/catalogue_p.h>

#include <functional>

namespace simulator {

// One kind of entry.
struct StateEntry
{
    const char* name;
    Layout layout;
    Refusal (*take)(ServerState&, const Element& entry); // approved by the layout
    // Hands over the children of every such entry that there is.
    void (*give)(const ServerState&, const std::function<void(std::vector<Element>)>& put);
};

// One that a file has, even an empty one, stands for all of its kind; of one that it lacks the server has
// what it has without the file.
struct StateGroup
{
    const char* name;
    void (*clear)(ServerState&);
    std::vector<StateEntry> entries;
};

// In the order in which they can be taken. Immutable; any thread.
const std::vector<StateGroup>& state_groups();

} // namespace simulator
