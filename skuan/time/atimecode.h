// A position as a count of fields: what monitors, clips and displays calculate with.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>
#include <skuan/protocol/kvrp3_types.h>
#include <skuan/time/timecode_reading.h>
#include <skuan/time/video_standard.h>

namespace Vantor {

/// Fields since 00:00:00:00 of day 0, with the rate and flag by which they are labelled, or undefined. The
/// count is what is kept, so that adding and comparing divide nothing; the label is worked out when somebody
/// asks for it, and remembered.
///
/// A plain value, for one thread at a time: also observers write what they remember, so threads copy it.
///
/// What goes into making one has to be valid, the flag too, or it is undefined. Nothing here wraps at 24
/// hours unless it says so; counts are modulo 2^32.
class SKUAN_EXPORT ATimecode
{
public:
    ATimecode() = default; ///< undefined
    /// Without a flag, here and below, it is the default one of the frequency.
    ATimecode(VideoFrequency frequency, unsigned nfields)
        : ATimecode(frequency, defaultDropframeFlag(frequency), nfields)
    {
    }
    ATimecode(VideoFrequency frequency, DropframeFlag flag, unsigned nfields)
    {
        if (!isValid(frequency) || !isValid(flag))
            return;
        defined_ = true;
        std_ = frequency;
        df_ = flag;
        nfields_ = nfields;
    }
    ATimecode(VideoFrequency frequency, DropframeFlag flag) = delete; // a flag is no number of fields

    /// `f2` is the second field of the frame. A label that drop-frame leaves out is not corrected, meant so:
    /// 00:01:00:00 is the count that reads 00:00:59:28. The forms with a text do correct it.
    ATimecode(VideoFrequency frequency, unsigned hours, unsigned minutes, unsigned seconds, unsigned frames,
              bool f2);
    ATimecode(VideoFrequency frequency, DropframeFlag flag, unsigned hours, unsigned minutes,
              unsigned seconds, unsigned frames, bool f2);

    /// What an operator types: up to four groups of digits, the last are the frames, between them "." or ","
    /// in field 1, ":" or ";" in field 2; separators that differ from each other make it field 1. Where there
    /// is drop-frame, but no valid flag is given, "," and ";" select df, "." and ":" ndf, and anything else
    /// the default. A label that drop-frame leaves out becomes the next one. In the groups all else but
    /// digits is skipped, so that 1+02 are 102 hours; one above 2^32 - 1 counts 0. Any text gives a defined
    /// value.
    ATimecode(VideoFrequency frequency, const AString& text);
    ATimecode(VideoFrequency frequency, DropframeFlag flag, const AString& text);

    /// Undefined unless the server's value is valid, and has a standard and a position.
    explicit ATimecode(const KVRP3::Timecode& timecode);
    /// Undefined unless the server's value has a position. Its flag counts where there is drop-frame.
    ATimecode(VideoFrequency frequency, const KVRP3::SmallTimecode& timecode);
    ATimecode(KVRP3::VideoRate rate, const KVRP3::SmallTimecode& timecode);
    ATimecode(KVRP3::VideoStandard standard, const KVRP3::SmallTimecode& timecode);

    // From the bytes of other equipment, as plain numbers, not binary-coded decimals. The first has a byte
    // each for hours, minutes, seconds and frames. The second has two for each, with four bits in the low
    // half of each byte, the low nibble first; it is undefined if all bits of the low and the high four bytes
    // are 1. Null is undefined. Bit 6 of the frames means df. The second field is bit 7 of the seconds in the
    // family of 60 fields, and bit 7 of the hours elsewhere.

    static ATimecode from_sony(VideoFrequency frequency, const void* bytes);
    static ATimecode from_tc64(VideoFrequency frequency, const void* bytes);

    bool is_defined() const { return defined_; }
    bool is_undefined() const { return !defined_; }
    unsigned get_nfields() const { return nfields_; } ///< means nothing in an undefined value

    // An undefined value gives 0, false, or true for `is_ndf`.

    VideoFrequency get_std() const { return defined_ ? std_ : VideoFrequency_invalid; }
    DropframeFlag get_df() const { return defined_ ? df_ : DropframeFlag_invalid; }
    bool is_df() const { return get_df() == DropframeFlag_df; }
    bool is_ndf() const { return !is_df(); }
    unsigned get_days() const { return reading().days; }
    unsigned get_hours() const { return reading().hours; }
    unsigned get_minutes() const { return reading().minutes; }
    unsigned get_seconds() const { return reading().seconds; }
    unsigned get_frames() const { return reading().frames; }
    bool get_f2() const { return reading().f2; } ///< the second field of the frame
    unsigned get_fields_per_second() const;
    unsigned get_fields_per_minute() const;
    unsigned get_fields_per_10minutes() const;
    unsigned get_fields_per_hour() const;
    unsigned get_fields_per_day() const;

    // By the counts alone: 100 fields at 50 Hz equal 100 fields at 60 Hz. Undefined comes after everything
    // else, and equals undefined. `cmp` gives -1, 0 or 1.

    int cmp(const ATimecode& other) const
    {
        if (!defined_ || !other.defined_)
            return other.defined_ - defined_;
        return nfields_ < other.nfields_ ? -1 : nfields_ > other.nfields_;
    }
    static int cmp(const ATimecode& a, const ATimecode& b) { return a.cmp(b); }
    friend bool operator==(const ATimecode& a, const ATimecode& b) { return a.cmp(b) == 0; }
    friend bool operator!=(const ATimecode& a, const ATimecode& b) { return a.cmp(b) != 0; }
    friend bool operator<(const ATimecode& a, const ATimecode& b) { return a.cmp(b) < 0; }
    friend bool operator<=(const ATimecode& a, const ATimecode& b) { return a.cmp(b) <= 0; }
    friend bool operator>(const ATimecode& a, const ATimecode& b) { return a.cmp(b) > 0; }
    friend bool operator>=(const ATimecode& a, const ATimecode& b) { return a.cmp(b) >= 0; }

    /// On the circle of 24 hours, that of the left side: the left is later if it is at most half a day ahead.
    int cmp24(const ATimecode& other) const;
    static int cmp24(const ATimecode& a, const ATimecode& b) { return a.cmp24(b); }

    // Nothing below happens to an undefined value, unless it says so. Operators with an undefined right side
    // give an undefined value. Subtraction by an operator ends at 0.

    ATimecode& operator+=(unsigned nfields)
    {
        if (defined_)
            change(nfields_ + nfields);
        return *this;
    }
    ATimecode& operator+=(const ATimecode& other)
    {
        if (defined_ && !other.defined_)
            set_undefined();
        return *this += other.nfields_;
    }
    ATimecode& operator++() { return *this += 1; }
    ATimecode& operator-=(unsigned nfields)
    {
        if (defined_)
            change(nfields_ - (nfields < nfields_ ? nfields : nfields_));
        return *this;
    }
    ATimecode& operator-=(const ATimecode& other)
    {
        if (defined_ && !other.defined_)
            set_undefined();
        return *this -= other.nfields_;
    }
    ATimecode operator+(unsigned nfields) const { return ATimecode(*this) += nfields; }
    ATimecode operator+(const ATimecode& other) const { return ATimecode(*this) += other; }
    ATimecode operator-(unsigned nfields) const { return ATimecode(*this) -= nfields; }
    ATimecode operator-(const ATimecode& other) const { return ATimecode(*this) -= other; }

    // With `wrap`, and with 24 in the name, within 24 hours. A right side counts whether it is defined or
    // not. Without `wrap`, `subtract` goes below 0 to the top of 32 bits, other than the operator; meant so.
    // With it, days are only removed when more is subtracted than there is.

    void add(unsigned nfields, bool wrap);
    void add(const ATimecode& other, bool wrap) { add(other.nfields_, wrap); }
    void add24(unsigned nfields) { add(nfields, true); }
    void add24(const ATimecode& other) { add(other, true); }
    static ATimecode add24(ATimecode a, unsigned nfields);
    static ATimecode add24(const ATimecode& a, const ATimecode& b) { return add24(a, b.nfields_); }
    void subtract(unsigned nfields, bool wrap);
    void subtract(const ATimecode& other, bool wrap) { subtract(other.nfields_, wrap); }
    void sub24(unsigned nfields) { subtract(nfields, true); }
    void sub24(const ATimecode& other) { subtract(other, true); }
    static ATimecode sub24(ATimecode a, unsigned nfields);
    static ATimecode sub24(const ATimecode& a, const ATimecode& b) { return sub24(a, b.nfields_); }

    void wrap24();           ///< removes whole days
    ATimecode get24() const; ///< without its days
    ATimecode t24() const;   ///< one day, of this frequency and flag

    void set(VideoFrequency frequency, unsigned nfields) { *this = ATimecode(frequency, nfields); }
    void set(VideoFrequency frequency, DropframeFlag flag, unsigned nfields)
    {
        *this = ATimecode(frequency, flag, nfields);
    }
    void set_nfields(unsigned nfields)
    {
        if (defined_)
            change(nfields);
    }
    void set_undefined() { *this = ATimecode(); }

    /// Where there is drop-frame, labels the same count by this flag; an invalid flag is reported. A label
    /// that has been read stays as it was until the count changes; meant so.
    void set_df(DropframeFlag flag);
    void set_df() { set_df(DropframeFlag_df); }
    void set_ndf() { set_df(DropframeFlag_ndf); }

    // To the first or second field of the frame. The last two also move the count of an undefined value,
    // which means nothing.

    void force_f1();
    void force_f2();
    void force_field(bool f2);

    /// All are defined, and start <= this < start + duration.
    bool is_inrange(const ATimecode& start, const ATimecode& duration) const;
    /// The same within 24 hours, over midnight too; false if this is a day or more.
    bool is_inrange24(ATimecode start, ATimecode duration) const;

    /// At least `groups` groups, from 1 to 5, and all that are not 0: frames, seconds, minutes, hours, days.
    /// "01.02.03.04" with four; see the constructor for the separators, and "1+01.02.03.04" a day later.
    /// "(invalid)" if undefined.
    AString toString(unsigned groups) const;
    /// For a picture of that resolution; a pair that is no standard is reported, and sent as 1080_59_94i.
    KVRP3::Timecode to_kvrp3(VideoResolution resolution) const;

private:
    const skuan::TimecodeReading& reading() const
    {
        if (!cache_valid_)
            read();
        return cache_;
    }
    void read() const;
    void change(unsigned nfields)
    {
        nfields_ = nfields;
        cache_valid_ = false;
    }

    bool defined_ = false;
    mutable bool cache_valid_ = false;
    VideoFrequency std_ = VideoFrequency_invalid;
    DropframeFlag df_ = DropframeFlag_invalid;
    unsigned nfields_ = 0;
    mutable skuan::TimecodeReading cache_;
};

} // namespace Vantor
