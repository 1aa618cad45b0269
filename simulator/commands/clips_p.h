// What clips are to the commands of other families.
#pragma once

#include <simulator/clip_store.h>

namespace simulator {

struct ServerState;

// The number of a clip's first field, in its own timecode.
quint32 first_field(const Clip& clip);

// Renews one of the stamps that a clip keeps, `tag`. No such clip: nothing happens.
void stamp_clip(ServerState& state, const QString& clip, const char* tag);

} // namespace simulator
