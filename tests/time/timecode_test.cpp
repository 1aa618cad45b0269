// The older kind: what it has in common with the newer one, and where it is meant to differ.
#include <skuan/time/atimecode.h>
#include <skuan/time/timecode.h>

#include <gtest/gtest.h>

namespace {

std::string text(const Timecode& t)
{
    return t.to_string(5) + (t.get_f2() ? " f2" : " f1");
}

TEST(Timecode, reads_as_the_newer_kind_except_at_48)
{
    const Vantor::VideoFrequency frequencies[] = {Vantor::VideoFrequency_60Hz, Vantor::VideoFrequency_59_94Hz,
                                                  Vantor::VideoFrequency_50Hz, Vantor::VideoFrequency_50Hz,
                                                  Vantor::VideoFrequency_50Hz};
    for (unsigned rate = 0; rate != 5; ++rate)
        for (const bool df : {false, true}) {
            SCOPED_TRACE(testing::Message() << rate << ' ' << df);
            const auto flag = df ? Vantor::DropframeFlag_df : Vantor::DropframeFlag_ndf;
            unsigned bad = 0;
            for (unsigned count = 0; count < 11'000'000; count += 29) {
                const Timecode old(static_cast<Timecode::Rate>(rate), df, count);
                const Vantor::ATimecode t(frequencies[rate], flag, count);
                bad += old.get_days() != t.get_days() || old.get_hours() != t.get_hours() ||
                       old.get_minutes() != t.get_minutes() || old.get_seconds() != t.get_seconds() ||
                       old.get_frames() != t.get_frames() || old.get_f2() != t.get_f2();
            }
            EXPECT_EQ(bad, 0u);
        }
    // The shorter spans of 48 are its own, and so is what they make of a label.
    EXPECT_EQ(Timecode::fields_per_day(Timecode::Rate_47_95, false), 4320000u);
    EXPECT_EQ(Timecode::fields_per_hour(Timecode::Rate_48, false), 172800u);
    EXPECT_EQ(Timecode::to_fields(Timecode::Rate_48, true, true, 1, 12, 3, 4), 207513u);
    EXPECT_EQ(Timecode::to_fields(Timecode::Rate_59_94, true, false, 0, 11, 0, 2), 35964u + 3600);
    Timecode day(Timecode::Rate_48, 4320000);
    EXPECT_EQ(text(day), "1+00.00.00.00 f1");
    day.wrap24();
    EXPECT_EQ(day.get_nfields(), 0u);
}

TEST(Timecode, takes_any_rate_and_no_flag_but_at_59_94)
{
    EXPECT_TRUE(Timecode(Timecode::Rate_59_94, 0).is_df() && Timecode(Timecode::Rate_50, true, 0).is_ndf());
    const Timecode strange(static_cast<Timecode::Rate>(9), 3600);
    EXPECT_TRUE(strange.is_defined() && strange.is_df() && strange.get_std() == 9);
    EXPECT_EQ(strange.get_fields_per_second(), 60u);
    EXPECT_EQ(strange.to_string(4), "00,01,00,02");
}

TEST(Timecode, compares_by_rate_before_count)
{
    const Timecode none, a(Timecode::Rate_60, 9), b(Timecode::Rate_50, 1), c(Timecode::Rate_50, 2);
    EXPECT_TRUE(none < a && a < b && b < c && c > none && none == Timecode() && a != b);
    EXPECT_TRUE(Timecode(Timecode::Rate_59_94, true, 5) == Timecode(Timecode::Rate_59_94, false, 5));
}

TEST(Timecode, calculates_and_writes_in_its_own_way)
{
    Timecode t(Timecode::Rate_50, 10);
    t.subtract(20, false);
    EXPECT_EQ(t.get_nfields(), 4294967286u);
    const struct
    {
        unsigned from, subtracted, result;
    } rows[] = {{4320010, 5, 5}, {10, 20, 4319990}, {10, 4320020, 4319990}, {4320010, 4320005, 5}};
    for (const auto& row : rows) {
        t.set_nfields(row.from);
        t.subtract(Timecode(Timecode::Rate_60, row.subtracted), true);
        EXPECT_EQ(t.get_nfields(), row.result) << row.from << " - " << row.subtracted;
    }
    t.set_nfields(0);
    EXPECT_EQ(t.to_string(0), "");
    EXPECT_EQ((t + 3).to_string(0), "01"); // its frames are not 0
    EXPECT_EQ((t + 1).to_string(0), "");
    EXPECT_EQ((t + 51).to_string(0), "01:00");
    ++t;
    EXPECT_EQ(t.to_astring(9).to_string(), "0+00:00:00:00");

    t.subtract(Timecode(), true);
    EXPECT_TRUE(t.is_undefined() && t.get_std() == Timecode::Rate_59_94 && t.is_ndf());
    EXPECT_TRUE((Timecode(Timecode::Rate_50, 1) + Timecode()).is_undefined());
    t += 5;
    t.set_nfields(5);
    EXPECT_EQ(t.get_nfields() + t.get_hours() + t.get_f2() + t.get_fields_per_day(), 0u);
    EXPECT_EQ(t.to_string(4), "");
}

} // namespace
