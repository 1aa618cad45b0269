// The table of standards.
#include <skuan/time/video_standard.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/time/closed_enumeration_p.h>

#include <algorithm>
#include <iterator>

namespace Vantor {

namespace {

struct Standard
{
    const char* text; ///< the raster's, a blank, the rate's
    KVRP3::VideoStandard wire;
    VideoResolution resolution;
    VideoFrequency frequency;
};

constexpr Standard standards[] = {
    // from value 1 on
    {"4K 59.94Hz", KVRP3::VideoStandard_4K_59_94p, VideoResolution_4K, VideoFrequency_59_94Hz},
    {"4K 50Hz", KVRP3::VideoStandard_4K_50p, VideoResolution_4K, VideoFrequency_50Hz},
    {"1080p 59.94Hz", KVRP3::VideoStandard_1080_59_94p, VideoResolution_1080p, VideoFrequency_59_94Hz},
    {"1080p 50Hz", KVRP3::VideoStandard_1080_50p, VideoResolution_1080p, VideoFrequency_50Hz},
    {"1080i 59.94Hz", KVRP3::VideoStandard_1080_59_94i, VideoResolution_1080i, VideoFrequency_59_94Hz},
    {"1080i 50Hz", KVRP3::VideoStandard_1080_50i, VideoResolution_1080i, VideoFrequency_50Hz},
    {"1080i 48Hz", KVRP3::VideoStandard_1080_48i, VideoResolution_1080i, VideoFrequency_48Hz},
    {"1080i 47.95Hz", KVRP3::VideoStandard_1080_47_95i, VideoResolution_1080i, VideoFrequency_47_95Hz},
    {"720p 60Hz", KVRP3::VideoStandard_720_60p, VideoResolution_720p, VideoFrequency_60Hz},
    {"720p 59.94Hz", KVRP3::VideoStandard_720_59_94p, VideoResolution_720p, VideoFrequency_59_94Hz},
    {"720p 50Hz", KVRP3::VideoStandard_720_50p, VideoResolution_720p, VideoFrequency_50Hz},
    {"625i 50Hz", KVRP3::VideoStandard_625_50i, VideoResolution_625i, VideoFrequency_50Hz},
    {"525i 59.94Hz", KVRP3::VideoStandard_525_59_94i, VideoResolution_525i, VideoFrequency_59_94Hz},
};
static_assert(std::size(standards) == VideoStandard_525_59_94i);

const char* text_of(VideoStandard x)
{
    return isValid(x) ? standards[x - 1].text : "";
}

template <typename Condition>
VideoStandard first_where(Condition condition)
{
    const auto* const found = std::find_if(std::begin(standards), std::end(standards), condition);
    return found == std::end(standards) ? VideoStandard_invalid
                                        : static_cast<VideoStandard>(found - standards + 1);
}

} // namespace

AString toString(VideoStandard x)
{
    return AString::l1(text_of(x));
}

VideoStandard toVideoStandard(const AString& text)
{
    return value_of_text(text, text_of, VideoStandard_invalid);
}

VideoStandard toVideoStandard(KVRP3::VideoStandard x)
{
    return first_where([=](const Standard& row) { return row.wire == x; });
}

VideoStandard toVideoStandard(const KVRP3::ClipInfo& clip)
{
    return toVideoStandard(clip.video_standard);
}

VideoStandard toVideoStandard(VideoResolution resolution, VideoFrequency frequency)
{
    return first_where(
        [=](const Standard& row) { return row.resolution == resolution && row.frequency == frequency; });
}

KVRP3::VideoStandard to_kvrp3(VideoStandard x)
{
    return SKUAN_CHECK(isValid(x)) ? standards[x - 1].wire : KVRP3::VideoStandard_1080_59_94i;
}

VideoFrequency toVideoFrequency(VideoStandard x)
{
    return isValid(x) ? standards[x - 1].frequency : VideoFrequency_invalid;
}

VideoFrequency toVideoFrequency(KVRP3::VideoStandard x)
{
    return toVideoFrequency(toVideoStandard(x));
}

VideoResolution toVideoResolution(VideoStandard x)
{
    return isValid(x) ? standards[x - 1].resolution : VideoResolution_invalid;
}

VideoRoughFrequency toVideoRoughFrequency(VideoStandard x)
{
    return toVideoRoughFrequency(toVideoFrequency(x));
}

unsigned RoughFieldsPerSecond(VideoStandard x)
{
    return RoughFieldsPerSecond(toVideoFrequency(x));
}

bool hasDropframe(VideoStandard x)
{
    return hasDropframe(toVideoFrequency(x));
}

DropframeFlag defaultDropframeFlag(VideoStandard x)
{
    return defaultDropframeFlag(toVideoFrequency(x));
}

DropframeFlag dropframeByVideoStandard(VideoStandard x, DropframeFlag flag)
{
    return dropframeByVideoFrequency(toVideoFrequency(x), flag);
}

unsigned width(VideoStandard x)
{
    return width(toVideoResolution(x));
}

unsigned frame_height(VideoStandard x)
{
    return frame_height(toVideoResolution(x));
}

unsigned field_height(VideoStandard x)
{
    return field_height(toVideoResolution(x));
}

unsigned pixels_per_frame(VideoStandard x)
{
    return pixels_per_frame(toVideoResolution(x));
}

unsigned pixels_per_field(VideoStandard x)
{
    return pixels_per_field(toVideoResolution(x));
}

bool isHighDefinition(VideoStandard x)
{
    return isHighDefinition(toVideoResolution(x));
}

bool isStandardDefinition(VideoStandard x)
{
    return isStandardDefinition(toVideoResolution(x));
}

bool isInterlaced(VideoStandard x)
{
    return isInterlaced(toVideoResolution(x));
}

bool isProgressive(VideoStandard x)
{
    return isProgressive(toVideoResolution(x));
}

bool top_field_is_f1(VideoStandard x)
{
    return top_field_is_f1(toVideoResolution(x));
}

} // namespace Vantor
