// What an operator types, or other equipment sends, as timecode. Any text gives a defined value with the
// label that a plain reading finds; and what is written of a value within a day reads as that value again.
#include <require.h>

#include <skuan/time/atimecode.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

using namespace Vantor;

namespace {

/// The groups by the plainest way there is: cut at separators, keep digits, read numbers.
std::vector<unsigned> groups_of(const std::string& text)
{
    std::vector<unsigned> result;
    std::string digits;
    for (const char c : text + '.') {
        if (c >= '0' && c <= '9')
            digits += c;
        if (std::string(".,:;").find(c) == std::string::npos)
            continue;
        digits.erase(0, digits.find_first_not_of('0'));
        const bool fits = digits.size() < 10 || (digits.size() == 10 && digits <= "4294967295");
        result.insert(result.begin(),
                      fits && !digits.empty() ? static_cast<unsigned>(std::stoul(digits)) : 0);
        digits.clear();
    }
    result.resize(4); // frames first; what is missing is 0, and surplus goes
    return result;
}

void check_text(VideoFrequency frequency, DropframeFlag flag, const std::string& text)
{
    const ATimecode t(frequency, flag, AString::from_latin1(text.data(), static_cast<unsigned>(text.size())));
    fuzz::require(t.is_defined() && isValid(t.get_df()));
    const auto groups = groups_of(text);
    const std::size_t first = text.find_first_of(".,:;");
    const bool one_kind = first != std::string::npos &&
                          text.find_first_of(std::string(".,:;").erase(std::string(".,:;").find(text[first]),
                                                                       1)) == std::string::npos;
    const bool f2 = one_kind && (text[first] == ':' || text[first] == ';');
    const bool left_out = t.is_df() && groups[2] % 10 != 0 && groups[1] == 0 && groups[0] < 2;
    fuzz::require(
        t == ATimecode(frequency, t.get_df(), groups[3], groups[2], groups[1], left_out ? 2 : groups[0], f2));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const auto frequency = static_cast<VideoFrequency>(data[0] % 5 + 1);
    const auto flag = static_cast<DropframeFlag>(data[1] % 4);
    check_text(frequency, flag, std::string(data + 2, data + size));

    std::uint8_t bytes[8] = {};
    std::copy_n(data + 2, std::min<std::size_t>(size - 2, 8), bytes);
    for (ATimecode t : {ATimecode::from_sony(frequency, bytes), ATimecode::from_tc64(frequency, bytes)}) {
        if (t.is_undefined())
            continue;
        t.wrap24();
        fuzz::require(t.get_days() == 0);
        fuzz::require(ATimecode(frequency, t.get_df(), t.toString(2)) == t);
    }
    return 0;
}
