// Which of a clip's timecodes counts.
#include <skuan/time/clip_timecode.h>

namespace Vantor {

ATimecode stripe_start_timecode(const KVRP3::ClipInfo& clip)
{
    return ATimecode(clip.stripe_timecode);
}

ATimecode zerobased_start_timecode(const KVRP3::ClipInfo& clip)
{
    ATimecode result = stripe_start_timecode(clip);
    result.set_nfields(0);
    return result;
}

ATimecode frame0_timecode(const KVRP3::ClipInfo& clip)
{
    return clip.has_frame0_timecode ? ATimecode(clip.video_standard, clip.frame0_timecode)
                                    : zerobased_start_timecode(clip);
}

ATimecode start_timecode(const KVRP3::ClipInfo& clip)
{
    switch (clip.timecode_source) {
    case KVRP3::TimecodeSource_zerobased:
        return zerobased_start_timecode(clip);
    case KVRP3::TimecodeSource_striped:
        return stripe_start_timecode(clip);
    case KVRP3::TimecodeSource_rectc:
    case KVRP3::TimecodeSource_rec0_stripe:
        return frame0_timecode(clip);
    }
    return ATimecode();
}

ATimecode duration_timecode(const KVRP3::ClipInfo& clip)
{
    return start_timecode(clip) + clip.clip_length;
}

} // namespace Vantor
