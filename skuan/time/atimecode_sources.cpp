// Timecodes from what servers and other equipment say.
#include <skuan/time/atimecode.h>

namespace Vantor {

namespace {

DropframeFlag flag_of(VideoFrequency frequency, bool has_flag, KVRP3::DropFrameFlag flag)
{
    return has_flag ? toDropframeFlag(flag) : defaultDropframeFlag(frequency);
}

/// Hours, minutes, seconds and frames with their flags.
ATimecode from_four(VideoFrequency frequency, const unsigned char (&label)[4])
{
    constexpr unsigned field_bit = 0x80, df_bit = 0x40;
    const auto [hours, minutes, seconds, frames] = label;
    const bool df = hasDropframe(frequency) && (frames & df_bit);
    const bool family_60 = toVideoRoughFrequency(frequency) == VideoRoughFrequency_60;
    return ATimecode(frequency, df ? DropframeFlag_df : DropframeFlag_ndf, hours & ~field_bit, minutes,
                     seconds & ~field_bit, frames & ~df_bit, (family_60 ? seconds : hours) & field_bit);
}

} // namespace

ATimecode::ATimecode(const KVRP3::Timecode& timecode)
{
    if (!timecode.valid || !timecode.has_video_standard || !timecode.has_position)
        return;
    const VideoFrequency frequency = toVideoFrequency(timecode.video_standard);
    set(frequency, flag_of(frequency, timecode.has_drop_frame_flag, timecode.drop_frame_flag),
        static_cast<unsigned>(timecode.position));
}

ATimecode::ATimecode(VideoFrequency frequency, const KVRP3::SmallTimecode& timecode)
{
    const bool has_flag = hasDropframe(frequency) && timecode.has_drop_frame_flag;
    if (timecode.has_position)
        set(frequency, flag_of(frequency, has_flag, timecode.drop_frame_flag),
            static_cast<unsigned>(timecode.position));
}

ATimecode::ATimecode(KVRP3::VideoRate rate, const KVRP3::SmallTimecode& timecode)
    : ATimecode(toVideoFrequency(rate), timecode)
{
}

ATimecode::ATimecode(KVRP3::VideoStandard standard, const KVRP3::SmallTimecode& timecode)
    : ATimecode(toVideoFrequency(standard), timecode)
{
}

ATimecode ATimecode::from_sony(VideoFrequency frequency, const void* bytes)
{
    const auto* const b = static_cast<const unsigned char*>(bytes);
    return b ? from_four(frequency, {b[0], b[1], b[2], b[3]}) : ATimecode();
}

ATimecode ATimecode::from_tc64(VideoFrequency frequency, const void* bytes)
{
    const auto* const b = static_cast<const unsigned char*>(bytes);
    if (!b || (b[0] & b[1] & b[2] & b[3] & b[4] & b[5] & b[6] & b[7]) == 0xFF)
        return ATimecode();
    const auto value = [b](unsigned n) {
        return static_cast<unsigned char>((b[2 * n] & 0x0F) | b[2 * n + 1] << 4);
    };
    return from_four(frequency, {value(0), value(1), value(2), value(3)});
}

} // namespace Vantor
