// The older kind of timecode. New code takes Vantor::ATimecode; this one stays as programs know it.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>
#include <skuan/time/timecode_reading.h>

#include <string>

/// As Vantor::ATimecode a count of fields, or undefined, and a plain value for one thread at a time. What is
/// different is meant to be:
///
/// - 48 and 47.95 Hz are read, and have a day, as if they had 50 fields a second, while the fields of an hour
///   and less, and `to_fields`, are those of 48;
/// - df is a bool, which counts at 59.94 Hz only, and what makes a value never makes it undefined;
/// - values are compared by whether they are defined, then by rate, then by count;
/// - asking an undefined value for its label is reported;
/// - subtracting with `wrap` always removes whole days;
/// - a text may be empty, and an undefined value has no text.
class SKUAN_EXPORT Timecode
{
public:
    enum Rate : unsigned { Rate_60, Rate_59_94, Rate_50, Rate_48, Rate_47_95 };

    Timecode() = default; ///< undefined
    // An unknown rate is reported, and kept; it counts as 59.94 Hz with df. The first form is df at that
    // rate.
    Timecode(Rate rate, unsigned nfields);
    Timecode(Rate rate, bool df, unsigned nfields);

    bool is_defined() const { return defined_; }
    bool is_undefined() const { return !defined_; }
    unsigned get_nfields() const { return nfields_; }
    Rate get_std() const { return rate_; } ///< 59.94 Hz if undefined
    bool get_df() const { return df_; }
    bool is_df() const { return df_; }
    bool is_ndf() const { return !df_; }

    // Of an undefined value, they are reported and give 0 or false.

    unsigned get_days() const;
    unsigned get_hours() const;
    unsigned get_minutes() const;
    unsigned get_seconds() const;
    unsigned get_frames() const;
    bool get_f2() const; ///< the second field of the frame

    // 0 if undefined.

    unsigned get_fields_per_second() const { return defined_ ? fields_per_second(rate_, df_) : 0; }
    unsigned get_fields_per_minute() const { return defined_ ? fields_per_minute(rate_, df_) : 0; }
    unsigned get_fields_per_10minutes() const { return defined_ ? fields_per_10minutes(rate_, df_) : 0; }
    unsigned get_fields_per_hour() const { return defined_ ? fields_per_hour(rate_, df_) : 0; }
    unsigned get_fields_per_day() const { return defined_ ? fields_per_day(rate_, df_) : 0; }

    // df counts at 59.94 Hz only. An unknown rate is reported, and has the numbers of 59.94 Hz with df.

    static unsigned fields_per_second(Rate rate, bool df);
    static unsigned fields_per_minute(Rate rate, bool df);
    static unsigned fields_per_10minutes(Rate rate, bool df);
    static unsigned fields_per_hour(Rate rate, bool df);
    static unsigned fields_per_day(Rate rate, bool df);
    /// The count that a label stands for, modulo 2^32. Nothing is checked.
    static unsigned to_fields(Rate rate, bool df, bool f2, unsigned hours, unsigned minutes, unsigned seconds,
                              unsigned frames);

    /// By `is_defined`, undefined first, then rate, then count: -1, 0 or 1.
    int cmp(const Timecode& other) const;
    static int cmp(const Timecode& a, const Timecode& b) { return a.cmp(b); }
    friend bool operator==(const Timecode& a, const Timecode& b) { return a.cmp(b) == 0; }
    friend bool operator!=(const Timecode& a, const Timecode& b) { return a.cmp(b) != 0; }
    friend bool operator<(const Timecode& a, const Timecode& b) { return a.cmp(b) < 0; }
    friend bool operator<=(const Timecode& a, const Timecode& b) { return a.cmp(b) <= 0; }
    friend bool operator>(const Timecode& a, const Timecode& b) { return a.cmp(b) > 0; }
    friend bool operator>=(const Timecode& a, const Timecode& b) { return a.cmp(b) >= 0; }

    // Nothing below happens to an undefined value. An undefined right side makes it undefined.

    Timecode& operator+=(unsigned nfields);
    Timecode& operator+=(const Timecode& other);
    Timecode& operator++() { return *this += 1; }
    Timecode operator+(unsigned nfields) const { return Timecode(*this) += nfields; }
    Timecode operator+(const Timecode& other) const { return Timecode(*this) += other; }
    /// Modulo 2^32; with `wrap` within 24 hours.
    void subtract(unsigned nfields, bool wrap);
    void subtract(const Timecode& other, bool wrap);
    void wrap24(); ///< removes whole days
    void set_nfields(unsigned nfields);
    void set_undefined() { *this = Timecode(); }

    /// As Vantor::ATimecode::toString, except for 0 groups, with which a value of 0 is the empty text, and an
    /// undefined value, which is reported and has the empty text.
    AString to_astring(unsigned groups) const;
    std::string to_string(unsigned groups) const;

private:
    const skuan::TimecodeReading& reading() const;
    const skuan::TimecodeReading& checked_reading() const;

    bool defined_ = false;
    bool df_ = false;
    mutable bool cache_valid_ = false;
    Rate rate_ = Rate_59_94;
    unsigned nfields_ = 0;
    mutable skuan::TimecodeReading cache_;
};
