// One value, up to four outputs.
#include <skuan/config/channel_board_p.h>

namespace ChannelCF {

static ConfigType first(const BoardConfigInfo::Values& values)
{
    return values.empty() ? ConfigType_absent : values.front();
}

TansyConfigInfo::TansyConfigInfo(unsigned channels, std::span<const TansyRow> rows) : channel_count_(channels)
{
    for (const TansyRow& row : rows)
        for (unsigned type = row.first; type <= row.last; ++type)
            add(static_cast<ConfigType>(type), make_config(row));
}

BoardConfigs::Place TansyConfigInfo::place(const Values& values, unsigned user_channel) const
{
    constexpr unsigned most_user_channels = 3;
    return {channel_of(user_channel < most_user_channels ? config(first(values)) : nullptr, user_channel), 0};
}

bool TansyConfigInfo::is4K(const Values&, unsigned) const
{
    return false;
}

AOption<OutputSource> TansyConfigInfo::GetOutputSource(const Values& values, unsigned output) const
{
    return source(output, first(values));
}

unsigned TansyConfigInfo::channel_count(const Values&) const
{
    return channel_count_;
}

} // namespace ChannelCF
