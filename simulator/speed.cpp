// Speeds to text and back.
#include <simulator/speed_p.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace simulator {

QString speed_text(qint32 speed)
{
    const qint64 magnitude = std::abs(static_cast<qint64>(speed));
    QString text = QString::number(magnitude >> 16);
    if (speed < 0)
        text.prepend(QLatin1Char('-'));
    qint64 rest = magnitude & 0xffff;
    if (rest != 0)
        text += QLatin1Char('.');
    for (int digit = 0; rest != 0 && digit < 15; ++digit) {
        rest *= 10;
        text += QChar::fromLatin1(static_cast<char>('0' + (rest >> 16)));
        rest &= 0xffff;
    }
    return text;
}

std::optional<qint32> to_speed(const QString& text)
{
    const bool marked = text.endsWith(QLatin1Char('X'));
    const QString number = marked ? text.left(text.size() - 1) : text;
    const int sign = number.startsWith(QLatin1Char('-')) || number.startsWith(QLatin1Char('+')) ? 1 : 0;
    const auto points = number.count(QLatin1Char('.'));
    const bool plain = std::all_of(number.begin() + sign, number.end(), [](QChar c) {
        return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('.');
    });
    if (!plain || points > 1 || number.size() - sign - points < 1)
        return std::nullopt;

    constexpr double least = std::numeric_limits<qint32>::min();
    constexpr double most = std::numeric_limits<qint32>::max();
    const double multiple = number.toDouble();
    double fixed = std::nearbyint(multiple * normal_speed);
    if ((fixed < least || fixed > most) && !marked && points == 0)
        fixed = multiple;
    if (fixed < least || fixed > most)
        return std::nullopt;
    return static_cast<qint32>(fixed);
}

} // namespace simulator
