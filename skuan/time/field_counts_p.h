// The numbers of fields as constants, so that the compiler divides by them without dividing.
#pragma once

#include <skuan/time/timecode_reading.h>
#include <skuan/time/video_frequency.h>

#include <algorithm>

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

/// The label of a count; nothing if the counts are all 0.
template <const FieldCounts& counts>
constexpr TimecodeReading read_label(unsigned count)
{
    if constexpr (counts.day == 0)
        return {};
    unsigned days = 0;
    unsigned field = count;
    if (count >= counts.day) [[unlikely]] {
        days = count / counts.day;
        field = count % counts.day;
    }
    if constexpr (counts.drops()) {
        // As if none were left out: four fields more for each minute that has begun, but not for the tenth.
        constexpr unsigned left_out = 4;
        const unsigned tens = field / counts.ten_minutes;
        const unsigned in_ten = field % counts.ten_minutes;
        field += left_out * (9 * tens + (std::max(in_ten, left_out) - left_out) / counts.minute);
    }
    // Each from the field and not from one another, so that they are worked out side by side.
    const unsigned second = field / counts.second;
    const unsigned minute = field / (60 * counts.second);
    const unsigned hour = field / (3600 * counts.second);
    const unsigned in_second = field - second * counts.second;
    const auto small = [](unsigned n) { return static_cast<unsigned char>(n); };
    return {days,
            small(hour),
            small(minute - hour * 60),
            small(second - minute * 60),
            small(in_second / 2),
            in_second % 2 != 0};
}

} // namespace skuan
