// The table of field rates.
#include <skuan/time/video_frequency.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/time/closed_enumeration_p.h>

namespace Vantor {

namespace {

struct Frequency
{
    const char* text;
    VideoRoughFrequency rough;
};

constexpr Frequency frequencies[] = {
    {"", VideoRoughFrequency_invalid}, // what an invalid value gets
    {"60Hz", VideoRoughFrequency_60},  {"59.94Hz", VideoRoughFrequency_60}, {"50Hz", VideoRoughFrequency_50},
    {"48Hz", VideoRoughFrequency_48},  {"47.95Hz", VideoRoughFrequency_48},
};

constexpr const Frequency& row(VideoFrequency x)
{
    return frequencies[isValid(x) ? x : VideoFrequency_invalid];
}

const char* text_of(VideoFrequency x)
{
    return row(x).text;
}

const char* text_of(DropframeFlag x)
{
    return x == DropframeFlag_df ? "df" : x == DropframeFlag_ndf ? "ndf" : "";
}

// The protocol has the same values in the same order, from 0 on.
static_assert(KVRP3::VideoRate_47_95 == VideoFrequency_47_95Hz - 1 &&
              KVRP3::DropFrameFlag_ndf == DropframeFlag_ndf - 1);

} // namespace

AString toString(VideoFrequency x)
{
    return AString::l1(text_of(x));
}

AString toString(DropframeFlag x)
{
    return AString::l1(text_of(x));
}

VideoFrequency toVideoFrequency(const AString& text)
{
    return value_of_text(text, text_of, VideoFrequency_invalid);
}

DropframeFlag toDropframeFlag(const AString& text)
{
    return value_of_text(text, text_of, DropframeFlag_invalid);
}

VideoFrequency toVideoFrequency(KVRP3::VideoRate rate)
{
    return KVRP3::valid_VideoRate(rate) ? static_cast<VideoFrequency>(rate + 1) : VideoFrequency_invalid;
}

DropframeFlag toDropframeFlag(KVRP3::DropFrameFlag flag)
{
    return KVRP3::valid_DropFrameFlag(flag) ? static_cast<DropframeFlag>(flag + 1) : DropframeFlag_invalid;
}

KVRP3::VideoRate to_kvrp3(VideoFrequency x)
{
    return SKUAN_CHECK(isValid(x)) ? static_cast<KVRP3::VideoRate>(x - 1) : KVRP3::VideoRate_59_94;
}

KVRP3::DropFrameFlag to_kvrp3(DropframeFlag x)
{
    return SKUAN_CHECK(isValid(x)) ? static_cast<KVRP3::DropFrameFlag>(x - 1) : KVRP3::DropFrameFlag_df;
}

VideoRoughFrequency toVideoRoughFrequency(VideoFrequency x)
{
    return row(x).rough;
}

unsigned RoughFieldsPerSecond(VideoRoughFrequency x)
{
    return x == VideoRoughFrequency_50 ? 50 : x == VideoRoughFrequency_48 ? 48 : 60;
}

unsigned RoughFieldsPerSecond(VideoFrequency x)
{
    return RoughFieldsPerSecond(toVideoRoughFrequency(x));
}

} // namespace Vantor
