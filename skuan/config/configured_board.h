// A board and its configurations, as one value to ask.
#pragma once

#include <skuan/config/channel_board.h>

namespace ChannelCF {

/// A plain value. Each question goes to the kind of board, with these configurations; see there. An invalid
/// board is reported, and answers as a board on which there is nothing.
struct SKUAN_EXPORT ChannelConfigSpec
{
    BoardType board = BoardType_invalid;
    std::vector<ConfigType> values;

    unsigned get_angle_count(unsigned user_channel) const;
    unsigned get_angle_primary_output(unsigned user_channel, unsigned angle) const;
    std::vector<unsigned> PrimaryAngleOutputs(unsigned user_channel, bool key) const;
    std::vector<unsigned> AllOutputs(unsigned user_channel, bool key) const;
    bool is4K(unsigned user_channel) const;
    AOption<OutputSource> GetOutputSource(unsigned output) const;
    unsigned channel_count() const;

    bool operator==(const ChannelConfigSpec& other) const
    {
        return board == other.board && values == other.values;
    }
    bool operator!=(const ChannelConfigSpec& other) const { return !(*this == other); }
};

} // namespace ChannelCF
