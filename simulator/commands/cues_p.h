// Clips on their way to a channel.
#pragma once

#include <simulator/commands/channels_p.h>

namespace simulator {

// How many angles a clip has; at least one.
quint32 angle_count(const ServerState& state, const Cue& cue);

// That angle of the clip, or its last one.
quint32 within_angles(const ServerState& state, const Cue& cue, quint32 angle);

// Makes a cue of a clip or a virtual clip. `options` may hold what `cue_clip` takes. Positions beyond the
// clip's end are its end, and angles beyond the last are that one.
Refusal make_cue(ServerState& state, const QString& clip, bool is_virtual, const Element& options, Cue& cue);

// Where a cue may run: to its out point, within the loop that it has.
Path path_of(const Cue& cue);

// The length of a clip has changed: whoever has it on a channel, or precued, goes on with the new one.
void follow_length(ServerState& state, const QString& clip);

} // namespace simulator
