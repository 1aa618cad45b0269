// Which channel an output shows.
#pragma once

#include <skuan/config/cf_channel_config.h>

namespace skuan {

/// None as long as the server has not told what board it has: to ask then would be reported as a fault.
inline AOption<unsigned> output_source(const CFChannelConfig& config, unsigned output)
{
    if (config.board_type() == ChannelCF::BoardType_invalid)
        return {};
    const auto source = config.GetOutputSource(output);
    return source ? AOption<unsigned>(source.value().user_channel) : AOption<unsigned>();
}

} // namespace skuan
