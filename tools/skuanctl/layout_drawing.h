// A board's channels as a drawing in text.
#pragma once

#include <skuan/config/configured_board.h>

#include <QStringList>

#include <vector>

/// The user channels that have an output, in rising order; there may be gaps.
std::vector<unsigned> user_channels(const ChannelCF::ChannelConfigSpec& spec);

/// The outputs of one angle, the primary ones first.
struct AngleOutputs
{
    std::vector<unsigned> video, key;
};

/// Of each angle of the user channel.
std::vector<AngleOutputs> angles_of(const ChannelCF::ChannelConfigSpec& spec, unsigned user_channel);

/// The lines of it: each user channel with its outputs, and what each output shows. One line that says so
/// for a board without any.
///
///     user channel  0 ─┬─ output  0  angle 0 video
///                      ├─ output  2  angle 0 key
///                      ├─ output  1  angle 1 video
///                      └─ output  3  angle 1 key
///     user channel  5 ─── output  5  4K video
QStringList layout_drawing(const ChannelCF::ChannelConfigSpec& spec);
