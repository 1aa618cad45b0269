// The configurations of a set of channels as a program tells them apart; the catalogue of the boards has
// numbers, and some names, of its own (see channel_config_type.h).
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>

/// The text of each is the name behind the prefix; "unknown" has none.
enum ChannelConfig : unsigned {
    ChannelConfig_unknown,
    ChannelConfig_absent,
    ChannelConfig_VVVV,
    ChannelConfig_VKVV,
    ChannelConfig_VVVK,
    ChannelConfig_VKVK,
    ChannelConfig_SSM4,
    ChannelConfig_SSM3,
    ChannelConfig_SSM2,
    ChannelConfig_SSM6,
    ChannelConfig_SSM6b,
    ChannelConfig_SSM8,
    ChannelConfig_SSM8b,
    ChannelConfig_ISO2,
    ChannelConfig_ISO3,
    ChannelConfig_ISO4,
    ChannelConfig_ISO4_2P_VV,
    ChannelConfig_ISO4_2P_VVb,
    ChannelConfig_ISO4_2P_VK,
    ChannelConfig_ISO4_2P_VKb,
    ChannelConfig_ISO4_2P_VK_2,
    ChannelConfig_ISO4_2P_VK_2b,
    ChannelConfig_V2V2,
    ChannelConfig_ISO5,
    ChannelConfig_ISO5b,
    ChannelConfig_ISO6,
    ChannelConfig_ISO6b,
    ChannelConfig_3D_ISO3,
    ChannelConfig_3D_ISO3b,
    ChannelConfig_3D_ISO2,
    ChannelConfig_3D_ISO2b,
    ChannelConfig_DUAL_SSM3,
    ChannelConfig_DUAL_SSM3b,
    ChannelConfig_TRI_SSM2,
    ChannelConfig_TRI_SSM2b,
    ChannelConfig_DUAL_VK,
    ChannelConfig_TRIPLE_VK_VV,
    ChannelConfig_TRIPLE_VK_VVb,
    ChannelConfig_TRIPLE_VK_VK,
    ChannelConfig_TRIPLE_VK_VKb,
    ChannelConfig_QUAD_VK,
    ChannelConfig_QUAD_VKb,
    ChannelConfig_V_V,
    ChannelConfig_VK,
};

// On any thread. A text is matched exactly; an unknown one gives ChannelConfig_unknown.

SKUAN_EXPORT ChannelConfig string_to_ChannelConfig(const AString& text);
/// Empty for ChannelConfig_unknown and for a value outside the enumeration.
SKUAN_EXPORT AString ChannelConfig_to_string(ChannelConfig config);

/// Whether there are channels: anything but unknown and "absent".
constexpr bool present(ChannelConfig config)
{
    return config > ChannelConfig_absent;
}
