// Arithmetic that stops at the limits, and the clock behind it.
#include <skuan/foundation/hr_time.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/hr_clock_p.h>
#include <skuan/platform/clock.h>

#include <atomic>
#include <limits>

namespace {

constexpr skuan::HRClock machine_clock{1'000'000'000, skuan::platform::monotonic_ns};
std::atomic<const skuan::HRClock*> present_clock{&machine_clock};

constexpr std::int64_t limit(bool negative)
{
    return negative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
}

std::int64_t sum(std::int64_t a, std::int64_t b)
{
    std::int64_t result;
    return __builtin_add_overflow(a, b, &result) ? limit(a < 0) : result;
}

std::int64_t difference(std::int64_t a, std::int64_t b)
{
    std::int64_t result;
    return __builtin_sub_overflow(a, b, &result) ? limit(a < 0) : result;
}

std::int64_t product(std::int64_t a, std::int64_t b)
{
    std::int64_t result;
    return __builtin_mul_overflow(a, b, &result) ? limit((a < 0) != (b < 0)) : result;
}

// By anything but 0.
std::int64_t quotient(std::int64_t a, std::int64_t b)
{
    return b == -1 ? difference(0, a) : a / b;
}

std::int64_t frequency()
{
    const std::int64_t frequency = skuan::hr_clock().frequency;
    return SKUAN_CHECK(frequency > 0) ? frequency : 0;
}

} // namespace

const skuan::HRClock& skuan::hr_clock()
{
    return *present_clock.load();
}

void skuan::set_hr_clock(const HRClock* clock)
{
    present_clock = clock ? clock : &machine_clock;
}

const HRTime HRTime::BadTime;

HRTime HRTime::now()
{
    return frequency() == 0 ? BadTime : HRTime(true, skuan::hr_clock().ticks());
}

HRTime HRTime::seconds(std::int64_t n)
{
    return {false, product(n, frequency())};
}

HRTime HRTime::mseconds(std::int64_t n)
{
    return seconds(n / 1000) + useconds(n % 1000 * 1000);
}

HRTime HRTime::useconds(std::int64_t n)
{
    return seconds(n / 1'000'000) + seconds(n % 1'000'000) / 1'000'000;
}

HRTime operator+(HRTime a, HRTime b)
{
    if (a.is_badtime() || b.is_badtime() || (a.is_actual_time() && b.is_actual_time()))
        return HRTime::BadTime;
    return {a.is_actual_time() || b.is_actual_time(), sum(a.ticks_, b.ticks_)};
}

HRTime operator-(HRTime a, HRTime b)
{
    if (a.is_badtime() || b.is_badtime() || (a.is_duration() && b.is_actual_time()))
        return HRTime::BadTime;
    return {a.is_actual_time() && b.is_duration(), difference(a.ticks_, b.ticks_)};
}

HRTime operator*(HRTime a, std::int64_t n)
{
    return a.is_duration() ? HRTime(false, product(a.ticks_, n)) : HRTime::BadTime;
}

HRTime operator/(HRTime a, std::int64_t n)
{
    return a.is_duration() && n != 0 ? HRTime(false, quotient(a.ticks_, n)) : HRTime::BadTime;
}

std::int64_t operator/(HRTime a, HRTime b)
{
    if (a.is_actual_time_ != b.is_actual_time_ || b.ticks_ == 0)
        return 0;
    return quotient(a.ticks_, b.ticks_);
}

bool operator<(HRTime a, HRTime b)
{
    if (a.is_badtime() || b.is_badtime())
        return a.is_badtime() && !b.is_badtime();
    if (a.is_actual_time_ == b.is_actual_time_)
        return a.ticks_ < b.ticks_;
    assertfail(__FILE__, __LINE__, a.is_duration() ? "other.is_duration ()" : "other.is_actual_time ()");
    return a.is_duration();
}

AString HRTime::to_astring() const
{
    if (is_badtime())
        return AString::l1("<bad time>");
    const auto second = static_cast<std::uint64_t>(frequency());
    if (second == 0)
        return AString::l1("<hr time not initialized>");

    const auto ticks = static_cast<std::uint64_t>(ticks_);
    std::uint64_t rest = ticks_ < 0 ? 0 - ticks : ticks;
    AString text = AString::l1(ticks_ < 0 ? "-" : "");
    bool begun = false;
    const auto write = [&](std::uint64_t unit, const char* mark) {
        text += AString::from_uint64_t(rest / unit, begun ? 2 : 0, '0') + AString::l1(mark);
        rest %= unit;
        begun = true;
    };
    static constexpr struct
    {
        unsigned seconds;
        const char* mark;
    } units[] = {{86400, "+"}, {3600, ":"}, {60, ":"}};
    for (const auto& unit : units)
        if (begun || rest >= unit.seconds * second)
            write(unit.seconds * second, unit.mark);
    write(second, ".");
    return text + AString::from_uint64_t(rest * 1000 / second, 3, '0');
}

std::string HRTime::to_string() const
{
    return to_astring().to_string();
}
