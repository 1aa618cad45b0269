// Which output belongs to whom, asked from both ends, over every configuration of every board.
#include <skuan/config/channel_find_key.h>
#include <skuan/config/configured_board.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

using namespace ChannelCF;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Values = std::vector<ConfigType>;

std::string described(const ChannelConfigSpec& spec)
{
    std::string text = BoardType_to_string(spec.board).to_string() + ":";
    for (const ConfigType type : spec.values)
        text += ' ' + ConfigType_to_string(type).to_string();
    return text;
}

/// Everything that the board can be asked must tell one and the same story.
void expect_agreement(const ChannelConfigSpec& spec)
{
    SCOPED_TRACE(described(spec));
    constexpr unsigned beyond = 24; // more than any board has of anything
    const unsigned count = spec.channel_count();
    std::set<unsigned> fed;
    for (unsigned user_channel = 0; user_channel < beyond; ++user_channel) {
        const unsigned angles = spec.get_angle_count(user_channel);
        for (const bool key : {false, true}) {
            const std::vector<unsigned> all = spec.AllOutputs(user_channel, key);
            for (unsigned position = 0; position < all.size(); ++position) {
                EXPECT_TRUE(fed.insert(all[position]).second) << "two feed output " << all[position];
                EXPECT_EQ(spec.GetOutputSource(all[position]), (OutputSource{user_channel, position, key}));
            }
            const std::vector<unsigned> primary = spec.PrimaryAngleOutputs(user_channel, key);
            EXPECT_TRUE((key && primary.empty()) || primary.size() == angles);
            auto rest = all.begin();
            for (const unsigned output : primary) // in the same order, the first one first
                EXPECT_NE(rest = std::find(rest, all.end(), output), all.end());
            EXPECT_EQ(all.empty(), primary.empty());
            EXPECT_TRUE(all.empty() || all.front() == primary.front());
            for (unsigned angle = 0; !key && angle <= angles; ++angle)
                EXPECT_EQ(spec.get_angle_primary_output(user_channel, angle),
                          angle < angles ? primary[angle] : 0);
        }
        EXPECT_EQ(angles != 0, !spec.AllOutputs(user_channel, false).empty());
        EXPECT_TRUE(angles == 0 || user_channel < count) << user_channel;
    }
    for (unsigned output = 0; output < beyond; ++output) {
        EXPECT_EQ(bool(spec.GetOutputSource(output)), fed.count(output) == 1) << output;
        EXPECT_TRUE(spec.board != BoardType_sorrel || !fed.count(output) || output < count) << output;
    }
}

TEST(ChannelConfigSpec, agrees_from_both_ends)
{
    for (unsigned number = 0; number < ConfigType_count; ++number) {
        const auto type = static_cast<ConfigType>(number);
        EXPECT_EQ(string_to_ConfigType(ConfigType_to_string(type)), type) << number;
        for (const BoardType board : {BoardType_tansy1, BoardType_tansy2, BoardType_tansy3})
            for (const Values& values : {Values{type}, Values{type, ConfigType_ISO4}})
                expect_agreement({board, values});

        // On this board with each neighbour that leaves it its sets of channels, in every place that
        // wide configurations are counted from.
        const unsigned channels = ChannelConfigSpec{BoardType_sorrel, {type}}.channel_count();
        const unsigned slots = (channels + 3) / 4;
        EXPECT_EQ(channels == 0, type == ConfigType_absent);
        for (unsigned place = 0; slots != 0 && place + slots <= 3; place += slots)
            for (const ConfigType neighbour : {ConfigType_VKVV, ConfigType_SSM3, ConfigType_DUAL_VK}) {
                Values values(3, neighbour);
                for (unsigned slot = 0; slot < slots; ++slot)
                    values[place + slot] = slot == 0 ? type : ConfigType_absent;
                const ChannelConfigSpec spec{BoardType_sorrel, values};
                if (channels % 4 == 0)
                    expect_agreement(spec);
                const bool is_4K = type >= ConfigType_V && type <= ConfigType_SSM3v2;
                for (unsigned user_channel = 4 * place; user_channel < 4 * (place + slots); ++user_channel)
                    EXPECT_EQ(spec.is4K(user_channel), is_4K && spec.get_angle_count(user_channel) != 0);
                EXPECT_EQ(spec.channel_count(), channels % 4 == 0 ? 12 : 4 * place + channels);
            }
        if (channels % 4 != 0) // it closes the board
            expect_agreement({BoardType_sorrel, {type}});
    }
}

TEST(ChannelConfigSpec, answers_for_wide_and_odd_configurations)
{
    const struct
    {
        Values values;
        unsigned user_channel;
        std::vector<unsigned> video, primary, keys;
    } rows[] = {
        {{ConfigType_VKVV}, 0, {0}, {0}, {2}},
        {{ConfigType_VKVV}, 2, {}, {}, {}}, // the key's place is a gap
        {{ConfigType_VVVV, ConfigType_3D_ISO2}, 4, {4, 6, 5, 7}, {4, 5}, {}},
        {{ConfigType_3D_ISO3}, 0, {0, 2, 1, 3, 4, 6}, {0, 1, 4}, {}},
        {{ConfigType_SSM8, ConfigType_VVVV, ConfigType_VVVV}, 0, {0, 1, 2, 3, 4, 5, 6, 7}, {0}, {}},
        {{ConfigType_SSM8, ConfigType_VVVV, ConfigType_VVVV}, 4, {}, {}, {}},
        {{ConfigType_SSM8, ConfigType_VVVV, ConfigType_VVVV}, 8, {8}, {8}, {}},
        {{ConfigType_C444_6VK}, 0, {0, 1, 4, 5, 8, 9}, {0, 1, 4, 5, 8, 9}, {2, 3, 6, 7, 10, 11}},
        {{ConfigType_VK_V}, 2, {2}, {2}, {}},
        {{ConfigType_VK_V}, ~0u, {}, {}, {}},
        {{}, 0, {}, {}, {}},
        {{ConfigType(99)}, 0, {}, {}, {}},
    };
    for (const auto& row : rows) {
        const ChannelConfigSpec spec{BoardType_sorrel, row.values};
        SCOPED_TRACE(described(spec));
        EXPECT_EQ(spec.AllOutputs(row.user_channel, false), row.video);
        EXPECT_EQ(spec.PrimaryAngleOutputs(row.user_channel, false), row.primary);
        EXPECT_EQ(spec.AllOutputs(row.user_channel, true), row.keys);
    }
    EXPECT_EQ((ChannelConfigSpec{BoardType_sorrel, {ConfigType_C2_VK, ConfigType_VVVV}}.channel_count()), 2);
    EXPECT_EQ((ChannelConfigSpec{BoardType_sorrel, {ConfigType_ISO6, ConfigType_VVVV}}.GetOutputSource(5)),
              (OutputSource{0, 5, false}));
    EXPECT_THAT((ChannelConfigSpec{BoardType_tansy3, {ConfigType_VVVK}}.AllOutputs(2, true)), ElementsAre(3));
    EXPECT_THAT((ChannelConfigSpec{BoardType_tansy1, {ConfigType_V}}.AllOutputs(0, false)), IsEmpty());

    for (const BoardType none : {BoardType_invalid, BoardType(7)}) {
        const ChannelConfigSpec spec{none, {ConfigType_VVVV}};
        EXPECT_EQ(spec.channel_count(), 0);
        EXPECT_FALSE(spec.GetOutputSource(0));
    }
    EXPECT_EQ(BoardType_to_string(BoardType(7)), AString("????"));
}

/// FNV-1a, by the number.
struct Digest
{
    std::uint32_t value = 2166136261;

    void add(std::uint32_t number) { value = (value ^ number) * 16777619; }
    void add(const std::vector<unsigned>& numbers)
    {
        add(static_cast<std::uint32_t>(numbers.size()));
        for (const unsigned number : numbers)
            add(number);
    }
    void add(const ChannelConfigSpec& spec)
    {
        add(spec.channel_count());
        for (unsigned i = 0; i < 16; ++i) {
            add(spec.get_angle_count(i));
            add(spec.is4K(i));
            for (const bool key : {false, true}) {
                add(spec.PrimaryAngleOutputs(i, key));
                add(spec.AllOutputs(i, key));
            }
            const OutputSource source = spec.GetOutputSource(i).value_or({99, 99, true});
            add({source.user_channel, source.angle, source.key});
        }
    }
};

// The numbers are those of tables that were written down a second time. Whoever changes an answer has to mean
// it.
TEST(ChannelConfigSpec, has_not_changed_an_answer)
{
    Digest boards, keys;
    for (unsigned number = 0; number < ConfigType_count; ++number) {
        const auto type = static_cast<ConfigType>(number);
        for (const BoardType board : {BoardType_sorrel, BoardType_tansy1, BoardType_tansy2, BoardType_tansy3})
            for (const Values& values : {Values{type}, Values{ConfigType_VVVV, type}, Values(3, type)})
                boards.add(ChannelConfigSpec{board, values});
    }
    QStringList names{"VV", "V_K", "DUAL_SSM6", "ISO4_2P_VV"};
    for (unsigned number = 0; number < ConfigType_count; ++number)
        names += QString(ConfigType_to_string(static_cast<ConfigType>(number)));
    for (const QString& name : qAsConst(names))
        for (const QStringList& sets : {QStringList{name, "VKVK"}, {"VVVV", name}, {"x", "x", name}})
            for (unsigned output = 0; output < 16; ++output)
                keys.add(static_cast<std::uint32_t>(find_key(sets, output)));
    EXPECT_EQ(boards.value, 0x52aba063u);
    EXPECT_EQ(keys.value, 0xf95a279au);
}

TEST(FindKey, has_tables_of_its_own)
{
    const struct
    {
        QStringList names;
        unsigned output;
        int key;
    } rows[] = {
        {{"VKVV"}, 0, 1},                    // the board itself has it on 2
        {{"VKVV"}, 3, 2},                    // and knows none here
        {{"VKVV"}, 1, -1},                   // is a key itself
        {{"VVVV", "VKVV"}, 4, 6},            //
        {{"VVVV", "VVVV", "V_K"}, 8, 9},     // in the second group of eight
        {{"VVVV", "VVVV", "V_K"}, 16, -1},   // beyond
        {{"QUAD_VK", "VKVV"}, 4, -1},        // the second name is replaced by the first
        {{"VVVV", "DUAL_SSM6"}, 4, -1},      //
        {{"ISO4_2P_VK", "VVVV"}, 4, 5},      //
        {{"SSM6", "VKVV"}, 4, -1},           // replaced by a name that the second table lacks
        {{"elsewhere", "elsewhere"}, 0, -1}, // as VVVV
        {{}, 0, -1},                         //
    };
    for (const auto& row : rows)
        EXPECT_EQ(find_key(row.names, row.output), row.key)
            << row.names.join(' ').toStdString() << ", output " << row.output;
}

} // namespace
