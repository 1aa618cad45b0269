// The one reader of speeds, for their two notations: in texts with a letter behind, in messages without.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>

namespace skuan {

enum class SpeedLetter {
    required, ///< a number without X is the speed itself in units of 1/65536
    optional, ///< it is so only if it is too large for a multiple of normal play
};

/// See AString::to_speed. Exported for tests alone.
SKUAN_EXPORT bool read_speed(const AString& text, SpeedLetter letter, int* out);

} // namespace skuan
