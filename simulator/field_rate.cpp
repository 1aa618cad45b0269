// The rate within a standard's name.
#include <simulator/field_rate_p.h>

namespace simulator {

FieldRate field_rate(const QString& standard)
{
    const QString rest = standard.section(QLatin1Char('_'), 1);
    const QString rate = rest.left(rest.size() - 1);
    if (rate == QLatin1String("59_94"))
        return {60000, 1001};
    if (rate == QLatin1String("47_95"))
        return {48000, 1001};
    const int whole = rate.toInt();
    return whole > 0 ? FieldRate{whole, 1} : FieldRate();
}

} // namespace simulator
