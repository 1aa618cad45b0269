// The rows of the catalogue. The build reads every layout, and refuses one that is not sound.
#include <skuan/config/channel_catalogue_p.h>

#include <skuan/config/channel_notation_p.h>

namespace ChannelCF {

#define ROW(name, slots, channels, layout)                                                                   \
    {                                                                                                        \
        ConfigType_##name, #name, slots, channels, layout                                                    \
    }

// One configuration a line.
// clang-format off
static constexpr SorrelRow sorrel[] = {
    ROW(absent,         0,  0, nullptr),
    ROW(VVVV,           1,  4, "V0, V1, V2, V3"),
    ROW(VKVV,           1,  4, "VK(0,2), V1, V3"),
    ROW(VVVK,           1,  4, "V0, VK(1,3), V2"),
    ROW(VKVK,           1,  4, "VK(0,2), VK(1,3)"),
    ROW(SSM4,           1,  4, "SSM(0-3)"),
    ROW(SSM3,           1,  4, "SSM(0-2), V3"),
    ROW(SSM2,           1,  4, "SSM(0,1), V2, V3"),
    ROW(SSM6,           2,  8, "SSM(0-5), V6, V7"),
    ROW(SSM8,           2,  8, "SSM(0-7)"),
    ROW(ISO2,           1,  4, "ISO(0,1), V2, V3"),
    ROW(ISO3,           1,  4, "ISO(0-2), V3"),
    ROW(ISO4,           1,  4, "ISO(0-3)"),
    ROW(ISO4_2P_VK,     2,  8, "ISO(0-3), VK(4,5), V6, V7"),
    ROW(ISO4_2P_VK_2,   2,  8, "VK(0,1), V2, V3, ISO(4-7)"),
    ROW(ISO1_2P,        2,  6, "V0, V4, V5"),
    ROW(ISO2_2P,        2,  6, "ISO(0,1), V4, V5"),
    ROW(ISO3_2P,        2,  6, "ISO(0-2), V4, V5"),
    ROW(ISO4_2P,        2,  6, "ISO(0-3), V4, V5"),
    ROW(V2V2,           1,  4, "V2(0,2), V2(1,3)"),
    ROW(ISO5,           2,  8, "ISO(0-4), V5, V6, V7"),
    ROW(ISO6,           2,  8, "ISO(0-5), V6, V7"),
    ROW(ISO7,           2,  8, "ISO(0-6), V7"),
    ROW(ISO8,           2,  8, "ISO(0-7)"),
    ROW(C444_ISO_9,     3, 12, "ISO(0-8), V9, V10, V11"),
    ROW(C444_ISO_10,    3, 12, "ISO(0-9), V10, V11"),
    ROW(C444_ISO_11,    3, 12, "ISO(0-10), V11"),
    ROW(C444_ISO_12,    3, 12, "ISO(0-11)"),
    ROW(3D_ISO3,        2,  8, "ISO(V2(0,2),V2(1,3),V2(4,6)), V2(5,7)"),
    ROW(3D_ISO2,        2,  8, "ISO(V2(0,2),V2(1,3)), V2(4,6), V2(5,7)"),
    ROW(DUAL_SSM3,      2,  8, "ISO(SSM(0-2),SSM(3-5)), V6, V7"),
    ROW(TRI_SSM2,       2,  8, "ISO(SSM(0,1),SSM(2,3),SSM(4,5)), V6, V7"),
    ROW(DUAL_VK,        1,  4, "ISO(VK(0,2),VK(1,3))"),
    ROW(TRIPLE_VK_VV,   2,  8, "ISO(VK(0,2),VK(1,3),VK(4,6)), V5, V7"),
    ROW(TRIPLE_VK_VK,   2,  8, "ISO(VK(0,2),VK(1,3),VK(4,6)), VK(5,7)"),
    ROW(QUAD_VK,        2,  8, "ISO(VK(0,2),VK(1,3),VK(4,6),VK(5,7))"),
    ROW(V,              1,  4, "4K V0"),
    ROW(V_V,            2,  8, "4K V0, 4K V1"),
    ROW(VK,             2,  8, "4K VK(0,1)"),
    ROW(VV,             2,  8, "4K ISO(0,1)"),
    ROW(V_V_V,          3, 12, "4K V0, 4K V1, 4K V2"),
    ROW(VK_V,           3, 12, "4K VK(0,1), gap, 4K V2"),
    ROW(VV_V,           3, 12, "4K ISO(0,1), gap, 4K V2"),
    ROW(VVV,            3, 12, "4K ISO(0-2), gap, gap"),
    ROW(SSM2_V,         3, 12, "4K SSM(0,1), gap, 4K V2"),
    ROW(SSM3v2,         3, 12, "4K SSM(0-2), gap, gap"),
    ROW(C2_VV,          1,  2, "V0, V1"),
    ROW(C2_VK,          1,  2, "VK(0,1)"),
    ROW(C4_VK_VV,       1,  4, "VK(0,1), V2, V3"),
    ROW(C42_ISO_5,      2,  6, "ISO(0-4), V5"),
    ROW(C42_ISO_6,      2,  6, "ISO(0-5)"),
    ROW(C42_3VK,        2,  6, "ISO(VK(0,2),VK(1,3),VK(4,5))"),
    ROW(C44_4SSM2,      2,  8, "ISO(SSM(0,1),SSM(2,3),SSM(4,5),SSM(6,7))"),
    ROW(C444_5VK_VV,    3, 12, "ISO(VK(0,2),VK(1,3),VK(4,6),VK(5,7),VK(8,10)), V9, V11"),
    ROW(C444_5VK_VK,    3, 12, "ISO(VK(0,2),VK(1,3),VK(4,6),VK(5,7),VK(8,10)), VK(9,11)"),
    ROW(C444_6VK,       3, 12, "ISO(VK(0,2),VK(1,3),VK(4,6),VK(5,7),VK(8,10),VK(9,11))"),
    ROW(C444_5SSM2_VV,  3, 12, "ISO(SSM(0,1),SSM(2,3),SSM(4,5),SSM(6,7),SSM(8,9)), V10, V11"),
    ROW(C444_3SSM3_VVV, 3, 12, "ISO(SSM(0-2),SSM(3-5),SSM(6-8)), V9, V10, V11"),
};
// clang-format on

// These boards do with two, three or four outputs what the configuration was written for on the other.

static constexpr TansyRow tansy1[] = {
    {ConfigType_VVVV, ConfigType_QUAD_VK, "VK(0,1)"},
};

static constexpr TansyRow tansy2[] = {
    {ConfigType_VVVV, ConfigType_V, "VK(0,1)"},
    {ConfigType_V_V, ConfigType_V_V, "V0, V1"},
    {ConfigType_VK, ConfigType_C444_3SSM3_VVV, "VK(0,1)"},
};

static constexpr TansyRow tansy3[] = {
    {ConfigType_VVVV, ConfigType_VKVV, "VK(0,1), VK(2,3)"},
    {ConfigType_VVVK, ConfigType_VVVK, "V0, V1, VK(2,3)"},
    {ConfigType_VKVK, ConfigType_QUAD_VK, "VK(0,1), VK(2,3)"},
    {ConfigType_C2_VV, ConfigType_C2_VK, "VK(0,1), VK(2,3)"},
    {ConfigType_C42_ISO_5, ConfigType_C42_ISO_6, "VK(0,1), VK(2,3)"},
};

static constexpr bool in_order_and_sound()
{
    unsigned value = 0;
    for (const SorrelRow& row : sorrel)
        if (row.type != value++ || (row.layout && !sound(row.layout, row.channel_count)))
            return false;
    return true;
}
static_assert(in_order_and_sound());

static constexpr bool sound_row(const TansyRow& row)
{
    constexpr unsigned most_outputs = 4;
    return row.first <= row.last && sound(row.layout, most_outputs);
}
static_assert(std::ranges::all_of(tansy1, sound_row) && std::ranges::all_of(tansy2, sound_row) &&
              std::ranges::all_of(tansy3, sound_row));

constexpr std::span<const SorrelRow, ConfigType_count> sorrel_rows = sorrel;
constexpr std::span<const TansyRow> tansy1_rows = tansy1, tansy2_rows = tansy2, tansy3_rows = tansy3;

} // namespace ChannelCF
