// The texts of the configurations.
#include <skuan/config/channel_config.h>

#include <skuan/foundation/enum_string.h>

#include <iterator>

static const EnumString& channel_configs()
{
#define ROW(name)                                                                                            \
    {                                                                                                        \
        ChannelConfig_##name, #name                                                                          \
    }
    static constexpr EnumString::ByLatin1 rows[] = {
        ROW(absent),        ROW(VVVV),          ROW(VKVV),         ROW(VVVK),          ROW(VKVK),
        ROW(SSM4),          ROW(SSM3),          ROW(SSM2),         ROW(SSM6),          ROW(SSM6b),
        ROW(SSM8),          ROW(SSM8b),         ROW(ISO2),         ROW(ISO3),          ROW(ISO4),
        ROW(ISO4_2P_VV),    ROW(ISO4_2P_VVb),   ROW(ISO4_2P_VK),   ROW(ISO4_2P_VKb),   ROW(ISO4_2P_VK_2),
        ROW(ISO4_2P_VK_2b), ROW(V2V2),          ROW(ISO5),         ROW(ISO5b),         ROW(ISO6),
        ROW(ISO6b),         ROW(3D_ISO3),       ROW(3D_ISO3b),     ROW(3D_ISO2),       ROW(3D_ISO2b),
        ROW(DUAL_SSM3),     ROW(DUAL_SSM3b),    ROW(TRI_SSM2),     ROW(TRI_SSM2b),     ROW(DUAL_VK),
        ROW(TRIPLE_VK_VV),  ROW(TRIPLE_VK_VVb), ROW(TRIPLE_VK_VK), ROW(TRIPLE_VK_VKb), ROW(QUAD_VK),
        ROW(QUAD_VKb),      ROW(V_V),           ROW(VK),
    };
    static const EnumString table(rows, std::size(rows)); // an unknown text gives 0, unknown
    return table;
}

ChannelConfig string_to_ChannelConfig(const AString& text)
{
    return static_cast<ChannelConfig>(channel_configs().to_enumval(text));
}

AString ChannelConfig_to_string(ChannelConfig config)
{
    return channel_configs().to_name(static_cast<int>(config));
}
