// Play lists on air: which element is, which one follows, and what that does to the channel.
#pragma once

#include <simulator/commands/channels_p.h>

namespace simulator {

// Makes a cue of what an element of a list plays. That the clip itself would loop does not count in a list.
Refusal cue_element(ServerState& state, const Element& element, Cue& cue);

// An element with its clip, ready to go on air.
struct Upcoming
{
    quint32 index = 0;
    Cue cue;
};

// The next element of the list that has its clip; those that have none are passed over.
Refusal find_next(Deck deck, Upcoming& next);

// An element goes on air, to roll or to stand at its start. There is a play list on the channel.
void put_on_air(Deck deck, Upcoming element, bool rolls);

// Whether the list itself would have the element roll when it is its turn.
bool rolls_by_itself(const LoadedList& list, quint32 index);

// What is on the channel is at its end: goes on as its list wants it. False if the channel is to stand.
bool follow_element(Deck deck);

// What the channel plays from now on comes from no list.
void leave_air(Channel& channel);

// Looks ahead: what is next on the channel's play list, and whether it is near enough to be locked.
void foresee(Deck deck);

// Looks ahead, has the next element on the preview channel, and tells those who listen what is other than
// they know.
void settle_lists(Deck deck);

// The channel on which a list runs that shows its next element on another one.
struct ProgramPair
{
    Deck program, preview;
};

// The pair that the channel is one of, if it is.
std::optional<ProgramPair> program_pair(Deck deck);

} // namespace simulator
