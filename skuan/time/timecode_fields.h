// How many fields timecode counts in a second, a minute, ten minutes, an hour and a day.
#pragma once

#include <skuan/export.h>
#include <skuan/time/video_frequency.h>

/// At 59.94 Hz with df, a label counts 60 fields a second although a little fewer go by. To keep up, each
/// minute but the tenth leaves out frames 0 and 1, which is four fields: 3600 fields in the first minute of
/// ten, 3596 in the others. 48 and 47.95 Hz count alike, and so do 60 and 59.94 Hz without df.
///
/// All give 0 for an invalid frequency, and for an invalid flag at 59.94 Hz; elsewhere the flag does not
/// matter. Without a flag, it is the default one of the frequency.
namespace Vantor {

SKUAN_EXPORT unsigned timecode_fields_per_second(VideoFrequency frequency, DropframeFlag flag);
SKUAN_EXPORT unsigned timecode_fields_per_minute(VideoFrequency frequency, DropframeFlag flag);
SKUAN_EXPORT unsigned timecode_fields_per_10minutes(VideoFrequency frequency, DropframeFlag flag);
SKUAN_EXPORT unsigned timecode_fields_per_hour(VideoFrequency frequency, DropframeFlag flag);
SKUAN_EXPORT unsigned timecode_fields_per_day(VideoFrequency frequency, DropframeFlag flag);

SKUAN_EXPORT unsigned timecode_fields_per_second(VideoFrequency frequency);
SKUAN_EXPORT unsigned timecode_fields_per_minute(VideoFrequency frequency);
SKUAN_EXPORT unsigned timecode_fields_per_10minutes(VideoFrequency frequency);
SKUAN_EXPORT unsigned timecode_fields_per_hour(VideoFrequency frequency);
SKUAN_EXPORT unsigned timecode_fields_per_day(VideoFrequency frequency);

/// The count that a label stands for, modulo 2^32; 0 where the functions above give 0. `f2` is the second
/// field of the frame. Nothing is checked: a label that drop-frame leaves out is counted as if it were there.
SKUAN_EXPORT unsigned timecode_numfields(VideoFrequency frequency, unsigned days, unsigned hours,
                                         unsigned minutes, unsigned seconds, unsigned frames, bool f2);
SKUAN_EXPORT unsigned timecode_numfields(VideoFrequency frequency, DropframeFlag flag, unsigned days,
                                         unsigned hours, unsigned minutes, unsigned seconds, unsigned frames,
                                         bool f2);

} // namespace Vantor
