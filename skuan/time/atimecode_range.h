// A piece of time: where it starts, and how many fields it lasts.
#pragma once

#include <skuan/export.h>
#include <skuan/time/atimecode.h>

namespace Vantor {

/// Undefined if its start is. It is its own start, so that everything an ATimecode can do, comparing too, is
/// done to the start alone. A plain value, for one thread at a time.
class SKUAN_EXPORT ATimecodeRange : public ATimecode
{
public:
    ATimecodeRange() = default; ///< undefined, and of no duration
    ATimecodeRange(const ATimecode& start, unsigned duration) : ATimecode(start), duration_(duration) {}
    static ATimecodeRange start_duration(const ATimecode& start, unsigned duration)
    {
        return ATimecodeRange(start, duration);
    }
    /// An undefined duration counts 0.
    static ATimecodeRange start_duration(const ATimecode& start, const ATimecode& duration);
    /// `out` is the first field behind; the duration is 0 where it precedes `in`, or either is undefined.
    static ATimecodeRange in_out(const ATimecode& in, const ATimecode& out);

    const ATimecode& get_start() const { return *this; }
    unsigned get_duration() const { return duration_; } ///< in fields
    void set_start(const ATimecode& start) { ATimecode::operator=(start); }
    void set_duration(unsigned duration) { duration_ = duration; }
    /// Never shortens it.
    void set_min_duration(unsigned duration)
    {
        if (duration_ < duration)
            duration_ = duration;
    }

    bool valid_range() const { return is_defined(); }
    bool nonzero_range() const { return is_defined() && duration_ > 0; }

    // The last field within, undefined for duration 0; the first behind. With 24, without their days.

    ATimecode get_last() const;
    ATimecode get_next() const { return get_start() + duration_; }
    ATimecode get_start24() const { return get_start().get24(); }
    ATimecode get_last24() const { return get_last().get24(); }
    ATimecode get_next24() const { return get_next().get24(); }

    /// Whether there is a range and `t` is defined, wherever `t` lies; meant so, for callers depend on it.
    /// `contains24` looks where it lies.
    bool contains(const ATimecode& t) const;
    /// On the circle of 24 hours; everything is in a range of a day.
    bool contains24(const ATimecode& t) const;
    /// The nearest position within: `t`, the start or the last field. Undefined without a range.
    ATimecode clip_to_range(const ATimecode& t) const;
    /// The same on the circle; at equal distances the start.
    ATimecode clip_to_range24(const ATimecode& t) const;

private:
    unsigned duration_ = 0;
};

} // namespace Vantor
