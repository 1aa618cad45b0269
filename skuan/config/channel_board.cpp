// What the kinds of boards share: lists from a configuration, and the way back from an output.
#include <skuan/config/channel_board_p.h>

#include <skuan/foundation/assertfail.h>

namespace ChannelCF {

BoardConfigInfo::~BoardConfigInfo() = default;

static std::vector<unsigned> shifted(std::vector<unsigned> outputs, unsigned offset)
{
    for (unsigned& output : outputs)
        output += offset;
    return outputs;
}

unsigned BoardConfigs::get_angle_count(const Values& values, unsigned user_channel) const
{
    return place(values, user_channel).user_channel.num_angles;
}

unsigned BoardConfigs::get_angle_primary_output(const Values& values, unsigned user_channel,
                                                unsigned angle) const
{
    const Place found = place(values, user_channel);
    const std::vector<unsigned>& primary = found.user_channel.primary_video;
    return angle < primary.size() ? primary[angle] + found.offset : 0;
}

std::vector<unsigned> BoardConfigs::PrimaryAngleOutputs(const Values& values, unsigned user_channel,
                                                        bool key) const
{
    const Place found = place(values, user_channel);
    return shifted(key ? found.user_channel.primary_key : found.user_channel.primary_video, found.offset);
}

std::vector<unsigned> BoardConfigs::AllOutputs(const Values& values, unsigned user_channel, bool key) const
{
    const Place found = place(values, user_channel);
    return shifted(key ? found.user_channel.all_key : found.user_channel.all_video, found.offset);
}

const UserChannel& BoardConfigs::channel_of(const Config* config, unsigned index)
{
    static const UserChannel gap;
    return config && index < config->user_channels.size() ? config->user_channels[index] : gap;
}

void BoardConfigs::add(ConfigType type, std::unique_ptr<const Config> config)
{
    if (!config)
        return;
    unsigned index = 0;
    for (const UserChannel& user_channel : config->user_channels) {
        add_sources(type, user_channel.all_video, index, false);
        add_sources(type, user_channel.all_key, index, true);
        ++index;
    }
    configs_[type] = std::move(config);
}

void BoardConfigs::add_sources(ConfigType type, const std::vector<unsigned>& outputs, unsigned user_channel,
                               bool key)
{
    unsigned position = 0;
    for (const unsigned output : outputs)
        if (!output_source_.try_emplace({output, type}, OutputSource{user_channel, position++, key}).second)
            assertfail(__FILE__, __LINE__, "output_source.find (k) == output_source.cend ()");
}

const Config* BoardConfigs::config(ConfigType type) const
{
    const auto found = configs_.find(type);
    return found == configs_.end() ? nullptr : found->second.get();
}

AOption<OutputSource> BoardConfigs::source(unsigned output, ConfigType type) const
{
    const auto found = output_source_.find({output, type});
    return found == output_source_.end() ? AOption<OutputSource>() : found->second;
}

const BoardConfigInfo* board_config_info(BoardType type)
{
    static const std::map<BoardType, std::unique_ptr<const BoardConfigInfo>> kinds = [] {
        std::map<BoardType, std::unique_ptr<const BoardConfigInfo>> made;
        made[BoardType_sorrel] = std::make_unique<SorrelConfigInfo>();
        made[BoardType_tansy1] = std::make_unique<TansyConfigInfo1>();
        made[BoardType_tansy2] = std::make_unique<TansyConfigInfo2>();
        made[BoardType_tansy3] = std::make_unique<TansyConfigInfo3>();
        return made;
    }();
    const auto found = kinds.find(type);
    const BoardConfigInfo* config_info = found == kinds.end() ? nullptr : found->second.get();
    (void)SKUAN_CHECK(config_info != nullptr);
    return config_info;
}

} // namespace ChannelCF
