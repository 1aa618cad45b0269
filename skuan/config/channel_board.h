// What a board makes of the configurations that are set: which outputs belong to a user channel, and which
// user channel feeds an output.
#pragma once

#include <skuan/config/channel_config_type.h>
#include <skuan/export.h>
#include <skuan/foundation/aoption.h>

#include <vector>

namespace ChannelCF {

/// What an output shows.
struct OutputSource
{
    unsigned user_channel = 0;
    unsigned angle = 0; ///< the output's position in AllOutputs(user_channel, key)
    bool key = false;

    bool operator==(const OutputSource& other) const
    {
        return user_channel == other.user_channel && angle == other.angle && key == other.key;
    }
    bool operator!=(const OutputSource& other) const { return !(*this == other); }
};

/// A kind of board. `values` are the configurations of its sets of channels, the first set first; they may be
/// too few or make no sense together. User channels, angles and outputs are numbered from 0 over the whole
/// board, and any number may be asked for: what is not there gives 0, false or an empty list.
///
/// A video output is one that carries a picture, a key output carries the key of one: `key` tells which are
/// meant. An angle has one primary output of each kind, and further ones where several make one picture.
///
/// Nothing changes once it is made; any thread may ask.
class SKUAN_EXPORT BoardConfigInfo
{
public:
    using Values = std::vector<ConfigType>;

    virtual ~BoardConfigInfo();

    virtual unsigned get_angle_count(const Values& values, unsigned user_channel) const = 0;
    virtual unsigned get_angle_primary_output(const Values& values, unsigned user_channel,
                                              unsigned angle) const = 0;
    /// Of each angle that has any, in the order of the angles.
    virtual std::vector<unsigned> PrimaryAngleOutputs(const Values& values, unsigned user_channel,
                                                      bool key) const = 0;
    /// Angle by angle, each beginning with its primary output.
    virtual std::vector<unsigned> AllOutputs(const Values& values, unsigned user_channel, bool key) const = 0;
    virtual bool is4K(const Values& values, unsigned user_channel) const = 0;
    virtual AOption<OutputSource> GetOutputSource(const Values& values, unsigned output) const = 0;
    virtual unsigned channel_count(const Values& values) const = 0;
};

/// The one of that kind, which lives as long as the process; null, with a report, for any other value.
SKUAN_EXPORT const BoardConfigInfo* board_config_info(BoardType type);

} // namespace ChannelCF
