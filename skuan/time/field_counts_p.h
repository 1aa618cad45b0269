// The numbers of fields as constants, so that the compiler divides by them without dividing.
#pragma once

#include <skuan/time/timecode_reading.h>
#include <skuan/time/video_frequency.h>

namespace skuan {

struct FieldCounts
{
    unsigned second, minute, ten_minutes, hour, day;

    constexpr bool drops() const { return minute != 60 * second; }
    /// Without days. Modulo 2^32.
    constexpr unsigned count(unsigned hours, unsigned minutes, unsigned seconds, unsigned frames,
                             bool f2) const
    {
        return f2 + 2 * frames + second * seconds + minute * (minutes % 10) + ten_minutes * (minutes / 10) +
               hour * hours;
    }
};

inline constexpr FieldCounts no_counts{0, 0, 0, 0, 0};
inline constexpr FieldCounts counts_60{60, 3600, 36000, 216000, 5184000};
inline constexpr FieldCounts counts_60_df{60, 3596, 35964, 215784, 5178816};
inline constexpr FieldCounts counts_50{50, 3000, 30000, 180000, 4320000};
inline constexpr FieldCounts counts_48{48, 2880, 28800, 172800, 4147200};

/// Calls `f` with the counts, as a constant that a template can take.
template <typename F>
constexpr auto with_field_counts(Vantor::VideoFrequency frequency, Vantor::DropframeFlag flag, F f)
{
    using namespace Vantor;
    switch (frequency) {
    case VideoFrequency_59_94Hz:
        if (flag == DropframeFlag_df)
            return f.template operator()<counts_60_df>();
        if (flag != DropframeFlag_ndf)
            break;
        [[fallthrough]];
    case VideoFrequency_60Hz:
        return f.template operator()<counts_60>();
    case VideoFrequency_50Hz:
        return f.template operator()<counts_50>();
    case VideoFrequency_48Hz:
    case VideoFrequency_47_95Hz:
        return f.template operator()<counts_48>();
    case VideoFrequency_invalid:
        break;
    }
    return f.template operator()<no_counts>();
}

/// The counts themselves; all 0 for an invalid frequency, and for an invalid flag where it matters.
constexpr const FieldCounts& field_counts(Vantor::VideoFrequency frequency, Vantor::DropframeFlag flag)
{
    return *with_field_counts(frequency, flag, []<const FieldCounts & counts>() { return &counts; });
}

/// The label of a count. Of the caller: the counts are not all 0.
template <const FieldCounts& counts>
constexpr TimecodeReading read_label(unsigned count)
{
    constexpr unsigned dropped = 4; // fields at the start of each minute but the tenth
    const unsigned in_day = count % counts.day;
    const unsigned in_hour = in_day % counts.hour;
    const unsigned tens = in_hour / counts.ten_minutes;
    unsigned minute = 0;
    unsigned in_minute = in_hour % counts.ten_minutes;
    if constexpr (!counts.drops()) {
        minute = in_minute / counts.minute;
        in_minute %= counts.minute;
    } else if (in_minute >= dropped) { // the first fields of the ten minutes are there
        minute = (in_minute - dropped) / counts.minute;
        in_minute = (in_minute - dropped) % counts.minute + dropped;
    }
    const unsigned field = in_minute % counts.second;
    const auto small = [](unsigned n) { return static_cast<unsigned char>(n); };
    return {count / counts.day,        small(in_day / counts.hour),
            small(10 * tens + minute), small(in_minute / counts.second),
            small(field / 2),          field % 2 != 0};
}

} // namespace skuan
