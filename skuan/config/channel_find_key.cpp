// The tables of the older key search, each for its own half of a group of eight outputs.
#include <skuan/config/channel_find_key.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ChannelCF {

namespace {

constexpr unsigned half = 4, group = 8; // outputs

struct Feed
{
    unsigned channel, angle;
    bool key;
};

struct Row
{
    std::string_view names; // with a space between
    Feed outputs[half];
};

// As (channel, angle, key), one row of outputs a line.
// clang-format off
constexpr Row first_half[] = {
    {"VVVV",                                {{0,0,0}, {1,0,0}, {2,0,0}, {3,0,0}}},
    {"VKVV V_K",                            {{0,0,0}, {0,0,1}, {3,0,1}, {3,0,0}}},
    {"VVVK",                                {{0,0,0}, {1,0,0}, {2,0,0}, {2,0,1}}},
    {"VKVK",                                {{0,0,0}, {0,0,1}, {2,0,0}, {2,0,1}}},
    {"VV",                                  {{0,0,0}, {1,0,0}, {3,0,1}, {3,0,0}}},
    {"ISO3 SSM3",                           {{0,0,0}, {0,1,0}, {0,2,0}, {3,0,0}}},
    {"SSM2 ISO2",                           {{0,0,0}, {0,1,0}, {2,0,0}, {3,0,0}}},
    {"V2V2",                                {{0,0,0}, {1,0,0}, {0,1,0}, {1,1,0}}},
    {"ISO4_2P_VK_2",                        {{0,0,0}, {0,0,1}, {2,0,0}, {3,0,0}}},
    {"ISO1_2P",                             {{0,0,0}, {1,0,0}, {1,1,0}, {1,2,0}}},
    {"ISO2_2P",                             {{0,0,0}, {0,1,0}, {1,0,0}, {1,1,0}}},
    {"ISO3_2P",                             {{0,0,0}, {0,1,0}, {0,2,0}, {1,0,0}}},
    {"3D_ISO3 3D_ISO2",                     {{0,0,0}, {0,2,0}, {0,1,0}, {0,3,0}}},
    {"DUAL_VK TRIPLE_VK_VV TRIPLE_VK_VK QUAD_VK",
                                            {{0,0,0}, {0,1,0}, {0,0,1}, {0,1,1}}},
    {"SSM4 ISO4 ISO4_2P_VV ISO4_2P_VK ISO4_2P ISO5 ISO6 ISO7 ISO8 DUAL_SSM3 TRI_SSM2 SSM6 SSM8",
                                            {{0,0,0}, {0,1,0}, {0,2,0}, {0,3,0}}},
};

constexpr Row second_half[] = {
    {"VVVV ISO4_2P_VV ISO1_2P ISO2_2P ISO3_2P ISO4_2P",
                                            {{4,0,0}, {5,0,0}, {6,0,0}, {7,0,0}}},
    {"VKVV",                                {{4,0,0}, {5,0,0}, {4,0,1}, {7,0,0}}},
    {"VVVK",                                {{4,0,0}, {5,0,0}, {6,0,0}, {5,0,1}}},
    {"VKVK",                                {{4,0,0}, {5,0,0}, {4,0,1}, {5,0,1}}},
    {"ISO3 SSM3",                           {{4,0,0}, {4,1,0}, {4,2,0}, {7,0,0}}},
    {"SSM4 ISO4 ISO4_2P_VK_2",              {{4,0,0}, {4,1,0}, {4,2,0}, {4,3,0}}},
    {"SSM2 ISO2",                           {{4,0,0}, {4,1,0}, {6,0,0}, {7,0,0}}},
    {"V2V2 3D_ISO2",                        {{4,0,0}, {5,0,0}, {4,1,0}, {5,1,0}}},
    {"ISO4_2P_VK",                          {{4,0,0}, {4,0,1}, {6,0,0}, {7,0,0}}},
    {"ISO6 DUAL_SSM3 DUAL_SSM6 TRI_SSM2",   {{0,4,0}, {0,5,0}, {6,0,0}, {7,0,0}}},
    {"ISO7",                                {{0,4,0}, {0,5,0}, {0,6,0}, {7,0,0}}},
    {"ISO8 SSM8",                           {{0,4,0}, {0,5,0}, {0,6,0}, {0,7,0}}},
    {"ISO5",                                {{0,4,0}, {5,0,0}, {6,0,0}, {7,0,0}}},
    {"3D_ISO3",                             {{0,4,0}, {5,0,0}, {0,5,0}, {5,1,0}}},
    {"DUAL_VK",                             {{4,0,0}, {4,1,0}, {4,0,1}, {4,1,1}}},
    {"TRIPLE_VK_VV",                        {{0,2,0}, {5,0,0}, {0,2,1}, {7,0,0}}},
    {"TRIPLE_VK_VK",                        {{0,2,0}, {5,0,0}, {0,2,1}, {5,0,1}}},
    {"QUAD_VK",                             {{0,2,0}, {0,3,0}, {0,2,1}, {0,3,1}}},
};
// clang-format on

// The names that stand in the first set and are meant for both. SSM6 has no row of its own in the second
// table, and is "VVVV" there.
constexpr std::string_view both_halves =
    "ISO6 ISO7 ISO8 ISO5 ISO4_2P_VV ISO4_2P_VK ISO4_2P_VK_2 ISO1_2P ISO2_2P ISO3_2P ISO4_2P 3D_ISO3 3D_ISO2 "
    "DUAL_SSM3 TRI_SSM2 TRIPLE_VK_VV TRIPLE_VK_VK QUAD_VK SSM8 SSM6";

bool is_among(std::string_view name, std::string_view names)
{
    while (!names.empty()) {
        const std::size_t end = std::min(names.find(' '), names.size());
        if (names.substr(0, end) == name)
            return true;
        names.remove_prefix(std::min(end + 1, names.size()));
    }
    return false;
}

const Row& row_of(std::string_view name, std::span<const Row> table)
{
    const auto found = std::ranges::find_if(table, [&](const Row& row) { return is_among(name, row.names); });
    return found == table.end() ? table.front() : *found; // VVVV
}

std::string_view name_at(const std::vector<std::string>& names, unsigned index)
{
    return index < names.size() ? std::string_view(names[index]) : std::string_view();
}

/// What feeds `output`, the channel counted over the whole board.
Feed feed_of(const std::vector<std::string>& names, unsigned output)
{
    const unsigned local = output % group, set = output / group * 2;
    const std::string_view first = name_at(names, set);
    const std::string_view second = is_among(first, both_halves) ? first : name_at(names, set + 1);
    Feed feed = local < half ? row_of(first, first_half).outputs[local]
                             : row_of(second, second_half).outputs[local - half];
    feed.channel += output - local;
    return feed;
}

} // namespace

int find_key(const QStringList& texts, unsigned output)
{
    std::vector<std::string> names;
    for (const QString& text : texts)
        names.push_back(text.toStdString());
    const unsigned count = (static_cast<unsigned>(names.size()) + 1) / 2 * group;
    if (output >= count)
        return -1;
    const Feed feed = feed_of(names, output);
    if (feed.angle != 0 || feed.key)
        return -1;
    // A user channel is known by its first output, so the key names `output` itself.
    for (unsigned other = 0; other < count; ++other) {
        const Feed key = feed_of(names, other);
        if (key.key && key.angle == 0 && key.channel == output)
            return static_cast<int>(other);
    }
    return -1;
}

} // namespace ChannelCF
