// Each question goes to the one place that knows the kinds of boards.
#include <skuan/config/configured_board.h>

namespace ChannelCF {

/// What `question` gets from the board of `spec`; without a board, the answer's neutral value.
template <typename Answer, typename... Arguments>
static Answer ask(const ChannelConfigSpec& spec,
                  Answer (BoardConfigInfo::*question)(const BoardConfigInfo::Values&, Arguments...) const,
                  Arguments... arguments)
{
    const BoardConfigInfo* board = board_config_info(spec.board);
    return board ? (board->*question)(spec.values, arguments...) : Answer();
}

unsigned ChannelConfigSpec::get_angle_count(unsigned user_channel) const
{
    return ask(*this, &BoardConfigInfo::get_angle_count, user_channel);
}

unsigned ChannelConfigSpec::get_angle_primary_output(unsigned user_channel, unsigned angle) const
{
    return ask(*this, &BoardConfigInfo::get_angle_primary_output, user_channel, angle);
}

std::vector<unsigned> ChannelConfigSpec::PrimaryAngleOutputs(unsigned user_channel, bool key) const
{
    return ask(*this, &BoardConfigInfo::PrimaryAngleOutputs, user_channel, key);
}

std::vector<unsigned> ChannelConfigSpec::AllOutputs(unsigned user_channel, bool key) const
{
    return ask(*this, &BoardConfigInfo::AllOutputs, user_channel, key);
}

bool ChannelConfigSpec::is4K(unsigned user_channel) const
{
    return ask(*this, &BoardConfigInfo::is4K, user_channel);
}

AOption<OutputSource> ChannelConfigSpec::GetOutputSource(unsigned output) const
{
    return ask(*this, &BoardConfigInfo::GetOutputSource, output);
}

unsigned ChannelConfigSpec::channel_count() const
{
    return ask(*this, &BoardConfigInfo::channel_count);
}

} // namespace ChannelCF
