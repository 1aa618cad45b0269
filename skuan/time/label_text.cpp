// Writes labels, two digits at a step.
#include <skuan/time/label_text_p.h>

#include <algorithm>
#include <charconv>

namespace skuan {

namespace {

constexpr char separators[2][2] = {{'.', ':'}, {',', ';'}}; // [df][f2]
constexpr char behind_days = '+';

} // namespace

unsigned label_groups(const TimecodeReading& label, unsigned least)
{
    const unsigned needed = label.days ? 5 : label.hours ? 4 : label.minutes ? 3 : label.seconds ? 2 : 0;
    return std::clamp(least, needed, 5u);
}

AString label_text(const TimecodeReading& label, bool df, unsigned groups)
{
    const char separator = separators[df][label.f2];
    const unsigned char pairs[] = {label.hours, label.minutes, label.seconds, label.frames};
    char text[32];
    char* at = text;
    if (groups > 4) {
        at = std::to_chars(at, at + 10, label.days).ptr;
        *at++ = behind_days;
        groups = 4;
    }
    for (const unsigned char* pair = std::end(pairs) - groups; pair != std::end(pairs); ++pair) {
        *at++ = static_cast<char>('0' + *pair / 10);
        *at++ = static_cast<char>('0' + *pair % 10);
        *at++ = separator;
    }
    return groups == 0 ? AString() : AString::from_latin1(text, static_cast<unsigned>(at - text - 1));
}

} // namespace skuan
