// Everything that the server has and is, and that commands ask for and change.
#pragma once

#include <simulator/budget_p.h>
#include <simulator/clip_store.h>
#include <simulator/commands/channels_p.h>
#include <simulator/commands/chasing_p.h>
#include <simulator/commands/configuration_p.h>
#include <simulator/commands/lists_p.h>
#include <simulator/commands/machine_p.h>
#include <simulator/commands/vclips_p.h>
#include <simulator/settings.h>

#include <array>
#include <deque>
#include <map>

namespace simulator {

struct ServerState
{
    explicit ServerState(const Settings& given)
        : settings(given),
          budget(given.max_state),
          clips(given.clips),
          configuration(given),
          machine(clips),
          start_script(given.start_script)
    {
        for (std::size_t channel = static_cast<std::size_t>(given.channels); channel < channels.size();
             ++channel)
            channels[channel].status = ChannelStatus::nochannel;
        start_ltc(*this);
    }

    const Settings& settings;
    quint64 field = 0; // how many have passed since the server began
    Budget budget;     // before all that takes from it
    ClipStore clips;
    std::array<Channel, channel_count> channels;
    Shelf<std::vector<Element>> play_lists{budget}, chase_lists{budget};
    std::optional<ChaseTimecode> chase_timecode;
    Shelf<VirtualClip> vclips{budget};
    std::map<QString, Shelf<QString>> metadata; // by database; none of them is empty
    Shelf<QString> userdict{budget};
    Configuration configuration;
    Machine machine;
    std::vector<StartStep> start_script; // of the next start
    std::deque<QString> exports;         // what was exported last, a line for each clip
    quint64 exported_files = 0;
    quint64 told_disk_space = 0; // as it was when it last changed
    quint64 last_stamp = 0;      // of the changes that clips keep a stamp of
};

} // namespace simulator
