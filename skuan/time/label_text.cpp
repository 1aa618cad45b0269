// Writes labels from the left.
#include <skuan/time/label_text_p.h>

#include <skuan/foundation/astring_builder.h>

#include <algorithm>

namespace skuan {

namespace {

constexpr unsigned separators[2][2] = {{'.', ':'}, {',', ';'}}; // [df][f2]
constexpr AChar behind_days('+');

} // namespace

unsigned label_groups(const TimecodeReading& label, unsigned least)
{
    const unsigned needed = label.days ? 5 : label.hours ? 4 : label.minutes ? 3 : label.seconds ? 2 : 0;
    return std::clamp(least, needed, 5u);
}

AString label_text(const TimecodeReading& label, bool df, unsigned groups)
{
    const AChar between(separators[df][label.f2]);
    const unsigned char pairs[] = {label.hours, label.minutes, label.seconds, label.frames};
    AStringBuilder text;
    if (groups > 4) {
        text.append(AString::from_unsigned(label.days));
        text.append(behind_days);
    }
    for (unsigned left = std::min(groups, 4u); left != 0; --left) {
        const unsigned pair = pairs[4 - left];
        text.append('0' + pair / 10);
        text.append('0' + pair % 10);
        if (left != 1)
            text.append(between);
    }
    return text.finish();
}

} // namespace skuan
