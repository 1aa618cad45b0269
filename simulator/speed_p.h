// Speeds: 16.16 fixed-point numbers, where 65536 is normal, and their text on the wire.
#pragma once

#include <QString>

#include <optional>

namespace simulator {

constexpr qint32 normal_speed = 65536;

// Decimal text in multiples of normal speed, "1" or "-0.5": at most 15 digits behind the point, no
// trailing zeros.
QString speed_text(qint32 speed);

// Takes such a text, also with an X behind it; a whole number beyond what multiples can reach is the
// fixed-point number itself. Nothing for any other text.
std::optional<qint32> to_speed(const QString& text);

} // namespace simulator
