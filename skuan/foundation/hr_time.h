// Moments and spans on a clock that only ever goes forward, for measuring and for time limits.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>

#include <cstdint>
#include <string>

/// A moment, a span of time, or the bad time, which is neither. A moment only means something within the run
/// of the program that took it.
///
/// Nothing here fails but by giving the bad time, and what is made of a bad time is bad. A result that no
/// count of ticks can hold is the longest one that can be held, some centuries. A value: any thread.
class SKUAN_EXPORT HRTime
{
public:
    static const HRTime BadTime;

    /// The bad time.
    constexpr HRTime() = default;

    static HRTime now();

    // Spans. Fractions are cut off to whole ticks, which are nanoseconds or close to it.

    static HRTime useconds(std::int64_t n);
    static HRTime mseconds(std::int64_t n);
    static HRTime seconds(std::int64_t n);
    static HRTime minutes(std::int64_t n) { return seconds(n) * 60; }
    static HRTime hours(std::int64_t n) { return seconds(n) * 3600; }
    static HRTime days(std::int64_t n) { return seconds(n) * 86400; }

    bool is_badtime() const { return is_actual_time_ && ticks_ == 0; }
    bool is_actual_time() const { return is_actual_time_ && ticks_ != 0; } ///< a moment
    bool is_duration() const { return !is_actual_time_; }

    // A sum may have one moment. A moment can be taken from a moment, which leaves a span, but from no span.

    friend SKUAN_EXPORT HRTime operator+(HRTime a, HRTime b);
    friend SKUAN_EXPORT HRTime operator-(HRTime a, HRTime b);

    // Of spans only; by 0: bad.

    friend SKUAN_EXPORT HRTime operator*(HRTime a, std::int64_t n);
    friend SKUAN_EXPORT HRTime operator/(HRTime a, std::int64_t n);
    /// How many times `b` goes into `a`, cut to a whole number. 0 if that has no answer: by 0, by another
    /// kind of time, with a bad time.
    friend SKUAN_EXPORT std::int64_t operator/(HRTime a, HRTime b);

    HRTime& operator+=(HRTime other) { return *this = *this + other; }
    HRTime& operator-=(HRTime other) { return *this = *this - other; }
    HRTime& operator*=(std::int64_t n) { return *this = *this * n; }
    HRTime& operator/=(std::int64_t n) { return *this = *this / n; }

    // The bad time stands before all others and equals itself. To compare a moment with a span is reported;
    // the span stands before the moment.

    friend SKUAN_EXPORT bool operator<(HRTime a, HRTime b);
    friend bool operator>(HRTime a, HRTime b) { return b < a; }
    friend bool operator<=(HRTime a, HRTime b) { return !(b < a); }
    friend bool operator>=(HRTime a, HRTime b) { return !(a < b); }
    friend bool operator==(HRTime a, HRTime b) { return !(a < b) && !(b < a); }
    friend bool operator!=(HRTime a, HRTime b) { return !(a == b); }

    /// As in "1+02:03:04.005" (a day and two hours), "-3:04.005" and "0.005", from the largest unit that is
    /// needed down to milliseconds; a moment as the span since the clock began. Or "<bad time>".
    AString to_astring() const;
    std::string to_string() const;

private:
    constexpr HRTime(bool is_actual_time, std::int64_t ticks) : is_actual_time_(is_actual_time), ticks_(ticks)
    {
    }

    bool is_actual_time_ = true;
    std::int64_t ticks_ = 0;
};

/// A time limit: HRTimeout limit(HRTime::now() + HRTime::mseconds(200)). A value: any thread.
class HRTimeout
{
public:
    /// Expires after that moment. A bad time has expired; so has a span, which is reported.
    HRTimeout(HRTime moment) : moment_(moment) {}

    bool timeout_expired() const { return moment_ < HRTime::now(); }

private:
    HRTime moment_;
};
static_assert(sizeof(HRTime) == 16 && sizeof(HRTimeout) == sizeof(HRTime));
