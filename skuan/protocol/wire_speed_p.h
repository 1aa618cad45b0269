// How a speed stands in a message: the notation of AString::from_speed without its letter.
#pragma once

#include <skuan/foundation/speed_notation_p.h>

namespace KVRP3 {

/// Fifteen decimals, or as many fewer as say the same, bring every speed back as it was.
inline AString from_wire_speed(int speed)
{
    return AString::from_speed(speed, 15).remove_right(1);
}

/// Reads a multiple of normal play, with or without the letter. A number too large for that is the speed
/// itself in units of 1/65536. False leaves `speed`, which may be null, untouched.
inline bool to_wire_speed(const AString& text, int* speed)
{
    return skuan::read_speed(text, skuan::SpeedLetter::optional, speed);
}

} // namespace KVRP3
