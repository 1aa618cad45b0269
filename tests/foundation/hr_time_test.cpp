#include <skuan/foundation/hr_time.h>

#include <support/hand_clock.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

TEST(HRTime, keeps_moments_and_spans_apart)
{
    const HRTimeout soon(HRTime::now() + HRTime::useconds(50)); // by the clock of the machine
    while (!soon.timeout_expired()) {
    }
    support::HandClock clock(1'000'000'000);
    const HRTime bad, span = HRTime::seconds(2), moment = HRTime::now();
    clock.advance(500'000'000);
    const HRTime later = HRTime::now();
    EXPECT_TRUE(bad.is_badtime() && span.is_duration() && moment.is_actual_time());
    EXPECT_FALSE(bad.is_actual_time() || bad.is_duration() || span.is_actual_time() || moment.is_duration());

    const HRTime bads[] = {bad + span, span + bad, bad - moment, moment - bad, moment + moment, span - moment,
                           moment * 2, moment / 2, bad * 2,      span / 0,     HRTime::BadTime};
    for (const HRTime& time : bads)
        EXPECT_TRUE(time.is_badtime()) << &time - bads;
    EXPECT_EQ(later - moment, HRTime::mseconds(500));
    EXPECT_EQ(moment + HRTime::mseconds(500), later);
    EXPECT_EQ(HRTime::mseconds(500) + moment, later);
    EXPECT_EQ(later - HRTime::mseconds(500), moment);
    EXPECT_EQ(span - HRTime::seconds(3), HRTime::seconds(-1));

    EXPECT_EQ(span / HRTime::mseconds(300), 6);
    EXPECT_EQ(later / moment, 500'000'001); // of one kind
    for (const std::int64_t none : {bad / span, moment / span, span / moment, span / HRTime::seconds(0)})
        EXPECT_EQ(none, 0);

    // Bad, spans, moments: one order over all.
    const std::vector<HRTime> order = {bad, HRTime::seconds(-1), HRTime::seconds(0), span, moment, later};
    for (std::size_t i = 0; i != order.size(); ++i)
        for (std::size_t j = 0; j != order.size(); ++j) {
            EXPECT_EQ(order[i] < order[j], i < j) << i << ' ' << j;
            EXPECT_EQ(order[i] >= order[j], i >= j) << i << ' ' << j;
            EXPECT_EQ(order[i] == order[j], i == j) << i << ' ' << j;
        }

    const HRTimeout timeout(later + span);
    EXPECT_TRUE(HRTimeout(moment).timeout_expired() && HRTimeout(bad).timeout_expired());
    clock.advance(2'000'000'000);
    EXPECT_FALSE(timeout.timeout_expired()); // not yet past it
    clock.advance(1);
    EXPECT_TRUE(timeout.timeout_expired());
}

TEST(HRTime, makes_spans_without_loss_and_stops_at_the_limits)
{
    for (const std::int64_t frequency : {1'000'000'000, 14'318'180}) {
        const support::HandClock clock(frequency);
        EXPECT_EQ(HRTime::mseconds(1500), HRTime::seconds(1) + HRTime::mseconds(500));
        EXPECT_EQ(HRTime::useconds(-2'500'000), HRTime::seconds(-2) - HRTime::mseconds(500));
        EXPECT_EQ(HRTime::mseconds(100'000'000'000) / HRTime::days(1), 1157);
        EXPECT_EQ(HRTime::minutes(120), HRTime::hours(2));
        const HRTime longest = HRTime::days(INT64_MAX), lowest = HRTime::days(INT64_MIN);
        EXPECT_EQ(longest, HRTime::now() + longest - HRTime::now() + longest);
        EXPECT_EQ(lowest, lowest - longest);
        EXPECT_EQ(longest, lowest * -1);
        EXPECT_EQ(longest, lowest / -1);
        EXPECT_EQ(longest / HRTime::useconds(1), INT64_MAX / (frequency / 1'000'000));
        EXPECT_FALSE(lowest.to_string().empty());
    }
}

TEST(HRTime, is_written_from_its_largest_unit_on)
{
    support::HandClock clock(1'000'000);
    const std::pair<HRTime, const char*> rows[] = {
        {HRTime(), "<bad time>"},
        {HRTime::useconds(999), "0.000"},
        {HRTime::mseconds(59'999), "59.999"},
        {HRTime::mseconds(-61'500), "-1:01.500"},
        {HRTime::hours(1), "1:00:00.000"},
        {HRTime::days(1), "1+00:00:00.000"},
        {HRTime::hours(24 * 400 + 5) + HRTime::mseconds(83'007), "400+05:01:23.007"},
    };
    for (const auto& [time, text] : rows)
        EXPECT_EQ(time.to_string(), text);
    clock.advance(2'999'999);
    EXPECT_EQ(HRTime::now().to_astring(), AString("3.000"));

    const support::HandClock none(0);
    EXPECT_TRUE(HRTime::now().is_badtime());
    EXPECT_EQ(HRTime::seconds(1).to_string(), "<hr time not initialized>");
}

} // namespace
