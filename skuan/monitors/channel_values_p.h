// The ten values as a table, for loops over them.
#pragma once

#include <skuan/monitors/channel_values.h>

namespace skuan {

constexpr ChannelValue all_channel_values[channel_value_count] = {
    ChannelValue::status,           ChannelValue::clipid,         ChannelValue::speed,
    ChannelValue::timecodes,        ChannelValue::clip_position,  ChannelValue::aux_position,
    ChannelValue::display_timecode, ChannelValue::input_timecode, ChannelValue::information,
    ChannelValue::playback_mode,
};

/// The report that has it.
constexpr KVRP3::ChannelReportType report_of(ChannelValue value)
{
    using namespace KVRP3;
    constexpr ChannelReportType table[channel_value_count] = {
        ChannelReportType_status,   ChannelReportType_clipid,   ChannelReportType_speed,
        ChannelReportType_timecode, ChannelReportType_timecode, ChannelReportType_aux_audio_timecode,
        ChannelReportType_timecode, ChannelReportType_timecode, ChannelReportType_info,
        ChannelReportType_info,
    };
    return table[static_cast<unsigned>(value)];
}

} // namespace skuan
