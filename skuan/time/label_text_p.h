// How a label is written: the one text form of both kinds of timecode.
#pragma once

#include <skuan/foundation/astring.h>
#include <skuan/time/timecode_reading.h>

namespace skuan {

/// How many groups a label takes to leave out nothing but zeros in front, at least `least` and at most 5.
unsigned label_groups(const TimecodeReading& label, unsigned least);

/// The last `groups` of days, hours, minutes, seconds and frames; none for 0, and at most 5.
AString label_text(const TimecodeReading& label, bool df, unsigned groups);

} // namespace skuan
