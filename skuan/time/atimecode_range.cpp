// Ranges on the line and on the circle of 24 hours.
#include <skuan/time/atimecode_range.h>

namespace Vantor {

ATimecodeRange ATimecodeRange::start_duration(const ATimecode& start, const ATimecode& duration)
{
    return ATimecodeRange(start, duration.is_defined() ? duration.get_nfields() : 0);
}

ATimecodeRange ATimecodeRange::in_out(const ATimecode& in, const ATimecode& out)
{
    return start_duration(in, out - in);
}

ATimecode ATimecodeRange::get_last() const
{
    return duration_ == 0 ? ATimecode() : get_start() + (duration_ - 1);
}

bool ATimecodeRange::contains(const ATimecode& t) const
{
    return t.is_defined() && nonzero_range(); // and no word on where t is, see the header
}

bool ATimecodeRange::contains24(const ATimecode& t) const
{
    if (!contains(t))
        return false;
    if (duration_ >= get_fields_per_day())
        return true;
    const ATimecode start = get_start24(), last = get_last24(), at = t.get24();
    if (start <= last)
        return start <= at && at <= last;
    return at >= start || at <= last;
}

ATimecode ATimecodeRange::clip_to_range(const ATimecode& t) const
{
    if (!nonzero_range())
        return ATimecode();
    return t < get_start() ? get_start() : t > get_last() ? get_last() : t;
}

ATimecode ATimecodeRange::clip_to_range24(const ATimecode& t) const
{
    if (!nonzero_range())
        return ATimecode();
    if (contains24(t))
        return t;
    const ATimecode start = get_start24(), last = get_last24(), at = t.get24();
    return sub24(start, at) <= sub24(at, last) ? start : last;
}

} // namespace Vantor
