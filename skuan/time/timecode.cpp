// The older kind's own numbers, and its own reading of them.
#include <skuan/time/timecode.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/time/field_counts_p.h>
#include <skuan/time/label_text_p.h>

#include <tuple>

namespace {

// At 48 and 47.95 Hz: a day of 50 fields a second, and everything shorter of 48. Meant so.
constexpr skuan::FieldCounts counts_48_day_50 = [] {
    skuan::FieldCounts counts = skuan::counts_48;
    counts.day = skuan::counts_50.day;
    return counts;
}();

const skuan::FieldCounts& counts_of(Timecode::Rate rate, bool df)
{
    switch (rate) {
    case Timecode::Rate_60:
        return skuan::counts_60;
    case Timecode::Rate_59_94:
        return df ? skuan::counts_60_df : skuan::counts_60;
    case Timecode::Rate_50:
        return skuan::counts_50;
    case Timecode::Rate_48:
    case Timecode::Rate_47_95:
        return counts_48_day_50;
    }
    assertfail(__FILE__, __LINE__, "rate <= Rate_47_95");
    return skuan::counts_60_df;
}

skuan::TimecodeReading label_of(Timecode::Rate rate, bool df, unsigned nfields)
{
    const skuan::FieldCounts& counts = counts_of(rate, df);
    if (counts.drops())
        return skuan::read_label<skuan::counts_60_df>(nfields);
    // 48 and 47.95 Hz too; meant so.
    return counts.second == 60 ? skuan::read_label<skuan::counts_60>(nfields)
                               : skuan::read_label<skuan::counts_50>(nfields);
}

} // namespace

Timecode::Timecode(Rate rate, unsigned nfields) : Timecode(rate, true, nfields) {}

Timecode::Timecode(Rate rate, bool df, unsigned nfields) : defined_(true), rate_(rate), nfields_(nfields)
{
    const bool known = SKUAN_CHECK(rate <= Rate_47_95);
    df_ = df && (rate == Rate_59_94 || !known);
}

unsigned Timecode::fields_per_second(Rate rate, bool df)
{
    return counts_of(rate, df).second;
}

unsigned Timecode::fields_per_minute(Rate rate, bool df)
{
    return counts_of(rate, df).minute;
}

unsigned Timecode::fields_per_10minutes(Rate rate, bool df)
{
    return counts_of(rate, df).ten_minutes;
}

unsigned Timecode::fields_per_hour(Rate rate, bool df)
{
    return counts_of(rate, df).hour;
}

unsigned Timecode::fields_per_day(Rate rate, bool df)
{
    return counts_of(rate, df).day;
}

unsigned Timecode::to_fields(Rate rate, bool df, bool f2, unsigned hours, unsigned minutes, unsigned seconds,
                             unsigned frames)
{
    return counts_of(rate, df).count(hours, minutes, seconds, frames, f2);
}

/// The label, worked out if need be. Of an undefined value it is nothing.
const skuan::TimecodeReading& Timecode::reading() const
{
    if (!cache_valid_) {
        cache_valid_ = defined_;
        cache_ = defined_ ? label_of(rate_, df_, nfields_) : skuan::TimecodeReading();
    }
    return cache_;
}

const skuan::TimecodeReading& Timecode::checked_reading() const
{
    const skuan::TimecodeReading& label = reading();
    if (!cache_valid_)
        assertfail(__FILE__, __LINE__, "cache_valid");
    return label;
}

unsigned Timecode::get_days() const
{
    return checked_reading().days;
}

unsigned Timecode::get_hours() const
{
    return checked_reading().hours;
}

unsigned Timecode::get_minutes() const
{
    return checked_reading().minutes;
}

unsigned Timecode::get_seconds() const
{
    return checked_reading().seconds;
}

unsigned Timecode::get_frames() const
{
    return checked_reading().frames;
}

bool Timecode::get_f2() const
{
    if (!defined_)
        assertfail(__FILE__, __LINE__, "defined");
    return reading().f2;
}

int Timecode::cmp(const Timecode& other) const
{
    const auto key = [](const Timecode& t) { return std::tuple(t.defined_, t.rate_, t.nfields_); };
    return key(*this) < key(other) ? -1 : key(other) < key(*this);
}

Timecode& Timecode::operator+=(unsigned nfields)
{
    set_nfields(nfields_ + nfields);
    return *this;
}

Timecode& Timecode::operator+=(const Timecode& other)
{
    if (defined_ && !other.defined_)
        set_undefined();
    return *this += other.nfields_;
}

void Timecode::subtract(unsigned nfields, bool wrap)
{
    unsigned from = nfields_;
    if (wrap && defined_) {
        const unsigned day = get_fields_per_day();
        from %= day;
        if (nfields > from)
            nfields %= day;
        if (nfields > from)
            from += day;
    }
    set_nfields(from - nfields);
}

void Timecode::subtract(const Timecode& other, bool wrap)
{
    if (defined_ && !other.defined_)
        set_undefined();
    subtract(other.nfields_, wrap);
}

void Timecode::wrap24()
{
    if (defined_)
        set_nfields(nfields_ % get_fields_per_day());
}

void Timecode::set_nfields(unsigned nfields)
{
    if (!defined_ || nfields == nfields_)
        return;
    nfields_ = nfields;
    cache_valid_ = false;
}

AString Timecode::to_astring(unsigned groups) const
{
    if (!SKUAN_CHECK(defined_))
        return AString();
    // Unlike the newer kind, it may come to no group at all; meant so.
    const unsigned least = groups == 0 && reading().frames != 0 ? 1 : groups;
    return skuan::label_text(reading(), df_, skuan::label_groups(reading(), least));
}

std::string Timecode::to_string(unsigned groups) const
{
    return to_astring(groups).to_string();
}
