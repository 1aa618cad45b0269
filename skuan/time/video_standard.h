// Video standards: a raster at a field rate. Only some pairs are standards.
#pragma once

#include <skuan/protocol/kvrp3_types.h>
#include <skuan/time/video_frequency.h>
#include <skuan/time/video_resolution.h>

namespace Vantor {

/// The order is that of combo boxes.
enum VideoStandard : unsigned {
    VideoStandard_invalid,
    VideoStandard_4K_59_94p,
    VideoStandard_4K_50p,
    VideoStandard_1080_59_94p,
    VideoStandard_1080_50p,
    VideoStandard_1080_59_94i,
    VideoStandard_1080_50i,
    VideoStandard_1080_48i,
    VideoStandard_1080_47_95i,
    VideoStandard_720_60p,
    VideoStandard_720_59_94p,
    VideoStandard_720_50p,
    VideoStandard_625_50i,
    VideoStandard_525_59_94i,
};
template <>
struct Bounds<VideoStandard> : Between<VideoStandard, VideoStandard_4K_59_94p, VideoStandard_525_59_94i>
{
};

// "1080i 59.94Hz", for a person. The server's own text for it, "1080_59_94i", is that of
// KVRP3::VideoStandard. An invalid value has the empty text; an unknown text, matched exactly, gives 0.

SKUAN_EXPORT AString toString(VideoStandard x);
SKUAN_EXPORT VideoStandard toVideoStandard(const AString& text);

/// 0 for what has no place here: 60 Hz in 4K and 1080 lines.
SKUAN_EXPORT VideoStandard toVideoStandard(KVRP3::VideoStandard x);
SKUAN_EXPORT VideoStandard toVideoStandard(const KVRP3::ClipInfo& clip);
/// 0 for a pair that is no standard, such as 4K at 48 Hz.
SKUAN_EXPORT VideoStandard toVideoStandard(VideoResolution resolution, VideoFrequency frequency);
/// An invalid value is reported, and sent as 1080_59_94i.
SKUAN_EXPORT KVRP3::VideoStandard to_kvrp3(VideoStandard x);

// 0 for an invalid value.

SKUAN_EXPORT VideoFrequency toVideoFrequency(VideoStandard x);
SKUAN_EXPORT VideoFrequency toVideoFrequency(KVRP3::VideoStandard x);
SKUAN_EXPORT VideoResolution toVideoResolution(VideoStandard x);
SKUAN_EXPORT VideoRoughFrequency toVideoRoughFrequency(VideoStandard x);

// What the standard's rate or raster has; an invalid standard gets what an invalid rate or raster gets.

SKUAN_EXPORT unsigned RoughFieldsPerSecond(VideoStandard x);
SKUAN_EXPORT bool hasDropframe(VideoStandard x);
SKUAN_EXPORT DropframeFlag defaultDropframeFlag(VideoStandard x);
SKUAN_EXPORT DropframeFlag dropframeByVideoStandard(VideoStandard x, DropframeFlag flag);

SKUAN_EXPORT unsigned width(VideoStandard x);
SKUAN_EXPORT unsigned frame_height(VideoStandard x);
SKUAN_EXPORT unsigned field_height(VideoStandard x);
SKUAN_EXPORT unsigned pixels_per_frame(VideoStandard x);
SKUAN_EXPORT unsigned pixels_per_field(VideoStandard x);
SKUAN_EXPORT bool isHighDefinition(VideoStandard x);
SKUAN_EXPORT bool isStandardDefinition(VideoStandard x);
SKUAN_EXPORT bool isInterlaced(VideoStandard x);
SKUAN_EXPORT bool isProgressive(VideoStandard x);
SKUAN_EXPORT bool top_field_is_f1(VideoStandard x);

} // namespace Vantor
