// What a monitor tells of a channel: ten values, which come with six kinds of reports.
#pragma once

#include <skuan/foundation/aoption.h>
#include <skuan/protocol/kvrp3_types.h>
#include <skuan/time/atimecode.h>

#include <QString>

/// The order of every table of them.
enum class ChannelValue : unsigned {
    status,
    clipid,
    speed,
    timecodes,
    clip_position,
    aux_position,
    display_timecode,
    input_timecode,
    information,
    playback_mode,
};
constexpr unsigned channel_value_count = 10;

/// The three values of a timecode report.
struct ChannelTimecodes
{
    KVRP3::ClipPosition clip_position = 0;
    Vantor::ATimecode display_timecode;
    Vantor::ATimecode input_timecode;
};

/// As they are known, with what stands for them before a server has said anything.
struct ChannelValues
{
    KVRP3::ChannelStatus status = KVRP3::ChannelStatus_idle;
    QString clipid;
    KVRP3::Speed speed = 0; ///< 65536 is normal speed
    ChannelTimecodes timecodes;
    KVRP3::ClipPosition aux_position = 0;
    KVRP3::ChannelInformation information;
    AOption<KVRP3::Playback> playback_mode;
};
