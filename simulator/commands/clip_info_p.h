// A clip's `ClipInfo`: what every clip has, and what this one has of its own.
#pragma once

#include <simulator/clip_store.h>

namespace simulator {

// The whole record in wire order, of a clip of that video standard.
Element clip_info(const QString& id, const Clip& clip, const QString& standard);

// The `TrackInfoVector` of a clip with the tracks of a `TrackSet`.
Element tracks_of(const Element& track_set);

// Does to a clip what a `ClipAttrChange` says.
void change_attributes(Clip& clip, const Element& change);

} // namespace simulator
