// Time values, and the clock that a test owns.
#include <skuan/foundation/hr_clock_p.h>
#include <skuan/foundation/hr_time.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

constexpr auto most = std::numeric_limits<std::int64_t>::max();

TEST(HRTime, makes_moments_durations_and_nonsense)
{
    const HRTime bad, moment = HRTime::now(), span = HRTime::seconds(1);
    EXPECT_TRUE(bad.is_badtime() && !bad.is_actual_time() && !bad.is_duration());
    EXPECT_TRUE(moment.is_actual_time() && (moment + span).is_actual_time() &&
                (span + moment).is_actual_time());
    EXPECT_TRUE((moment - moment).is_duration() && (moment - span).is_actual_time());
    for (const HRTime& nonsense : {bad + span, moment + moment, span - moment, moment * 2, moment / 2,
                                   span / 0, bad - bad, HRTime::BadTime * 1})
        EXPECT_TRUE(nonsense.is_badtime());
    EXPECT_EQ(HRTime::mseconds(1500), span + HRTime::mseconds(500));
    EXPECT_EQ(HRTime::useconds(-3) * -2, HRTime::useconds(6));
    EXPECT_EQ(HRTime::days(1) / HRTime::hours(5), 4);
    EXPECT_EQ(moment / span + span / bad + bad / bad + span / HRTime::seconds(0), 0);
    EXPECT_EQ(HRTime::days(-most) / -1, HRTime::days(most)); // stopped at both ends
    EXPECT_EQ(HRTime::days(most) + span, HRTime::days(most));
    EXPECT_EQ(HRTime::days(-most) - span, HRTime::days(-most));
}

TEST(HRTime, compares_like_with_like)
{
    const HRTime bad, moment = HRTime::now(), span = HRTime::seconds(1);
    EXPECT_TRUE(bad < span && bad < moment && !(bad < HRTime()) && bad == HRTime() && !(span < bad));
    EXPECT_TRUE(HRTime::seconds(-1) < span && moment < moment + span && moment <= moment);
    EXPECT_TRUE(span < moment && !(moment < span) && span != moment); // of different kinds, and reported
}

TEST(HRTime, is_written_from_its_first_part_on)
{
    const struct
    {
        HRTime time;
        const char* text;
    } rows[] = {
        {{}, "<bad time>"},
        {HRTime::seconds(0), "0.000"},
        {HRTime::mseconds(-250), "-0.250"},
        {HRTime::useconds(61'001'999), "1:01.001"},
        {HRTime::hours(2) + HRTime::seconds(3), "2:00:03.000"},
        {HRTime::days(12) + HRTime::minutes(5), "12+00:05:00.000"},
        {HRTime::days(-most), "-106751+23:47:16.854"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.time.to_string(), row.text);
}

TEST(HRTimeout, passes_when_the_clock_does)
{
    static std::int64_t ns = 1'000;
    const auto machine = skuan::hr_clock.exchange([] { return ns; });
    const HRTimeout timeout(HRTime::now() + HRTime::useconds(1));
    ns += 1'000;
    EXPECT_FALSE(timeout.timeout_expired());
    ns += 1;
    EXPECT_TRUE(timeout.timeout_expired());
    EXPECT_TRUE(HRTimeout(HRTime()).timeout_expired());
    skuan::hr_clock = machine;
}

} // namespace
