#include <skuan/foundation/afly_wheel.h>

#include <support/hand_clock.h>

#include <gtest/gtest.h>

#include <climits>

namespace {

/// Time in ticks of 1/60 s.
class FlyWheel : public testing::Test
{
protected:
    support::HandClock clock{60};
    AFlyWheel wheel;

    /// Steady samples, one every `apart` ticks, for `ticks`; gives the last one.
    int run(int from, int speed, int ticks, int apart = 1)
    {
        for (int t = 0;; t += apart, clock.advance(apart)) {
            wheel.set_value(from + t * speed);
            if (t >= ticks)
                return from + t * speed;
        }
    }
};

TEST_F(FlyWheel, trusts_samples_that_have_agreed_and_runs_on_after_the_last)
{
    EXPECT_EQ(wheel.get_value(), 0);
    wheel.set_value(-700);
    clock.advance(5);
    EXPECT_EQ(wheel.get_value(), -700); // one sample does not run

    for (const int speed : {-1, 1, 2}) {
        wheel.clear();
        EXPECT_EQ(wheel.get_value(), 0);
        wheel.set_count_speed(speed * 65536);
        int last = run(1000, speed, 9);
        clock.advance(1);
        EXPECT_EQ(wheel.get_value(), last); // not long enough yet
        last = run(1000 + 10 * speed, speed, 36, 12);
        for (int t = 0; t <= 10; ++t, clock.advance(1))
            EXPECT_EQ(wheel.get_value(), last + t * speed) << speed << ' ' << t;
        EXPECT_EQ(wheel.get_value(), last); // the hold is over
    }
}

TEST_F(FlyWheel, lets_no_jump_through_before_its_samples_agree)
{
    wheel.set_count_up();
    int last = run(0, 1, 20);
    wheel.set_value(last + 19); // follows still
    EXPECT_EQ(wheel.get_value(), last + 19);
    wheel.set_value(last); // and so does the way back
    wheel.set_value(last + 20);
    EXPECT_EQ(wheel.get_value(), last);
    clock.advance(1);
    last = run(5000, 1, 9);
    EXPECT_EQ(wheel.get_value(), 30); // from 20, on since 10 ticks
    clock.advance(1);
    wheel.set_value(last + 1);
    EXPECT_EQ(wheel.get_value(), last + 1);
    clock.advance(24 * 3600 * 60); // a whole day is not no time
    EXPECT_EQ(wheel.get_value(), last + 1);
}

TEST_F(FlyWheel, runs_on_when_told_to_whatever_samples_say)
{
    wheel = AFlyWheel(0, 30);
    wheel.flywheel_longer(); // is not running
    wheel.set_count_up();
    wheel.set_value(100); // no threshold: at once
    clock.advance(25);
    wheel.flywheel_longer();
    for (int t = 0; t < 30; ++t, clock.advance(1)) {
        wheel.set_value(9000 + t);
        ASSERT_EQ(wheel.get_value(), 125 + t);
    }
    wheel.set_value(9030);
    EXPECT_EQ(wheel.get_value(), 9030);
    clock.advance(30);
    wheel.flywheel_longer();
    clock.advance(31);
    EXPECT_EQ(wheel.get_value(), 0); // its sample has gone with the sequence
}

TEST_F(FlyWheel, keeps_to_its_limits)
{
    wheel = AFlyWheel(0, UINT_MAX);
    wheel.set_count_speed(INT_MAX);
    wheel.set_value(INT_MAX);
    clock.advance(INT64_MAX / 2);
    EXPECT_EQ(wheel.get_value(), INT_MAX);
    wheel.set_max_value(50);
    EXPECT_EQ(wheel.get_value(), 50);
    wheel.set_min_value(60);
    EXPECT_EQ(wheel.get_value(), 60);

    wheel = AFlyWheel(0, 10);
    wheel.set_count_speed(-32768); // half a tick, to the nearest
    wheel.set_value(40);
    for (const int value : {40, 39, 39, 38, 38}) {
        clock.advance(1);
        EXPECT_EQ(wheel.get_value(), value);
    }
}

} // namespace
