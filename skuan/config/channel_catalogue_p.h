// The catalogue of channel configurations: what each board makes of each configuration.
#pragma once

#include <skuan/config/channel_config_type.h>

#include <span>

namespace ChannelCF {

// Layouts are written as channel_notation_p.h tells.

struct SorrelRow
{
    ConfigType type;
    const char* name;
    unsigned slots;         ///< sets of four channels that the configuration occupies
    unsigned channel_count; ///< below 4 * slots, the configuration closes the board
    const char* layout;     ///< null for "absent"
};

struct TansyRow
{
    ConfigType first, last; ///< the row is that of every value from `first` to `last`
    const char* layout;
};

/// One row for each value, in the order of the values.
extern const std::span<const SorrelRow, ConfigType_count> sorrel_rows;

// A value without a row has no configuration there.
extern const std::span<const TansyRow> tansy1_rows, tansy2_rows, tansy3_rows;

} // namespace ChannelCF
