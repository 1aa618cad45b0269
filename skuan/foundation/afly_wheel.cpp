// When samples are trusted, and what follows from them.
#include <skuan/foundation/afly_wheel.h>

#include <skuan/foundation/limit_cvt.h>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int sequential_distance = 20;

/// In ticks of 1/60 s; 0 for a bad time.
unsigned elapsed(HRTime since)
{
    return skuan::limit_cvt<unsigned>((HRTime::now() - since) * 60 / HRTime::seconds(1));
}

/// Rounded to nearest.
std::int64_t calc_distance(int speed, unsigned ticks)
{
    return limit_cvt_int((std::int64_t{speed} * ticks + 32768) >> 16);
}

} // namespace

std::int64_t AFlyWheel::extrapolate(const Measurement& from) const
{
    return from.is_valid() ? from.value + calc_distance(speed_, elapsed(from.time)) : 0;
}

bool AFlyWheel::is_sequential(const Measurement& a, const Measurement& b) const
{
    return a.is_valid() && b.is_valid() && std::abs(extrapolate(a) - extrapolate(b)) < sequential_distance;
}

bool AFlyWheel::is_held() const
{
    return !hold_start_.is_badtime() && elapsed(hold_start_) < hold_;
}

bool AFlyWheel::is_active() const
{
    if (!flywheel_.is_valid())
        return false;
    return elapsed(flywheel_.time) <= hold_ || (!hold_start_.is_badtime() && elapsed(hold_start_) <= hold_);
}

void AFlyWheel::set_value(int value)
{
    const Measurement measurement{value, HRTime::now()};
    if (!is_sequential(sequence_last_, measurement))
        sequence_start_ = measurement.time;
    sequence_last_ = measurement;
    if (elapsed(sequence_start_) < threshold_ || is_held())
        return;
    flywheel_ = measurement;
    hold_start_ = {};
}

int AFlyWheel::get_value() const
{
    return std::max(min_value_, std::min(max_value_, limit_cvt_int(raw_value())));
}

std::int64_t AFlyWheel::raw_value() const
{
    return is_active() ? extrapolate(flywheel_) : sequence_last_.value;
}

void AFlyWheel::flywheel_longer()
{
    if (!is_active())
        return;
    end_sequence();
    hold_start_ = HRTime::now();
}

void AFlyWheel::clear()
{
    end_sequence();
    flywheel_ = {};
    hold_start_ = {};
}

void AFlyWheel::end_sequence()
{
    sequence_start_ = {};
    sequence_last_ = {};
}
