// What a timecode says, and its arithmetic.
#include <skuan/time/atimecode.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/time/field_counts_p.h>

using skuan::field_counts;

namespace Vantor {

ATimecode::ATimecode(VideoFrequency frequency, unsigned hours, unsigned minutes, unsigned seconds,
                     unsigned frames, bool f2)
    : ATimecode(frequency, defaultDropframeFlag(frequency), hours, minutes, seconds, frames, f2)
{
}

ATimecode::ATimecode(VideoFrequency frequency, DropframeFlag flag, unsigned hours, unsigned minutes,
                     unsigned seconds, unsigned frames, bool f2)
    : ATimecode(frequency, flag, field_counts(frequency, flag).count(hours, minutes, seconds, frames, f2))
{
}

/// An undefined value reads as nothing each time, whatever it was before.
void ATimecode::read() const
{
    cache_valid_ = defined_;
    cache_ = defined_ ? skuan::with_field_counts(std_, df_,
                                                 [this]<const skuan::FieldCounts & counts>() {
                                                     return skuan::read_label<counts>(nfields_);
                                                 })
                      : skuan::TimecodeReading();
}

unsigned ATimecode::get_fields_per_second() const
{
    return field_counts(get_std(), df_).second;
}

unsigned ATimecode::get_fields_per_minute() const
{
    return field_counts(get_std(), df_).minute;
}

unsigned ATimecode::get_fields_per_10minutes() const
{
    return field_counts(get_std(), df_).ten_minutes;
}

unsigned ATimecode::get_fields_per_hour() const
{
    return field_counts(get_std(), df_).hour;
}

unsigned ATimecode::get_fields_per_day() const
{
    return field_counts(get_std(), df_).day;
}

int ATimecode::cmp24(const ATimecode& other) const
{
    if (!defined_ || !other.defined_ || nfields_ == other.nfields_)
        return cmp(other);
    const unsigned day = get_fields_per_day();
    const unsigned ahead = (day + nfields_ % day - other.nfields_ % day) % day;
    if (ahead == 0)
        return 0;
    return ahead > day / 2 ? -1 : 1;
}

void ATimecode::add(unsigned nfields, bool wrap)
{
    *this += nfields;
    if (wrap)
        wrap24();
}

ATimecode ATimecode::add24(ATimecode a, unsigned nfields)
{
    a.add24(nfields);
    return a;
}

void ATimecode::subtract(unsigned nfields, bool wrap)
{
    if (!defined_)
        return;
    if (wrap && nfields > nfields_) {
        const unsigned day = get_fields_per_day();
        nfields %= day;
        wrap24();
        if (nfields > nfields_)
            nfields_ += day;
    }
    change(nfields_ - nfields);
}

ATimecode ATimecode::sub24(ATimecode a, unsigned nfields)
{
    a.sub24(nfields);
    return a;
}

/// By the label, which may be one that was read before the flag was set.
void ATimecode::wrap24()
{
    const auto& label = reading();
    if (defined_)
        change(
            field_counts(std_, df_).count(label.hours, label.minutes, label.seconds, label.frames, label.f2));
}

ATimecode ATimecode::get24() const
{
    ATimecode result = *this;
    if (defined_ && nfields_ >= get_fields_per_day())
        result.wrap24();
    return result;
}

ATimecode ATimecode::t24() const
{
    return ATimecode(get_std(), get_df(), get_fields_per_day());
}

void ATimecode::set_df(DropframeFlag flag)
{
    if (!isValid(flag))
        assertfail(__FILE__, __LINE__, "Vantor::isValid (flag)");
    else if (hasDropframe(std_))
        df_ = flag; // and the label that was read stays, see the header
}

void ATimecode::force_f1()
{
    if (get_f2())
        force_field(false);
}

void ATimecode::force_f2()
{
    if (!get_f2())
        force_field(true);
}

void ATimecode::force_field(bool f2)
{
    if (get_f2() == f2)
        return;
    cache_.f2 = f2; // the rest of the label stays true: it is the same frame
    nfields_ += f2 ? 1 : -1;
}

bool ATimecode::is_inrange(const ATimecode& start, const ATimecode& duration) const
{
    return defined_ && start.defined_ && duration.defined_ && start <= *this && *this < start + duration;
}

bool ATimecode::is_inrange24(ATimecode start, ATimecode duration) const
{
    if (!defined_ || !start.defined_ || !duration.defined_ || get_days() != 0)
        return false;
    start.wrap24();
    duration.wrap24();
    ATimecode end = start + duration;
    if (end.get_days() == 0)
        return is_inrange(start, duration);
    end.wrap24();
    return start <= *this || *this < end;
}

KVRP3::Timecode ATimecode::to_kvrp3(VideoResolution resolution) const
{
    KVRP3::Timecode result;
    if (!defined_)
        return result;
    result.valid = true;
    result.set_video_standard(Vantor::to_kvrp3(toVideoStandard(resolution, std_)));
    if (hasDropframe(std_))
        result.set_drop_frame_flag(Vantor::to_kvrp3(df_));
    result.set_position(static_cast<int>(nfields_)); // modulo 2^32, as it came
    return result;
}

} // namespace Vantor
