// Three values share twelve channels: where does the configuration begin that a channel belongs to?
#include <skuan/config/channel_board_p.h>

#include <skuan/foundation/assertfail.h>

namespace ChannelCF {

static constexpr unsigned set_size = 4; // channels

/// The value of that set of channels; "absent" past the end.
static ConfigType value_at(const BoardConfigInfo::Values& values, unsigned index)
{
    return index < values.size() ? values[index] : ConfigType_absent;
}

/// The channel's place among `slots` sets that are counted together from the board's beginning.
static unsigned within(unsigned channel, unsigned slots)
{
    return channel % (slots * set_size);
}

SorrelConfigInfo::SorrelConfigInfo()
{
    for (const SorrelRow& row : sorrel_rows)
        add(row.type, make_config(row));
}

const ConfigSorrel* SorrelConfigInfo::sorrel_config(ConfigType type) const
{
    return static_cast<const ConfigSorrel*>(config(type)); // no others were added
}

/// A channel of the second or third set first asks whether a wider configuration before it reaches so far.
/// Pairs and triples of sets are counted from the board's beginning, so a wide configuration that is set
/// elsewhere is found from its first set only.
SorrelConfigInfo::Reach SorrelConfigInfo::reach(const Values& values, unsigned channel) const
{
    for (const unsigned slots : {2u, 3u}) {
        const unsigned place_in_group = within(channel, slots);
        if (place_in_group < set_size)
            continue;
        const unsigned offset = channel - place_in_group;
        const ConfigSorrel* wide = sorrel_config(value_at(values, offset / set_size));
        if (wide && wide->slots == slots)
            return {wide, offset};
    }
    return {sorrel_config(value_at(values, channel / set_size)), channel - within(channel, 1)};
}

BoardConfigs::Place SorrelConfigInfo::place(const Values& values, unsigned iuc) const
{
    const auto [config, offset] = reach(values, iuc);
    if (!SKUAN_CHECK(iuc >= offset))
        return {channel_of(nullptr, 0), 0};
    return {channel_of(config, iuc - offset), offset};
}

bool SorrelConfigInfo::is4K(const Values& values, unsigned user_channel) const
{
    const std::vector<Angle>& angles = place(values, user_channel).user_channel.angles;
    return !angles.empty() && angles.front().is_4K;
}

/// The widest group first, whatever the width of the configuration that stands at its beginning: only one
/// that has so many outputs knows the output.
AOption<OutputSource> SorrelConfigInfo::GetOutputSource(const Values& values, unsigned output) const
{
    for (const unsigned slots : {3u, 2u, 1u}) {
        const unsigned local = within(output, slots);
        const unsigned base = (output - local) / set_size;
        AOption<OutputSource> found = source(local, value_at(values, base));
        if (found) {
            OutputSource on_board = found.value();
            on_board.user_channel += base * set_size;
            return on_board;
        }
    }
    return {};
}

unsigned SorrelConfigInfo::channel_count(const Values& values) const
{
    unsigned total = 0;
    while (const ConfigSorrel* config = reach(values, total).config) {
        const unsigned num_channels = config->channel_count;
        if (!SKUAN_CHECK(num_channels != 0))
            break;
        total += num_channels;
        if (num_channels % set_size != 0)
            break; // two or six channels: the board has no more, whatever the values behind say
    }
    return total;
}

} // namespace ChannelCF
