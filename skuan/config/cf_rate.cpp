// The rates at 60 Hz, and the others from them.
#include <skuan/config/cf_rate.h>

#include <skuan/foundation/assertfail.h>

#include <algorithm>
#include <iterator>

namespace CFRate {

namespace {

struct Rates
{
    unsigned hd, sd; // at 60 Hz
};

constexpr Rates compression_rates[] = {
    {25, 15},  {30, 20},   {35, 25},   {40, 30},   {50, 35},   {60, 40},   {70, 45},
    {80, 50},  {90, 55},   {100, 60},  {110, 65},  {120, 70},  {130, 75},  {140, 80},
    {150, 90}, {160, 100}, {170, 110}, {180, 120}, {190, 130}, {200, 140},
};

Rates rates(unsigned index)
{
    if (index < std::size(compression_rates))
        return compression_rates[index];
    assertfail(__FILE__, __LINE__, "q_index < countof (compression_rates)");
    return {200, 140};
}

/// In whole numbers at every step: the rate for `frequency`, rounded to a multiple of 5.
unsigned scaled(unsigned rate_at_60, unsigned frequency)
{
    const unsigned rate = rate_at_60 * frequency / 60;
    return std::clamp((rate * 2 + 5) / 10 * 5, 15u, 200u);
}

} // namespace

unsigned hd60_rate(unsigned index)
{
    return rates(index).hd;
}

unsigned hd50_rate(unsigned index)
{
    return scaled(rates(index).hd, 50);
}

unsigned hd48_rate(unsigned index)
{
    return scaled(rates(index).hd, 48);
}

unsigned sd60_rate(unsigned index)
{
    return rates(index).sd;
}

unsigned sd50_rate(unsigned index)
{
    return scaled(rates(index).sd, 50);
}

} // namespace CFRate
