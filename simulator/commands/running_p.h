// What channels do in time.
#pragma once

#include <simulator/commands/channels_p.h>

namespace simulator {

// Each of these tells nothing by itself: tell_changes() does, when all is done.

// Puts a cue on a channel: to be made ready and stand, or to play at once in that status.
void load(Deck deck, Cue cue, ChannelStatus status = ChannelStatus::cueing);

// Runs what is on the channel, at the speed of its cue.
void roll(Deck deck, ChannelStatus status = ChannelStatus::play);

// Stands still. What waits for that comes on air.
void halt(Deck deck);

// Stands still for a command that moves it.
void stand(Deck deck);

void go_to(Channel& channel, qint64 field);

// What waits first goes on air; something waits.
void roll_precued(Deck deck);

// Nothing is on the channel any more.
void clear(Deck deck);

// Records into a clip, which is new, from now on; up to so many fields if it is not 0.
void record(Deck deck, const QString& clip, quint32 most);

// Whether a channel records into the clip, so that its end is not there yet.
bool is_recorded(const ServerState& state, const QString& clip);

// Whether it writes into the clip that is on it.
bool is_writing(const Channel& channel);

// Whether a channel shows what is at its input.
bool shows_input(const Channel& channel);

// Lets a field pass on every channel. True if one of them goes on by itself.
bool run_channels(ServerState& state, Audience& audience);

} // namespace simulator
