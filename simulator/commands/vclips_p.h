// Virtual clips: clips made of pieces of others.
#pragma once

#include <simulator/budget_p.h>
#include <simulator/element.h>

#include <vector>

namespace simulator {

struct Refusal;

// A piece of a clip on some tracks of a virtual clip. Positions and lengths in fields.
struct Segment
{
    QString clip;
    unsigned tracks = 0; // a bit for each TrackType
    quint32 clip_position = 0;
    quint32 position = 0; // in the virtual clip
    quint32 length = 0;
    qint32 speed = 0; // 65536: normal
};

struct VirtualClip
{
    quint32 length = 0;
    std::vector<Segment> segments;
    QString tracks_like;    // the clip whose tracks it has
    unsigned tracks = ~0u;  // that it has
    unsigned enabled = ~0u; // and of these, that are heard and seen
};

inline qint64 weight(const Segment& segment)
{
    return 32 + weight(segment.clip);
}
inline qint64 weight(const VirtualClip& clip)
{
    return 64 + weight(clip.tracks_like) + weight(clip.segments);
}

// A `TrackSet`, or another container of tracks, as a bit for each TrackType, and back.
unsigned track_bits(const Element& set);
Element track_set(const char* tag, unsigned bits);

Refusal no_such_vclip(const QString& name);

} // namespace simulator
