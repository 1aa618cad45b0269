// Keeps a counter running between the reports of it, so that a display follows a timecode smoothly.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/hr_time.h>

#include <climits>
#include <cstdint>

/// Takes samples of a value that advances steadily, and tells at any time what the value is by now. A sample
/// that does not follow from the one before does not move it at once: only when the samples have agreed with
/// one another for `threshold` does it trust them, and then it runs on by itself for `hold` after the last
/// one.
///
/// Times are in ticks of 1/60 s; speeds are what the value gains in a tick, 65536 for 1. For one thread.
class SKUAN_EXPORT AFlyWheel
{
public:
    /// Counts down, at one a tick.
    AFlyWheel() = default;
    AFlyWheel(unsigned threshold, unsigned hold) : threshold_(threshold), hold_(hold) {}

    /// The value is `value` now. A sample follows from the one before if it is less than 20 off.
    void set_value(int value);

    /// Within the limits: what the value has come to, or, when samples do not agree or have not come for too
    /// long, the last sample. Without any, 0.
    int get_value() const;

    /// Forgets all samples.
    void clear();

    /// Samples will not come or not be right for a while: if the value is running, let it run on for `hold`
    /// from now, whatever samples say. Those from before are forgotten.
    void flywheel_longer();

    void set_count_up() { set_count_speed(65536); }
    void set_count_down() { set_count_speed(-65536); }
    void set_count_speed(int speed) { speed_ = speed; }
    int get_count_speed() const { return speed_; }

    // The limits are within the range of int at first. If they contradict each other, the minimum holds.

    void set_min_value(int value) { min_value_ = value; }
    int get_min_value() const { return min_value_; }
    void set_max_value(int value) { max_value_ = value; }
    int get_max_value() const { return max_value_; }

private:
    struct Measurement
    {
        int value = 0;
        HRTime time;

        bool is_valid() const { return !time.is_badtime(); }
    };

    std::int64_t extrapolate(const Measurement& from) const;
    bool is_sequential(const Measurement& a, const Measurement& b) const;
    bool is_held() const;
    bool is_active() const;
    std::int64_t raw_value() const;
    void end_sequence();

    unsigned threshold_ = 10; ///< for which samples must have agreed
    HRTime sequence_start_;   ///< bad while no samples have come
    Measurement sequence_last_;
    unsigned hold_ = 10;
    Measurement flywheel_; ///< from which the value runs on
    HRTime hold_start_;
    int speed_ = -65536;
    int min_value_ = INT_MIN;
    int max_value_ = INT_MAX;
};
