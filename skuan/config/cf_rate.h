// The compression rates behind the 20 steps of the quality scale.
#pragma once

#include <skuan/export.h>

/// Rates, as the configuration has them, for step `index`, 0 to 19, of the family and frame or field
/// frequency in the name. A higher index is reported, and gives what the 60 Hz rate of 200 (HD) or 140 (SD)
/// gives. Any thread.
namespace CFRate {

SKUAN_EXPORT unsigned hd60_rate(unsigned index);
SKUAN_EXPORT unsigned hd50_rate(unsigned index);
SKUAN_EXPORT unsigned hd48_rate(unsigned index);
SKUAN_EXPORT unsigned sd60_rate(unsigned index);
SKUAN_EXPORT unsigned sd50_rate(unsigned index);

} // namespace CFRate
