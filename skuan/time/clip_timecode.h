// The timecodes of a clip, as the server tells of it.
#pragma once

#include <skuan/export.h>
#include <skuan/time/atimecode.h>

/// Each is undefined where the server's own value is.
namespace Vantor {

/// Where its stripe begins.
SKUAN_EXPORT ATimecode stripe_start_timecode(const KVRP3::ClipInfo& clip);
/// 0, labelled as the stripe is.
SKUAN_EXPORT ATimecode zerobased_start_timecode(const KVRP3::ClipInfo& clip);
/// The timecode of its first frame; without one, 0 as above.
SKUAN_EXPORT ATimecode frame0_timecode(const KVRP3::ClipInfo& clip);
/// Where it begins by the source that it takes its timecode from; undefined for an unknown source.
SKUAN_EXPORT ATimecode start_timecode(const KVRP3::ClipInfo& clip);
/// Where it ends: its start and its length. No length, in spite of the name; meant so.
SKUAN_EXPORT ATimecode duration_timecode(const KVRP3::ClipInfo& clip);

} // namespace Vantor
