// Registered before the first signal is connected.
#include <skuan/time/time_meta_types.h>

namespace Vantor {

static const bool registered = [] {
    qRegisterMetaType<VideoFrequency>();
    qRegisterMetaType<VideoRoughFrequency>();
    qRegisterMetaType<VideoResolution>();
    qRegisterMetaType<VideoStandard>();
    qRegisterMetaType<DropframeFlag>();
    qRegisterMetaType<TrackType>();
    qRegisterMetaType<TrackSet>();
    qRegisterMetaType<ATimecode>();
    qRegisterMetaType<ATimecodeRange>();
    qRegisterMetaType<Timecode>();
    return true;
}();

} // namespace Vantor
