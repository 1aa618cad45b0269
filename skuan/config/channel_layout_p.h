// A configuration as the boards look it up: user channels, their angles, and the outputs of each.
// Outputs and user channels are numbered from 0 within the configuration.
#pragma once

#include <skuan/config/channel_catalogue_p.h>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace ChannelCF {

/// Channels in the order in which they came, each once.
class ChannelSet
{
public:
    void insert(unsigned channel)
    {
        if (std::find(in_order_.begin(), in_order_.end(), channel) == in_order_.end())
            in_order_.push_back(channel);
    }
    const std::vector<unsigned>& vector() const { return in_order_; }

private:
    std::vector<unsigned> in_order_; // twelve at most: a search is quicker than a tree beside it
};

struct Angle
{
    bool finished = false;
    unsigned ssm_count = 1; ///< physical channels that make one picture
    bool is_4K = false;
    ChannelSet video, key;
    std::array<ChannelSet, 2> further; ///< of an angle that is not 4K: each holds its primary channel

    /// The first channel with its video; without any, 0 and a report.
    unsigned primary_channel() const;
};

struct UserChannel
{
    bool finished = false;
    unsigned primary = 0; ///< the first angle's primary channel
    unsigned num_angles = 0;
    std::vector<unsigned> primary_video, primary_key; ///< of each angle that has any
    std::vector<unsigned> all_video, all_key;         ///< angle by angle
    std::vector<Angle> angles;                        ///< none: a gap

    /// Gathers what the angles say. Once; the angles' primary channels have to rise.
    void finish();
};

class Config
{
public:
    virtual ~Config() = default;
    /// Finishes the user channels, and unless `no_gaps` is set brings each to the place of its primary
    /// channel, with gaps between. Once.
    virtual void finish();

    bool finished = false;
    std::vector<UserChannel> user_channels;
    bool no_gaps = false; ///< of the 4K configurations, which are written with their gaps
};

class ConfigSorrel : public Config
{
public:
    ConfigSorrel(unsigned slots_occupied, unsigned channels) : slots(slots_occupied), channel_count(channels)
    {
    }

    unsigned slots; ///< sets of four channels: 1, 2 or 3
    unsigned channel_count;
};

class ConfigTansy : public Config
{
};

// What a row of the catalogue says, finished. Null for "absent".

std::unique_ptr<ConfigSorrel> make_config(const SorrelRow& row);
std::unique_ptr<ConfigTansy> make_config(const TansyRow& row);

} // namespace ChannelCF
