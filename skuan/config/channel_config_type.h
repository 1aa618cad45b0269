// The names by which a board and the configuration of a set of its channels are known.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>

namespace ChannelCF {

/// How a set of four physical channels, or two or three sets together, make user channels. The text of
/// each, as the items "ChannelConfigurationSet0" to 2 hold it, is the name behind the prefix.
enum ConfigType : unsigned {
    ConfigType_absent,
    ConfigType_VVVV,
    ConfigType_VKVV,
    ConfigType_VVVK,
    ConfigType_VKVK,
    ConfigType_SSM4,
    ConfigType_SSM3,
    ConfigType_SSM2,
    ConfigType_SSM6,
    ConfigType_SSM8,
    ConfigType_ISO2,
    ConfigType_ISO3,
    ConfigType_ISO4,
    ConfigType_ISO4_2P_VK,
    ConfigType_ISO4_2P_VK_2,
    ConfigType_ISO1_2P,
    ConfigType_ISO2_2P,
    ConfigType_ISO3_2P,
    ConfigType_ISO4_2P,
    ConfigType_V2V2,
    ConfigType_ISO5,
    ConfigType_ISO6,
    ConfigType_ISO7,
    ConfigType_ISO8,
    ConfigType_C444_ISO_9,
    ConfigType_C444_ISO_10,
    ConfigType_C444_ISO_11,
    ConfigType_C444_ISO_12,
    ConfigType_3D_ISO3,
    ConfigType_3D_ISO2,
    ConfigType_DUAL_SSM3,
    ConfigType_TRI_SSM2,
    ConfigType_DUAL_VK,
    ConfigType_TRIPLE_VK_VV,
    ConfigType_TRIPLE_VK_VK,
    ConfigType_QUAD_VK,
    ConfigType_V, // from here to SSM3v2: 4K
    ConfigType_V_V,
    ConfigType_VK,
    ConfigType_VV,
    ConfigType_V_V_V,
    ConfigType_VK_V,
    ConfigType_VV_V,
    ConfigType_VVV,
    ConfigType_SSM2_V,
    ConfigType_SSM3v2,
    ConfigType_C2_VV,
    ConfigType_C2_VK,
    ConfigType_C4_VK_VV,
    ConfigType_C42_ISO_5,
    ConfigType_C42_ISO_6,
    ConfigType_C42_3VK,
    ConfigType_C44_4SSM2,
    ConfigType_C444_5VK_VV,
    ConfigType_C444_5VK_VK,
    ConfigType_C444_6VK,
    ConfigType_C444_5SSM2_VV,
    ConfigType_C444_3SSM3_VVV,
};
constexpr unsigned ConfigType_count = ConfigType_C444_3SSM3_VVV + 1;

enum BoardType : unsigned {
    BoardType_invalid,
    BoardType_sorrel,
    BoardType_tansy1,
    BoardType_tansy2,
    BoardType_tansy3,
};

// On any thread. A text is matched exactly; an unknown one gives "absent" or "invalid".

SKUAN_EXPORT ConfigType string_to_ConfigType(const AString& text);
SKUAN_EXPORT AString ConfigType_to_string(ConfigType type); ///< empty for a value outside the enumeration
SKUAN_EXPORT BoardType string_to_BoardType(const AString& text);
SKUAN_EXPORT AString BoardType_to_string(BoardType type); ///< "????" for a value outside the enumeration

} // namespace ChannelCF
