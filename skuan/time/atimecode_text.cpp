// A timecode and its text. The two forms are not each other's mirror: what is read has no days.
#include <skuan/time/atimecode.h>

#include <skuan/time/field_counts_p.h>
#include <skuan/time/label_text_p.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace Vantor {

namespace {

constexpr std::uint64_t largest = std::numeric_limits<unsigned>::max();

/// The last four groups of a text, and what stands between the groups.
struct LabelScan
{
    std::uint64_t hours = 0, minutes = 0, seconds = 0,
                  frames = 0; ///< any number above `largest` is too large
    char separator = '\0';    ///< 0 before the first
    bool mixed = false;

    void take(AChar c)
    {
        if (c.is_digit()) {
            if (frames <= largest)
                frames = 10 * frames + c.to_digit(0);
            return;
        }
        const char found = c.to_latin1('\0');
        if (found != ',' && found != '.' && found != ':' && found != ';')
            return;
        mixed |= separator != '\0' && separator != found;
        separator = found;
        hours = minutes;
        minutes = seconds;
        seconds = frames;
        frames = 0;
    }
};

unsigned number(std::uint64_t group)
{
    return group > largest ? 0 : static_cast<unsigned>(group);
}

DropframeFlag flag_of(VideoFrequency frequency, char separator)
{
    switch (separator) {
    case ',':
    case ';':
        return DropframeFlag_df;
    case '.':
    case ':':
        return DropframeFlag_ndf;
    default:
        return defaultDropframeFlag(frequency);
    }
}

} // namespace

ATimecode::ATimecode(VideoFrequency frequency, const AString& text)
    : ATimecode(frequency, DropframeFlag_invalid, text)
{
}

ATimecode::ATimecode(VideoFrequency frequency, DropframeFlag flag, const AString& text)
{
    LabelScan scan;
    text.for_each_run([&](const AChar* run, unsigned n) {
        for (const AChar* c = run; c != run + n; ++c)
            scan.take(*c);
    });
    const char separator = scan.mixed ? '\0' : scan.separator;
    if (!hasDropframe(frequency))
        flag = DropframeFlag_ndf;
    else if (!isValid(flag))
        flag = flag_of(frequency, separator);

    const unsigned minutes = number(scan.minutes), seconds = number(scan.seconds);
    unsigned frames = number(scan.frames);
    if (flag == DropframeFlag_df && minutes % 10 != 0 && seconds == 0)
        frames = std::max(frames, 2u);
    // 00:00:00:00 is the second field of that frame, and so the count 1; meant so, as it is written.
    const bool f2 = separator == ':' || separator == ';';
    *this = ATimecode(frequency, flag, number(scan.hours), minutes, seconds, frames, f2);
}

AString ATimecode::toString(unsigned groups) const
{
    if (!defined_)
        return AString::l1("(invalid)");
    const bool df = dropframeByVideoFrequency(std_, df_) == DropframeFlag_df;
    return skuan::label_text(reading(), df, skuan::label_groups(reading(), std::max(groups, 1u)));
}

} // namespace Vantor
