// Arithmetic that stops at the ends of 64 bits.
#include <skuan/foundation/hr_time.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/hr_clock_p.h>
#include <skuan/platform/clock.h>

#include <iterator>
#include <limits>

namespace skuan {

std::atomic<HRClock> hr_clock{platform::monotonic_ns};

} // namespace skuan

namespace {

using Limits = std::numeric_limits<std::int64_t>;

constexpr std::int64_t second = 1'000'000'000;

std::int64_t end_of_range(bool negative)
{
    return negative ? Limits::min() : Limits::max();
}

std::int64_t product(std::int64_t a, std::int64_t b)
{
    std::int64_t result = 0;
    return __builtin_mul_overflow(a, b, &result) ? end_of_range((a < 0) != (b < 0)) : result;
}

std::int64_t sum(std::int64_t a, std::int64_t b)
{
    std::int64_t result = 0;
    return __builtin_add_overflow(a, b, &result) ? end_of_range(a < 0) : result;
}

std::int64_t difference(std::int64_t a, std::int64_t b)
{
    std::int64_t result = 0;
    return __builtin_sub_overflow(a, b, &result) ? end_of_range(a < 0) : result;
}

/// Of the caller: `b` is not 0.
std::int64_t quotient(std::int64_t a, std::int64_t b)
{
    return b == -1 ? difference(0, a) : a / b;
}

} // namespace

const HRTime HRTime::BadTime;

HRTime HRTime::now()
{
    return HRTime(true, skuan::hr_clock.load(std::memory_order_acquire)());
}

HRTime HRTime::days(std::int64_t n)
{
    return seconds(product(n, 86400));
}

HRTime HRTime::hours(std::int64_t n)
{
    return seconds(product(n, 3600));
}

HRTime HRTime::minutes(std::int64_t n)
{
    return seconds(product(n, 60));
}

HRTime HRTime::seconds(std::int64_t n)
{
    return HRTime(false, product(n, second));
}

HRTime HRTime::mseconds(std::int64_t n)
{
    return HRTime(false, product(n, second / 1000));
}

HRTime HRTime::useconds(std::int64_t n)
{
    return HRTime(false, product(n, second / 1'000'000));
}

HRTime HRTime::operator+(HRTime other) const
{
    if (is_badtime() || other.is_badtime() || (moment_ && other.moment_))
        return BadTime;
    return HRTime(moment_ || other.moment_, sum(ticks_, other.ticks_));
}

HRTime HRTime::operator-(HRTime other) const
{
    if (is_badtime() || other.is_badtime() || (!moment_ && other.moment_))
        return BadTime;
    return HRTime(moment_ && !other.moment_, difference(ticks_, other.ticks_));
}

HRTime HRTime::operator*(std::int64_t n) const
{
    return is_duration() ? HRTime(false, product(ticks_, n)) : BadTime;
}

HRTime HRTime::operator/(std::int64_t n) const
{
    return is_duration() && n != 0 ? HRTime(false, quotient(ticks_, n)) : BadTime;
}

std::int64_t HRTime::operator/(HRTime other) const
{
    if (is_badtime() || moment_ != other.moment_ || other.ticks_ == 0)
        return 0;
    return quotient(ticks_, other.ticks_);
}

bool operator<(HRTime a, HRTime b)
{
    if (a.is_badtime() || b.is_badtime())
        return a.is_badtime() && !b.is_badtime();
    if (a.moment_ && !SKUAN_CHECK(b.is_actual_time()))
        return false;
    if (!a.moment_ && !SKUAN_CHECK(b.is_duration()))
        return true;
    return a.ticks_ < b.ticks_;
}

AString HRTime::to_astring() const
{
    if (is_badtime())
        return AString::l1("<bad time>");
    const bool negative = ticks_ < 0;
    const std::uint64_t ns = negative ? -static_cast<std::uint64_t>(ticks_) : ticks_;
    const std::uint64_t s = ns / second;
    const struct
    {
        std::uint64_t value;
        const char* behind;
    } parts[] = {{s / 86400, "+"}, {s / 3600 % 24, ":"}, {s / 60 % 60, ":"}, {s % 60, "."}};

    AString text = AString::l1(negative ? "-" : "");
    bool begun = false;
    for (const auto& part : parts) {
        const bool last = &part == std::end(parts) - 1;
        if (begun || part.value != 0 || last)
            text += AString::from_uint64_t(part.value, begun ? 2 : 0, '0') + AString::l1(part.behind);
        begun = begun || part.value != 0;
    }
    return text + AString::from_uint64_t(ns / 1'000'000 % 1000, 3, '0');
}

std::string HRTime::to_string() const
{
    return to_astring().to_string();
}
