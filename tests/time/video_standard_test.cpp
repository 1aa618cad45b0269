// The tables of standards, rates, rasters and tracks, against the numbers that they have to have.
#include <skuan/time/track_set.h>
#include <skuan/time/video_standard.h>

#include <gtest/gtest.h>

using namespace Vantor;

namespace {

template <typename E>
unsigned walk_length()
{
    unsigned n = 0;
    E x = static_cast<E>(~0u);
    EXPECT_FALSE(getnext(x) || isValid(x));
    for (bool more = getfirst(x); more && isValid(x); more = getnext(x))
        ++n;
    const E last = x;
    EXPECT_FALSE(getnext(x) || x != last);
    return n;
}

TEST(VideoStandard, walks_visit_every_value)
{
    EXPECT_EQ(walk_length<VideoStandard>(), 13u);
    EXPECT_EQ(walk_length<VideoFrequency>(), 5u);
    EXPECT_EQ(walk_length<VideoResolution>(), 6u);
    EXPECT_EQ(walk_length<VideoRoughFrequency>(), 3u);
    EXPECT_EQ(walk_length<DropframeFlag>(), 2u);
    EXPECT_EQ(walk_length<TrackType>(), 4u);
    EXPECT_EQ(walk_length<TrackSet>(), 16u);
}

TEST(VideoStandard, is_found_again_by_name_by_wire_and_by_raster_and_rate)
{
    VideoStandard x;
    for (bool more = getfirst(x); more; more = getnext(x)) {
        SCOPED_TRACE(toString(x).to_string());
        EXPECT_EQ(toVideoStandard(toString(x)), x);
        EXPECT_EQ(toVideoStandard(to_kvrp3(x)), x);
        EXPECT_EQ(toVideoStandard(toVideoResolution(x), toVideoFrequency(x)), x);
        EXPECT_EQ(toString(x), toString(toVideoResolution(x)) + AString(" ") + toString(toVideoFrequency(x)));
        const std::string wire = KVRP3::VideoStandard_to_string(to_kvrp3(x)).to_string();
        EXPECT_EQ(wire.substr(0, wire.find('_')) + wire.back(),
                  toString(toVideoResolution(x)).to_string() + (x <= VideoStandard_4K_50p ? "p" : ""));
        EXPECT_EQ(field_height(x), frame_height(x) / (isInterlaced(x) ? 2 : 1));
        EXPECT_EQ(pixels_per_field(x), width(x) * field_height(x));
        EXPECT_EQ(pixels_per_frame(x), width(x) * frame_height(x));
        EXPECT_NE(isProgressive(x), isInterlaced(x));
        EXPECT_NE(isHighDefinition(x), isStandardDefinition(x));
        EXPECT_EQ(RoughFieldsPerSecond(x), RoughFieldsPerSecond(toVideoFrequency(x)));
        EXPECT_EQ(hasDropframe(x), toVideoFrequency(x) == VideoFrequency_59_94Hz);
    }
    EXPECT_EQ(toVideoStandard(VideoResolution_4K, VideoFrequency_48Hz), 0u);
    EXPECT_EQ(toVideoStandard(static_cast<KVRP3::VideoStandard>(16)), 0u);
    EXPECT_EQ(to_kvrp3(VideoStandard_invalid), KVRP3::VideoStandard_1080_59_94i);
    EXPECT_TRUE(toString(static_cast<VideoStandard>(14)).empty());
}

TEST(VideoStandard, rates_and_rasters_answer_for_invalid_values_too)
{
    for (const auto x : {VideoFrequency_invalid, static_cast<VideoFrequency>(6)}) {
        EXPECT_TRUE(toString(x).empty() && toVideoRoughFrequency(x) == 0 && !hasDropframe(x));
        EXPECT_EQ(RoughFieldsPerSecond(x), 60u);
        EXPECT_EQ(defaultDropframeFlag(x), DropframeFlag_ndf);
        EXPECT_EQ(to_kvrp3(x), 1);
    }
    for (const auto x : {VideoResolution_invalid, static_cast<VideoResolution>(7)})
        EXPECT_TRUE(toString(x).empty() && width(x) == 0 && frame_height(x) == 0 && isInterlaced(x) &&
                    top_field_is_f1(x) && !isHighDefinition(x) && !isStandardDefinition(x));
    EXPECT_EQ(dropframeByVideoFrequency(VideoFrequency_59_94Hz, static_cast<DropframeFlag>(3)), 0u);
    EXPECT_EQ(dropframeByVideoStandard(VideoStandard_625_50i, DropframeFlag_df), DropframeFlag_ndf);
    EXPECT_EQ(RoughFieldsPerSecond(VideoFrequency_47_95Hz), 48u);
    EXPECT_FALSE(top_field_is_f1(VideoStandard_625_50i)); // alone among the interlaced ones
    const unsigned rasters[][2] = {{},          {3840, 2160}, {1920, 1080}, {1920, 1080},
                                   {1280, 720}, {720, 576},   {720, 486}};
    VideoResolution x;
    for (bool more = getfirst(x); more; more = getnext(x))
        EXPECT_TRUE(width(x) == rasters[x][0] && frame_height(x) == rasters[x][1]) << x;
}

TEST(TrackSet, is_a_mask_with_a_letter_for_each_track)
{
    EXPECT_EQ(toString(TrackSet_none).to_string(), "----");
    EXPECT_EQ(toString(static_cast<TrackSet>(11)).to_string(), "VK-T");
    EXPECT_EQ(toTrackSet(AString("VK-T")), 11u);
    EXPECT_EQ(toTrackSet(AString("vk-t")), 16u);
    EXPECT_EQ(toTrackSet(AString()), 16u);
    EXPECT_EQ(toTrackType(AString("timecode")), TrackType_timecode);
    EXPECT_EQ(combine(TrackSet_invalid, TrackSet_video), 16u);
    EXPECT_EQ(combine(TrackSet_video, static_cast<TrackSet>(17)), 16u);
    EXPECT_EQ(combine(TrackSet_video, TrackType_audio), 5u);
    EXPECT_EQ(combine(TrackSet_video, TrackType_invalid), 16u);

    KVRP3::ClipInfo clip;
    for (const auto type : {KVRP3::TrackType_audio, KVRP3::TrackType_video, KVRP3::TrackType_audio})
        clip.track_info_vector.vec[clip.track_info_vector.count++].track_type = type;
    EXPECT_EQ(toTrackSet(clip), 5u);
    clip.track_info_vector.vec[1].track_type = static_cast<KVRP3::TrackType>(4);
    EXPECT_EQ(toTrackSet(clip), 16u); // and the next, which is known, does not mend it
}

} // namespace
