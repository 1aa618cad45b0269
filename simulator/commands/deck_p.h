// One channel, with all that it reaches: what every function takes that has a channel do something.
#pragma once

#include <simulator/element.h>

#include <vector>

namespace simulator {

class Audience;
struct Channel;
struct ServerState;

// Cheap to copy; valid for as long as the server is.
struct Deck
{
    ServerState& state;
    Audience& audience; // who is told of what it does
    int number;         // of the channel: 0 is A

    Channel& channel() const;
    QString name() const;
    Element tag() const; // its `Channel`

    // A and B are a pair, C and D, and so on.
    Deck partner() const { return {state, audience, number ^ 1}; }
};

// Of every channel, whether the server has it or not, in order.
std::vector<Deck> all_decks(ServerState& state, Audience& audience);

} // namespace simulator
