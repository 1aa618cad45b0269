// The older way to find the output that carries the key of a video output.
#pragma once

#include <skuan/export.h>

#include <QStringList>

namespace ChannelCF {

/// `names` are the texts of the sets' configurations, the first set first. Gives the output with the key of
/// video output `output`, both counted over the whole board; -1 when there is none, or when `output` is no
/// user channel's first video output, or is beyond the board. A name that is not known counts as "VVVV".
///
/// It stands on tables of its own, older than the catalogue, which know other names than that and place some
/// keys on other outputs. That is meant: ask ChannelConfigSpec about the board that is there. Any thread.
SKUAN_EXPORT int find_key(const QStringList& names, unsigned output);

} // namespace ChannelCF
