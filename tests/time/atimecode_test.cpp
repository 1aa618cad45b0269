// Fields, labels and texts: every field of a day, against labels that are counted one by one.
#include <skuan/time/atimecode_range.h>
#include <skuan/time/clip_timecode.h>
#include <skuan/time/time_meta_types.h>
#include <skuan/time/timecode_fields.h>

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>

using namespace Vantor;

namespace {

constexpr auto f50 = VideoFrequency_50Hz;
constexpr auto f59 = VideoFrequency_59_94Hz;
constexpr auto df = DropframeFlag_df;
constexpr auto ndf = DropframeFlag_ndf;

using Label = std::array<unsigned, 6>; // days, hours, minutes, seconds, frames, field

Label label_of(const ATimecode& t)
{
    return {t.get_days(), t.get_hours(), t.get_minutes(), t.get_seconds(), t.get_frames(), t.get_f2()};
}

/// Drop-frame by the book: two frames for each minute but the tenth.
unsigned frames_dropped(const Label& label)
{
    const unsigned minutes = 60 * label[1] + label[2];
    return 2 * (minutes - minutes / 10);
}

TEST(ATimecode, every_field_of_a_day_reads_as_its_label_and_back)
{
    VideoFrequency frequency;
    for (bool more = getfirst(frequency); more; more = getnext(frequency))
        for (const DropframeFlag flag : {df, ndf}) {
            SCOPED_TRACE(toString(frequency).to_string() + ' ' + toString(flag).to_string());
            const bool drops = hasDropframe(frequency) && flag == df;
            const unsigned frames = RoughFieldsPerSecond(frequency) / 2;
            const unsigned day = timecode_fields_per_day(frequency, flag);
            unsigned count = 0, bad = 0;
            Label label{};
            auto& [d, h, m, s, f, f2] = label;
            for (h = 0; h != 24; ++h)
                for (m = 0; m != 60; ++m)
                    for (s = 0; s != 60; ++s)
                        for (f = drops && s == 0 && m % 10 != 0 ? 2 : 0; f != frames; ++f)
                            for (f2 = 0; f2 != 2; ++f2, ++count) {
                                const ATimecode t(frequency, flag, count);
                                const unsigned by_the_book = 2 * ((3600 * h + 60 * m + s) * frames + f) + f2 -
                                                             (drops ? 2 * frames_dropped(label) : 0);
                                bad += label_of(t) != label || by_the_book != count ||
                                       ATimecode(frequency, flag, h, m, s, f, f2).get_nfields() != count;
                                if (count % 23 ==
                                    0) // two groups at least: one has no separator to show the field
                                    bad += ATimecode(frequency, flag, t.toString(2)).get_nfields() != count ||
                                           ATimecode(frequency, t.toString(4)).get_nfields() != count;
                            }
            EXPECT_EQ(bad, 0u);
            EXPECT_EQ(count, day);
            EXPECT_EQ(label_of(ATimecode(frequency, flag, 3 * day + 1)), (Label{3, 0, 0, 0, 0, 1}));
            EXPECT_EQ(timecode_numfields(frequency, flag, 2, 23, 59, 59, frames - 1, true), 3 * day - 1);
            EXPECT_EQ(ATimecode(frequency, flag, ~0u).get_days(), ~0u / day);
        }
}

TEST(ATimecode, constants_need_a_frequency_and_at_59_94_a_flag)
{
    const auto none = VideoFrequency_invalid;
    const auto no_flag = DropframeFlag_invalid;
    EXPECT_EQ(timecode_fields_per_second(none), 0u);
    EXPECT_EQ(timecode_fields_per_day(f59, no_flag), 0u);
    EXPECT_EQ(timecode_fields_per_hour(f59), 215784u);
    EXPECT_EQ(timecode_fields_per_minute(VideoFrequency_47_95Hz, no_flag), 2880u);
    EXPECT_EQ(timecode_numfields(f59, no_flag, 1, 0, 0, 0, 0, false), 0u);
    for (const ATimecode& t :
         {ATimecode(), ATimecode(none, 1), ATimecode(f50, no_flag, 1), ATimecode(none, AString("1")),
          ATimecode(none, 1, 0, 0, 0, false), ATimecode(KVRP3::Timecode()),
          ATimecode(f50, KVRP3::SmallTimecode()), ATimecode::from_sony(f50, nullptr)}) {
        EXPECT_TRUE(t.is_undefined() && t.is_ndf() && !t.is_df());
        EXPECT_EQ(label_of(t), Label{});
        EXPECT_TRUE(t.get_std() == 0 && t.get_df() == 0 && t.get_fields_per_day() == 0);
        EXPECT_EQ(t.toString(4).to_string(), "(invalid)");
        EXPECT_FALSE(t.to_kvrp3(VideoResolution_1080i).valid);
    }
}

// Here and below: what the page on timecode, which has a test of its own, does not show.
TEST(ATimecode, writes_the_groups_that_are_needed)
{
    const struct
    {
        ATimecode t;
        unsigned groups;
        const char* text;
    } rows[] = {
        {{f50, 0}, 0, "00"},
        {{f50, 1}, 9, "0+00:00:00:00"},
        {{f50, 51}, 1, "01:00"},
        {{f50, 3000}, 0, "01.00.00"},
        {{f50, df, 1}, 2, "00:00"},                   // df, which this rate cannot carry
        {{f59, 0, 1, 0, 0, false}, 4, "00,00,59,28"}, // left out, and not corrected
        {{f59, ndf, 3601}, 4, "00:01:00:00"},
        {{VideoFrequency_48Hz, 4320000}, 4, "1+01.00.00.00"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.t.toString(row.groups).to_string(), row.text);
}

TEST(ATimecode, reads_what_an_operator_types)
{
    const auto none = DropframeFlag_invalid;
    const std::string endless(100'000, '7');
    const struct
    {
        VideoFrequency frequency;
        DropframeFlag flag;
        std::string text;
        unsigned count;
        DropframeFlag read_as;
    } rows[] = {
        {f50, none, "", 0, ndf},
        {f50, df, "00.00.00.00", 0, ndf},
        {f50, none, "9.9.1.2.3.4", 180000 + 2 * 3000 + 3 * 50 + 2 * 4, ndf},
        {f50, none, "2..", 2 * 3000, ndf},
        {f50, none, "1:2.3:4", 180000 + 2 * 3000 + 3 * 50 + 8, ndf}, // mixed: field 1
        {f50, none, " x1y2 :z", 12 * 50 + 1, ndf},
        {f50, none, "-1\xD9\xA3", 2, ndf}, // other scripts' digits are none
        {f50, none, "4294967295.0", 4294967295u * 50, ndf},
        {f50, none, "4294967296.1", 2, ndf},
        {f50, none, endless + ".1", 2, ndf},
        {f59, none, "7", 14, df},
        {f59, none, "00;01;00;00", 3601, df},
        {f59, none, "00,01,00,01", 3600, df},
        {f59, none, "01.00.00", 3600, ndf},
        {f59, none, "00,01.00,00", 3600, df}, // mixed: the default
        {f59, df, "00:01:00:00", 3601, df},
        {f59, ndf, "00,01,00,00", 3600, ndf},
    };
    for (const auto& row : rows) {
        const ATimecode t(row.frequency, row.flag, AString(row.text));
        EXPECT_EQ(t.get_nfields(), row.count) << row.text.substr(0, 20);
        EXPECT_EQ(t.get_df(), row.read_as) << row.text.substr(0, 20);
    }
}

TEST(ATimecode, reads_servers_and_equipment)
{
    KVRP3::Timecode wire;
    wire.valid = true;
    wire.set_video_standard(KVRP3::VideoStandard_1080_59_94i);
    EXPECT_TRUE(ATimecode(wire).is_undefined());
    wire.set_position(-1);
    EXPECT_EQ(ATimecode(wire).get_df(), df);
    wire.set_drop_frame_flag(KVRP3::DropFrameFlag_ndf);
    EXPECT_EQ(ATimecode(wire).get_df(), ndf);
    EXPECT_EQ(ATimecode(wire).to_kvrp3(VideoResolution_1080i), wire);
    EXPECT_FALSE(ATimecode(f50, 1).to_kvrp3(VideoResolution_625i).has_drop_frame_flag);
    wire.set_video_standard(KVRP3::VideoStandard_625_50i);
    wire.set_drop_frame_flag(KVRP3::DropFrameFlag_df);
    EXPECT_EQ(ATimecode(wire).get_df(), df); // as it came
    wire.set_video_standard(KVRP3::VideoStandard_4K_60p);
    EXPECT_TRUE(ATimecode(wire).is_undefined());

    KVRP3::SmallTimecode small;
    small.set_position(7);
    small.set_drop_frame_flag(KVRP3::DropFrameFlag_df);
    EXPECT_EQ(ATimecode(f50, small).get_df(), ndf); // a flag where there is none is not looked at
    EXPECT_EQ(ATimecode(KVRP3::VideoRate_59_94, small).get_df(), df);
    EXPECT_EQ(ATimecode(KVRP3::VideoStandard_625_50i, small).get_nfields(), 7u);

    const unsigned char sony[] = {0x81, 2, 0x83, 0x44};
    EXPECT_EQ(label_of(ATimecode::from_sony(f59, sony)), (Label{0, 1, 2, 3, 4, 1}));
    EXPECT_TRUE(ATimecode::from_sony(f59, sony).is_df() && ATimecode::from_sony(f50, sony).is_ndf());
    const unsigned char hours_flagged[] = {0x81, 2, 3, 4};
    EXPECT_TRUE(ATimecode::from_sony(f50, hours_flagged).get_f2());
    EXPECT_FALSE(ATimecode::from_sony(f59, hours_flagged).get_f2() ||
                 ATimecode::from_sony(f59, hours_flagged).is_df());
    const unsigned char tc64[] = {0xF7, 0xF1, 0x02, 0x10, 0x03, 0x80, 0x04, 0x41};
    EXPECT_EQ(label_of(ATimecode::from_tc64(f59, tc64)), (Label{0, 23, 2, 3, 20, 0}));
    const unsigned char ones[] = {255, 255, 255, 255, 255, 255, 255, 255};
    EXPECT_TRUE(ATimecode::from_tc64(f59, ones).is_undefined());
}

TEST(ATimecode, compares_by_count_and_on_the_circle)
{
    const ATimecode none, a(f50, 100), b(f59, 100), late(f50, 4320000 - 50);
    EXPECT_TRUE(a == b && none == ATimecode() && none != a && a < none && none > a && a <= b && late > a);
    EXPECT_EQ(none.cmp(a), 1);
    EXPECT_EQ(ATimecode::cmp(a, none), -1);
    EXPECT_EQ(none.cmp24(a), 1);
    EXPECT_EQ(late.cmp24(a), -1); // a minute to midnight, and one after
    EXPECT_EQ(ATimecode::cmp24(a, late), 1);
    EXPECT_EQ(a.cmp24(a + 4320000), 0);
    EXPECT_EQ(a.cmp24(a + 2160000), 1); // just half a day, either way
    EXPECT_EQ((a + 2160000).cmp24(a), 1);
    EXPECT_EQ((a + 2160001).cmp24(a), -1);
}

TEST(ATimecode, adds_and_subtracts_each_in_its_way)
{
    const ATimecode none, ten(f50, 10), day(f50, 4320000);
    EXPECT_EQ((ten - 20).get_nfields(), 0u);
    EXPECT_EQ((day + day).get_days(), 2u);
    EXPECT_TRUE((ten + none).is_undefined() && (ten - none).is_undefined() && (none + 5).is_undefined());
    const struct
    {
        unsigned from, subtracted;
        bool wrap;
        unsigned result;
    } rows[] = {
        {10, 20, false, 4294967286u},      {10, 20, true, 4319990},
        {4320010, 20, true, 4319990}, // no more than there is: the days stay
        {4320010, 4320020, true, 4319990}, {4320010, 2 * 4320000 + 5, true, 5},
    };
    for (const auto& row : rows) {
        ATimecode t(f50, row.from);
        t.subtract(ATimecode(f59, row.subtracted), row.wrap);
        EXPECT_EQ(t.get_nfields(), row.result) << row.from << " - " << row.subtracted;
    }
    EXPECT_EQ(ATimecode::add24(day, ten).get_nfields(), 10u);
    EXPECT_EQ(ATimecode::sub24(ten, 20).get_nfields(), 4319990u);
    EXPECT_EQ(day.get24().get_nfields(), 0u);
    EXPECT_EQ(ATimecode(f59, ndf, 5178816).get24().get_nfields(), 5178816u);
    EXPECT_EQ(ATimecode(f59, 9).t24().get_nfields(), 5178816u);
}

// What has been read stays until the count changes, also under another flag.
TEST(ATimecode, flags_and_fields_are_set_beside_the_label)
{
    ATimecode t(f59, ndf, 3600);
    EXPECT_EQ(label_of(t), (Label{0, 0, 1, 0, 0, 0}));
    t.set_df();
    EXPECT_TRUE(t.is_df());
    EXPECT_EQ(label_of(t), (Label{0, 0, 1, 0, 0, 0}));
    t.force_f2();
    t.force_field(true);
    EXPECT_EQ(t.get_nfields(), 3601u);
    EXPECT_EQ(label_of(t), (Label{0, 0, 1, 0, 0, 1}));
    ATimecode wrapped = t;
    wrapped.wrap24(); // counts what it reads
    EXPECT_EQ(wrapped.get_nfields(), 3597u);
    t.force_f1();
    ++t;
    EXPECT_EQ(label_of(t), (Label{0, 0, 1, 0, 2, 1}));
    t.set_df(DropframeFlag_invalid);
    EXPECT_TRUE(t.is_df());
    ATimecode pal(f50, 1);
    pal.set_df();
    EXPECT_TRUE(pal.is_ndf());
    ATimecode none;
    none.set_nfields(5);
    none.force_f2();
    EXPECT_EQ(label_of(none), Label{});
}

TEST(ATimecodeRange, lies_on_the_line_and_on_the_circle)
{
    const auto at = [](unsigned count) { return ATimecode(f50, count); };
    constexpr unsigned day = 4320000;
    EXPECT_TRUE(at(15).is_inrange(at(10), at(6)) && !at(16).is_inrange(at(10), at(6)));
    for (const ATimecode& t : {at(day - 5), at(4), at(5), at(day)})
        EXPECT_EQ(t.is_inrange24(at(2 * day - 5), at(10)), t != at(5) && t != at(day));
    EXPECT_FALSE(at(1).is_inrange24(at(0), ATimecode()));

    const ATimecodeRange one(at(7), 1), none(at(7), 0), night(at(day - 10), 20), undefined;
    EXPECT_EQ(one.get_last(), at(7));
    EXPECT_TRUE(none.get_last().is_undefined() && none.valid_range() && !none.nonzero_range());
    EXPECT_EQ(none.get_next(), none.get_start());
    EXPECT_FALSE(ATimecodeRange::in_out(at(10), at(5)).nonzero_range());
    EXPECT_EQ(ATimecodeRange::in_out(at(5), at(12)).get_duration(), 7u);
    EXPECT_EQ(ATimecodeRange::start_duration(at(5), ATimecode()).get_duration(), 0u);
    EXPECT_EQ(night.get_last24(), at(9));
    EXPECT_EQ(night.get_next24(), at(10));

    EXPECT_TRUE(one.contains(at(99))); // it does not look where, and is meant not to
    EXPECT_FALSE(one.contains(ATimecode()) || none.contains(at(7)) || undefined.contains(at(7)));
    EXPECT_TRUE(night.contains24(at(day - 10)) && night.contains24(at(9)) && !night.contains24(at(10)));
    EXPECT_TRUE(ATimecodeRange(at(7), day).contains24(at(6)) && !one.contains24(at(6)));
    EXPECT_EQ(ATimecodeRange(at(7), 5).clip_to_range(at(3)), at(7));
    EXPECT_EQ(ATimecodeRange(at(7), 5).clip_to_range(at(12)), at(11));
    EXPECT_TRUE(none.clip_to_range(at(7)).is_undefined() && none.clip_to_range24(at(7)).is_undefined());
    EXPECT_EQ(night.clip_to_range24(at(day + 3)), at(day + 3));
    EXPECT_EQ(night.clip_to_range24(at(100)), at(9));
    EXPECT_EQ(night.clip_to_range24(at(day - 60)), at(day - 10));
    EXPECT_EQ(ATimecodeRange(at(100), 2).clip_to_range24(at(101 + (day - 1) / 2)), at(101));
    EXPECT_EQ(ATimecodeRange(at(100), 3).clip_to_range24(at(101 + day / 2)), at(100)); // a tie
}

TEST(ClipTimecode, follows_the_clips_source)
{
    KVRP3::ClipInfo clip;
    clip.clip_length = 50;
    clip.video_standard = KVRP3::VideoStandard_1080_50i;
    clip.stripe_timecode.valid = true;
    clip.stripe_timecode.set_video_standard(KVRP3::VideoStandard_1080_50i);
    clip.stripe_timecode.set_position(1000);
    const auto starts = [&] {
        std::string result;
        for (int source = 0; source != 5; ++source) {
            clip.timecode_source = static_cast<KVRP3::TimecodeSource>(source);
            result += start_timecode(clip).toString(1).to_string() + ' ';
        }
        return result;
    };
    EXPECT_EQ(starts(), "00 20.00 00 00 (invalid) ");
    clip.frame0_timecode.set_position(2000);
    clip.has_frame0_timecode = true;
    EXPECT_EQ(starts(), "00 20.00 40.00 40.00 (invalid) ");
    clip.timecode_source = KVRP3::TimecodeSource_striped;
    EXPECT_EQ(duration_timecode(clip).get_nfields(), 1050u);
    EXPECT_EQ(QMetaType::type("Vantor::ATimecode"), qMetaTypeId<ATimecode>());
}

} // namespace
