// The raster of a picture, and how it is scanned.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>
#include <skuan/protocol/kvrp3_enumerations.h>
#include <skuan/time/closed_enumeration.h>

namespace Vantor {

/// The order is that of combo boxes.
enum VideoResolution : unsigned {
    VideoResolution_invalid,
    VideoResolution_4K,
    VideoResolution_1080p,
    VideoResolution_1080i,
    VideoResolution_720p,
    VideoResolution_625i,
    VideoResolution_525i,
};
template <>
struct Bounds<VideoResolution> : Between<VideoResolution, VideoResolution_4K, VideoResolution_525i>
{
};

/// "1080i"; empty for an invalid value.
SKUAN_EXPORT AString toString(VideoResolution x);
/// 0 for an unknown text, matched exactly.
SKUAN_EXPORT VideoResolution toVideoResolution(const AString& text);
SKUAN_EXPORT VideoResolution toVideoResolution(KVRP3::VideoResolution x);

// In pixels; 0 for an invalid value. A field of a progressive raster is the whole frame.

SKUAN_EXPORT unsigned width(VideoResolution x);
SKUAN_EXPORT unsigned frame_height(VideoResolution x);
SKUAN_EXPORT unsigned field_height(VideoResolution x);
SKUAN_EXPORT unsigned pixels_per_frame(VideoResolution x);
SKUAN_EXPORT unsigned pixels_per_field(VideoResolution x);

// An invalid value is of neither definition, interlaced, and begins with field 1.

SKUAN_EXPORT bool isHighDefinition(VideoResolution x);
SKUAN_EXPORT bool isStandardDefinition(VideoResolution x);
SKUAN_EXPORT bool isInterlaced(VideoResolution x);
SKUAN_EXPORT bool isProgressive(VideoResolution x);
/// Whether field 1 holds the topmost line. False for 625i alone.
SKUAN_EXPORT bool top_field_is_f1(VideoResolution x);

} // namespace Vantor
