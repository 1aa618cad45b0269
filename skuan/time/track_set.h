// What a clip is made of: picture, key, sound, timecode.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>
#include <skuan/protocol/kvrp3_types.h>
#include <skuan/time/closed_enumeration.h>

namespace Vantor {

enum TrackType : unsigned {
    TrackType_invalid,
    TrackType_video,
    TrackType_key,
    TrackType_audio,
    TrackType_timecode,
};
template <>
struct Bounds<TrackType> : Between<TrackType, TrackType_video, TrackType_timecode>
{
};

/// A mask: any of the four bits, and none at all, is a valid set. What cannot be one is 16.
enum TrackSet : unsigned {
    TrackSet_none = 0,
    TrackSet_video = 1,
    TrackSet_key = 2,
    TrackSet_audio = 4,
    TrackSet_timecode = 8,
    TrackSet_all = 15,
    TrackSet_invalid = 16,
};
template <>
struct Bounds<TrackSet> : Between<TrackSet, TrackSet_none, TrackSet_all>
{
};

// "video"; "VK-T", with a place for each type. An invalid value has the empty text; an unknown text, matched
// exactly, gives 0 for a type and 16 for a set.

SKUAN_EXPORT AString toString(TrackType x);
SKUAN_EXPORT AString toString(TrackSet x);
SKUAN_EXPORT TrackType toTrackType(const AString& text);
SKUAN_EXPORT TrackSet toTrackSet(const AString& text);

/// 0 for what the protocol does not have.
SKUAN_EXPORT TrackType toTrackType(KVRP3::TrackType x);
SKUAN_EXPORT TrackType toTrackType(const KVRP3::TrackInfo& track);

// One unknown type makes the whole set 16.

SKUAN_EXPORT TrackSet toTrackSet(TrackType x);
SKUAN_EXPORT TrackSet toTrackSet(const KVRP3::TrackInfoVector& tracks);
SKUAN_EXPORT TrackSet toTrackSet(const KVRP3::ClipInfo& clip);

// The union; 16 if either side is invalid.

SKUAN_EXPORT TrackSet combine(TrackSet a, TrackSet b);
SKUAN_EXPORT TrackSet combine(TrackSet set, TrackType type);
SKUAN_EXPORT TrackSet combine(TrackSet set, const KVRP3::TrackInfo& track);

} // namespace Vantor
