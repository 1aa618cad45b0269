// Moments and spans of time on a clock that never goes back.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>

#include <cstdint>
#include <string>

/// A moment, a duration (of either sign), or the bad time, which is what comes of anything that makes no
/// sense. Moments compare with moments only, and durations with durations. To a nanosecond; spans end at 292
/// years. A plain value: any thread.
class SKUAN_EXPORT HRTime
{
public:
    static const HRTime BadTime;

    constexpr HRTime() = default; ///< the bad time
    static HRTime now();

    // Durations.

    static HRTime days(std::int64_t n);
    static HRTime hours(std::int64_t n);
    static HRTime minutes(std::int64_t n);
    static HRTime seconds(std::int64_t n);
    static HRTime mseconds(std::int64_t n);
    static HRTime useconds(std::int64_t n);

    bool is_badtime() const { return moment_ && ticks_ == 0; }
    bool is_actual_time() const { return moment_ && ticks_ != 0; }
    bool is_duration() const { return !moment_; }

    // A moment and a duration give a moment, two durations a duration, and the difference of two moments is a
    // duration. The bad time comes of everything else.

    HRTime operator+(HRTime other) const;
    HRTime operator-(HRTime other) const;
    HRTime& operator+=(HRTime other) { return *this = *this + other; }
    HRTime& operator-=(HRTime other) { return *this = *this - other; }

    // Of durations. The bad time comes of anything else, and of a division by 0.

    HRTime operator*(std::int64_t n) const;
    HRTime operator/(std::int64_t n) const;
    HRTime& operator*=(std::int64_t n) { return *this = *this * n; }
    HRTime& operator/=(std::int64_t n) { return *this = *this / n; }

    /// How often `other` goes into this, towards 0; 0 for the bad time, different kinds and a division by 0.
    std::int64_t operator/(HRTime other) const;

    /// The bad time is less than everything else. A comparison of different kinds is reported; a duration
    /// then is the lesser.
    friend SKUAN_EXPORT bool operator<(HRTime a, HRTime b);
    friend bool operator>(HRTime a, HRTime b) { return b < a; }
    friend bool operator<=(HRTime a, HRTime b) { return !(b < a); }
    friend bool operator>=(HRTime a, HRTime b) { return !(a < b); }
    friend bool operator==(HRTime a, HRTime b) { return !(a < b) && !(b < a); }
    friend bool operator!=(HRTime a, HRTime b) { return !(a == b); }

    /// "1+02:03:04.005" is one day, two hours, three minutes, four seconds and five milliseconds; what is 0
    /// in front is left out down to the seconds, as in "0.250". "<bad time>" for that.
    AString to_astring() const;
    std::string to_string() const;

private:
    constexpr HRTime(bool moment, std::int64_t ticks) : moment_(moment), ticks_(ticks) {}

    bool moment_ = true;
    std::int64_t ticks_ = 0; ///< nanoseconds
};

/// A moment that can be asked whether it has passed: HRTimeout(HRTime::now() + HRTime::mseconds(50)).
class SKUAN_EXPORT HRTimeout
{
public:
    explicit HRTimeout(HRTime moment) : moment_(moment) {}
    /// The bad time has always passed.
    bool timeout_expired() const { return moment_ < HRTime::now(); }

private:
    HRTime moment_;
};
