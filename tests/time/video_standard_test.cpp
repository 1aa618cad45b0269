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

TEST(VideoStandard, has_the_numbers_of_its_tables)
{
    const struct
    {
        const char *text, *wire;
        unsigned wire_value, frequency, resolution;
    } rows[] = {
        {"4K 59.94Hz", "4K_59_94p", 1, 2, 1},      {"4K 50Hz", "4K_50p", 2, 3, 1},
        {"1080p 59.94Hz", "1080_59_94p", 4, 2, 2}, {"1080p 50Hz", "1080_50p", 5, 3, 2},
        {"1080i 59.94Hz", "1080_59_94i", 7, 2, 3}, {"1080i 50Hz", "1080_50i", 8, 3, 3},
        {"1080i 48Hz", "1080_48i", 9, 4, 3},       {"1080i 47.95Hz", "1080_47_95i", 10, 5, 3},
        {"720p 60Hz", "720_60p", 11, 1, 4},        {"720p 59.94Hz", "720_59_94p", 12, 2, 4},
        {"720p 50Hz", "720_50p", 13, 3, 4},        {"625i 50Hz", "625_50i", 14, 3, 5},
        {"525i 59.94Hz", "525_59_94i", 15, 2, 6},
    };
    unsigned value = 0, wire_values = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto x = static_cast<VideoStandard>(++value);
        wire_values |= 1u << row.wire_value;
        EXPECT_EQ(toString(x).to_string(), row.text);
        EXPECT_EQ(toVideoStandard(AString(row.text)), x);
        EXPECT_EQ(toVideoStandard(AString(row.wire)), 0u);
        EXPECT_EQ(to_kvrp3(x), static_cast<int>(row.wire_value));
        EXPECT_EQ(KVRP3::VideoStandard_to_string(to_kvrp3(x)).to_string(), row.wire);
        EXPECT_EQ(toVideoStandard(to_kvrp3(x)), x);
        EXPECT_EQ(toVideoFrequency(x), row.frequency);
        EXPECT_EQ(toVideoResolution(x), row.resolution);
        EXPECT_EQ(toVideoStandard(toVideoResolution(x), toVideoFrequency(x)), x);
    }
    for (int wire = -1; wire <= 16; ++wire)
        EXPECT_EQ(isValid(toVideoStandard(static_cast<KVRP3::VideoStandard>(wire))),
                  wire >= 0 && (wire_values >> wire & 1))
            << wire;
    EXPECT_EQ(toVideoStandard(VideoResolution_4K, VideoFrequency_48Hz), 0u);
    EXPECT_EQ(to_kvrp3(VideoStandard_invalid), KVRP3::VideoStandard_1080_59_94i);
    EXPECT_TRUE(toString(static_cast<VideoStandard>(14)).empty());
}

TEST(VideoStandard, rates_and_rasters_answer_for_invalid_values_too)
{
    const struct
    {
        const char* text;
        unsigned rough, fields;
        bool df;
    } rates[] = {{"", 0, 60, false},     {"60Hz", 1, 60, false}, {"59.94Hz", 1, 60, true},
                 {"50Hz", 2, 50, false}, {"48Hz", 3, 48, false}, {"47.95Hz", 3, 48, false},
                 {"", 0, 60, false}};
    for (unsigned value = 0; value != std::size(rates); ++value) {
        SCOPED_TRACE(value);
        const auto x = static_cast<VideoFrequency>(value);
        const bool valid = value != 0 && value != 6;
        EXPECT_EQ(toString(x).to_string(), rates[value].text);
        EXPECT_EQ(toVideoFrequency(toString(x)), valid ? value : 0);
        EXPECT_EQ(toVideoRoughFrequency(x), rates[value].rough);
        EXPECT_EQ(RoughFieldsPerSecond(x), rates[value].fields);
        EXPECT_EQ(hasDropframe(x), rates[value].df);
        EXPECT_EQ(defaultDropframeFlag(x), rates[value].df ? DropframeFlag_df : DropframeFlag_ndf);
        EXPECT_EQ(dropframeByVideoFrequency(x, DropframeFlag_df), defaultDropframeFlag(x));
        EXPECT_EQ(dropframeByVideoFrequency(x, DropframeFlag_ndf), DropframeFlag_ndf);
        EXPECT_EQ(dropframeByVideoFrequency(x, static_cast<DropframeFlag>(3)), 0u);
        EXPECT_EQ(to_kvrp3(x), valid ? static_cast<int>(value) - 1 : 1);
        EXPECT_EQ(toVideoFrequency(static_cast<KVRP3::VideoRate>(value - 1)), valid ? value : 0);
    }
    const struct
    {
        const char* text;
        unsigned width, frame, field;
        const char* is; ///< h(igh) or s(tandard definition), i(nterlaced), t(op field is field 1)
    } rasters[] = {{"", 0, 0, 0, "it"},
                   {"4K", 3840, 2160, 2160, "ht"},
                   {"1080p", 1920, 1080, 1080, "ht"},
                   {"1080i", 1920, 1080, 540, "hit"},
                   {"720p", 1280, 720, 720, "ht"},
                   {"625i", 720, 576, 288, "si"},
                   {"525i", 720, 486, 243, "sit"},
                   {"", 0, 0, 0, "it"}};
    for (unsigned value = 0; value != std::size(rasters); ++value) {
        const auto& row = rasters[value];
        SCOPED_TRACE(value);
        const auto x = static_cast<VideoResolution>(value);
        EXPECT_EQ(toString(x).to_string(), row.text);
        EXPECT_EQ(toVideoResolution(toString(x)), value == 7 ? 0 : value);
        EXPECT_EQ(width(x), row.width);
        EXPECT_EQ(frame_height(x), row.frame);
        EXPECT_EQ(field_height(x), row.field);
        EXPECT_EQ(pixels_per_frame(x), row.width * row.frame);
        EXPECT_EQ(pixels_per_field(x), row.width * row.field);
        const std::string is = std::string(isHighDefinition(x) ? "h" : "") +
                               (isStandardDefinition(x) ? "s" : "") + (isInterlaced(x) ? "i" : "") +
                               (top_field_is_f1(x) ? "t" : "");
        EXPECT_EQ(is, row.is);
        EXPECT_NE(isProgressive(x), isInterlaced(x));
        EXPECT_EQ(toVideoResolution(static_cast<KVRP3::VideoResolution>(value - 1)), value == 7 ? 0 : value);
    }
    // Standards pass on what their rates and rasters say.
    const VideoStandard pal = VideoStandard_625_50i;
    EXPECT_FALSE(top_field_is_f1(pal) || isHighDefinition(pal) || isProgressive(pal) || hasDropframe(pal));
    EXPECT_EQ(pixels_per_field(pal), 720u * 288);
    EXPECT_EQ(RoughFieldsPerSecond(pal), 50u);
    EXPECT_EQ(defaultDropframeFlag(VideoStandard_525_59_94i), DropframeFlag_df);
    EXPECT_EQ(dropframeByVideoStandard(pal, DropframeFlag_df), DropframeFlag_ndf);
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
