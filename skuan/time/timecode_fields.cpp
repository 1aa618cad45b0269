// The table of field_counts_p.h, for everybody.
#include <skuan/time/timecode_fields.h>

#include <skuan/time/field_counts_p.h>

using skuan::field_counts;

namespace Vantor {

unsigned timecode_fields_per_second(VideoFrequency frequency, DropframeFlag flag)
{
    return field_counts(frequency, flag).second;
}

unsigned timecode_fields_per_minute(VideoFrequency frequency, DropframeFlag flag)
{
    return field_counts(frequency, flag).minute;
}

unsigned timecode_fields_per_10minutes(VideoFrequency frequency, DropframeFlag flag)
{
    return field_counts(frequency, flag).ten_minutes;
}

unsigned timecode_fields_per_hour(VideoFrequency frequency, DropframeFlag flag)
{
    return field_counts(frequency, flag).hour;
}

unsigned timecode_fields_per_day(VideoFrequency frequency, DropframeFlag flag)
{
    return field_counts(frequency, flag).day;
}

unsigned timecode_fields_per_second(VideoFrequency frequency)
{
    return timecode_fields_per_second(frequency, defaultDropframeFlag(frequency));
}

unsigned timecode_fields_per_minute(VideoFrequency frequency)
{
    return timecode_fields_per_minute(frequency, defaultDropframeFlag(frequency));
}

unsigned timecode_fields_per_10minutes(VideoFrequency frequency)
{
    return timecode_fields_per_10minutes(frequency, defaultDropframeFlag(frequency));
}

unsigned timecode_fields_per_hour(VideoFrequency frequency)
{
    return timecode_fields_per_hour(frequency, defaultDropframeFlag(frequency));
}

unsigned timecode_fields_per_day(VideoFrequency frequency)
{
    return timecode_fields_per_day(frequency, defaultDropframeFlag(frequency));
}

unsigned timecode_numfields(VideoFrequency frequency, unsigned days, unsigned hours, unsigned minutes,
                            unsigned seconds, unsigned frames, bool f2)
{
    return timecode_numfields(frequency, defaultDropframeFlag(frequency), days, hours, minutes, seconds,
                              frames, f2);
}

unsigned timecode_numfields(VideoFrequency frequency, DropframeFlag flag, unsigned days, unsigned hours,
                            unsigned minutes, unsigned seconds, unsigned frames, bool f2)
{
    const skuan::FieldCounts& counts = field_counts(frequency, flag);
    return counts.day == 0 ? 0 : counts.count(hours, minutes, seconds, frames, f2) + counts.day * days;
}

} // namespace Vantor
