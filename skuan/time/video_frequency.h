// How many fields a second a signal has, and which of its timecodes drop frames.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>
#include <skuan/protocol/kvrp3_enumerations.h>
#include <skuan/time/closed_enumeration.h>

/// Standards, tracks and timecode as all above the protocol speaks of them. The protocol's own enumerations
/// begin at 0, and hold standards that no picture here has; these keep 0 for what is invalid or unknown.
/// Functions that only look something up belong to any thread.
namespace Vantor {

/// Field rates. The order is that of combo boxes.
enum VideoFrequency : unsigned {
    VideoFrequency_invalid,
    VideoFrequency_60Hz,
    VideoFrequency_59_94Hz,
    VideoFrequency_50Hz,
    VideoFrequency_48Hz,
    VideoFrequency_47_95Hz,
};
template <>
struct Bounds<VideoFrequency> : Between<VideoFrequency, VideoFrequency_60Hz, VideoFrequency_47_95Hz>
{
};

/// Families of field rates with the same number of timecode fields in a second.
enum VideoRoughFrequency : unsigned {
    VideoRoughFrequency_invalid,
    VideoRoughFrequency_60,
    VideoRoughFrequency_50,
    VideoRoughFrequency_48,
};
template <>
struct Bounds<VideoRoughFrequency>
    : Between<VideoRoughFrequency, VideoRoughFrequency_60, VideoRoughFrequency_48>
{
};

/// Whether labels are dropped so that timecode keeps up with the clock.
enum DropframeFlag : unsigned {
    DropframeFlag_invalid,
    DropframeFlag_df,
    DropframeFlag_ndf,
};
template <>
struct Bounds<DropframeFlag> : Between<DropframeFlag, DropframeFlag_df, DropframeFlag_ndf>
{
};

// "59.94Hz", "df". An invalid value has the empty text; an unknown text, matched exactly, gives 0.

SKUAN_EXPORT AString toString(VideoFrequency x);
SKUAN_EXPORT AString toString(DropframeFlag x);
SKUAN_EXPORT VideoFrequency toVideoFrequency(const AString& text);
SKUAN_EXPORT DropframeFlag toDropframeFlag(const AString& text);

// Of the protocol and for it. What is outside the protocol's values gives 0; an invalid value for the
// protocol is reported, and sent as df or 59.94 Hz.

SKUAN_EXPORT VideoFrequency toVideoFrequency(KVRP3::VideoRate rate);
SKUAN_EXPORT DropframeFlag toDropframeFlag(KVRP3::DropFrameFlag flag);
SKUAN_EXPORT KVRP3::VideoRate to_kvrp3(VideoFrequency x);
SKUAN_EXPORT KVRP3::DropFrameFlag to_kvrp3(DropframeFlag x);

SKUAN_EXPORT VideoRoughFrequency toVideoRoughFrequency(VideoFrequency x);
/// 60, 50 or 48, which is what timecode counts; 60 for an invalid value, so that nobody divides by 0.
SKUAN_EXPORT unsigned RoughFieldsPerSecond(VideoRoughFrequency x);
SKUAN_EXPORT unsigned RoughFieldsPerSecond(VideoFrequency x);

/// 59.94 Hz has, and nothing else.
constexpr bool hasDropframe(VideoFrequency x)
{
    return x == VideoFrequency_59_94Hz;
}
/// df where there is drop-frame; ndf elsewhere, for invalid values too.
constexpr DropframeFlag defaultDropframeFlag(VideoFrequency x)
{
    return hasDropframe(x) ? DropframeFlag_df : DropframeFlag_ndf;
}
/// What a signal of this rate can really carry: df becomes ndf where there is no drop-frame. An invalid flag
/// gives 0.
constexpr DropframeFlag dropframeByVideoFrequency(VideoFrequency x, DropframeFlag flag)
{
    if (!isValid(flag))
        return DropframeFlag_invalid;
    return flag == DropframeFlag_df ? defaultDropframeFlag(x) : flag;
}

} // namespace Vantor
