// What clips are to the commands of other families.
#pragma once

#include <simulator/clip_store.h>

namespace simulator {

class Audience;
struct Refusal;
struct ServerState;

// Why a clip cannot be changed.
Refusal fixed_clip(const ServerState& state, const QString& name);

// Tells those who listen that there is more in a clip, or something else, and less room on the disks.
void tell_written(ServerState& state, Audience& audience, const QString& clip);

// The number of a clip's first field behind the trim, in its own timecode. It wraps.
quint32 first_field(const Clip& clip);

// Renews one of the stamps that a clip keeps, `tag`. No such clip: nothing happens.
void stamp_clip(ServerState& state, const QString& clip, const char* tag);

} // namespace simulator
