// How the catalogue writes a configuration down, and how that is read: at build time to check it, at run
// time to make what it says.
//
//     V0                one user channel, one angle, its video on output 0
//     VK(0,2)           video on 0, key on 2
//     SSM(0-3)          super slow motion: four outputs make one picture
//     V2(0,2)           a stereo pair
//     ISO(0,1,2)        one user channel of three angles
//     ISO(VK(0,2),V2(1,3))  the same of larger angles
//     4K V0             any of these in 4K
//     gap               a user channel without outputs
#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

namespace ChannelCF {

struct AngleNotation
{
    enum Kind { video, video_and_key, slow_motion, stereo_pair };

    Kind kind = video;
    std::vector<unsigned> outputs;
};

struct UserChannelNotation
{
    bool is_4K = false;
    std::vector<AngleNotation> angles; // none: a gap
};

class LayoutNotation
{
public:
    constexpr explicit LayoutNotation(std::string_view text) : rest_(text)
    {
        do {
            user_channels.push_back(user_channel());
        } while (skip(", "));
        valid = valid && rest_.empty();
    }

    std::vector<UserChannelNotation> user_channels;
    bool valid = true;

private:
    constexpr UserChannelNotation user_channel()
    {
        UserChannelNotation result;
        if (skip("gap"))
            return result;
        result.is_4K = skip("4K ");
        if (!skip("ISO(")) {
            result.angles.push_back(angle());
            return result;
        }
        do {
            if (is_digit())
                for (const unsigned output : range())
                    result.angles.push_back({AngleNotation::video, {output}});
            else
                result.angles.push_back(angle());
        } while (skip(","));
        need(skip(")"));
        return result;
    }

    constexpr AngleNotation angle()
    {
        if (skip("VK("))
            return group(AngleNotation::video_and_key);
        if (skip("SSM("))
            return group(AngleNotation::slow_motion);
        if (skip("V2("))
            return group(AngleNotation::stereo_pair);
        need(skip("V"));
        return {AngleNotation::video, {number()}};
    }

    constexpr AngleNotation group(AngleNotation::Kind kind)
    {
        AngleNotation result{kind, {}};
        do {
            for (const unsigned output : range())
                result.outputs.push_back(output);
        } while (skip(","));
        need(skip(")"));
        need(kind == AngleNotation::slow_motion ? result.outputs.size() >= 2 : result.outputs.size() == 2);
        return result;
    }

    constexpr std::vector<unsigned> range()
    {
        const unsigned first = number();
        const unsigned last = skip("-") ? number() : first;
        std::vector<unsigned> result;
        for (unsigned output = first; output <= last; ++output)
            result.push_back(output);
        return result;
    }

    constexpr unsigned number()
    {
        need(is_digit());
        unsigned result = 0;
        for (; is_digit() && result < 100; rest_.remove_prefix(1))
            result = result * 10 + static_cast<unsigned>(rest_.front() - '0');
        return result;
    }

    constexpr bool is_digit() const { return !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9'; }

    constexpr bool skip(std::string_view word)
    {
        const bool here = rest_.starts_with(word);
        if (here)
            rest_.remove_prefix(word.size());
        return here;
    }

    constexpr void need(bool condition) { valid = valid && condition; }

    std::string_view rest_;
};

/// Whether `text` can be read, gives no output twice and none from `output_count` on, and has its angles
/// in rising order of their first output, within a user channel and from one to the next.
constexpr bool sound(std::string_view text, unsigned output_count)
{
    const LayoutNotation layout(text);
    std::vector<unsigned> outputs;
    int primary = -1;
    bool rising = true;
    for (const UserChannelNotation& user_channel : layout.user_channels)
        for (const AngleNotation& angle : user_channel.angles) {
            const int next = static_cast<int>(angle.outputs.front());
            rising = rising && primary < next;
            primary = next;
            outputs.insert(outputs.end(), angle.outputs.begin(), angle.outputs.end());
        }
    std::sort(outputs.begin(), outputs.end());
    return layout.valid && rising && std::adjacent_find(outputs.begin(), outputs.end()) == outputs.end() &&
           outputs.back() < output_count;
}

} // namespace ChannelCF
