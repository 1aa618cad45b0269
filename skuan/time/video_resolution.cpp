// The table of rasters.
#include <skuan/time/video_resolution.h>

#include <skuan/time/closed_enumeration_p.h>

namespace Vantor {

namespace {

enum class Definition { none, high, standard };

struct Raster
{
    const char* text;
    unsigned width, frame_height;
    bool interlaced;
    Definition definition;
    bool top_field_is_f1;
};

constexpr Raster rasters[] = {
    {"", 0, 0, true, Definition::none, true}, // what an invalid value gets
    {"4K", 3840, 2160, false, Definition::high, true},
    {"1080p", 1920, 1080, false, Definition::high, true},
    {"1080i", 1920, 1080, true, Definition::high, true},
    {"720p", 1280, 720, false, Definition::high, true},
    // Meant so, whatever one expects of this raster: servers and pictures agree on it.
    {"625i", 720, 576, true, Definition::standard, false},
    {"525i", 720, 486, true, Definition::standard, true},
};

constexpr const Raster& row(VideoResolution x)
{
    return rasters[isValid(x) ? x : VideoResolution_invalid];
}

const char* text_of(VideoResolution x)
{
    return row(x).text;
}

// The protocol has the same values in the same order, from 0 on.
static_assert(KVRP3::VideoResolution_525i == VideoResolution_525i - 1);

} // namespace

AString toString(VideoResolution x)
{
    return AString::l1(text_of(x));
}

VideoResolution toVideoResolution(const AString& text)
{
    return value_of_text(text, text_of, VideoResolution_invalid);
}

VideoResolution toVideoResolution(KVRP3::VideoResolution x)
{
    return KVRP3::valid_VideoResolution(x) ? static_cast<VideoResolution>(x + 1) : VideoResolution_invalid;
}

unsigned width(VideoResolution x)
{
    return row(x).width;
}

unsigned frame_height(VideoResolution x)
{
    return row(x).frame_height;
}

unsigned field_height(VideoResolution x)
{
    return frame_height(x) / (isInterlaced(x) ? 2 : 1);
}

unsigned pixels_per_frame(VideoResolution x)
{
    return width(x) * frame_height(x);
}

unsigned pixels_per_field(VideoResolution x)
{
    return width(x) * field_height(x);
}

bool isHighDefinition(VideoResolution x)
{
    return row(x).definition == Definition::high;
}

bool isStandardDefinition(VideoResolution x)
{
    return row(x).definition == Definition::standard;
}

bool isInterlaced(VideoResolution x)
{
    return row(x).interlaced;
}

bool isProgressive(VideoResolution x)
{
    return !isInterlaced(x);
}

bool top_field_is_f1(VideoResolution x)
{
    return row(x).top_field_is_f1;
}

} // namespace Vantor
