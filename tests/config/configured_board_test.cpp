// Which output belongs to whom, asked from both ends, over every configuration of every board.
#include <skuan/config/channel_find_key.h>
#include <skuan/config/configured_board.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

using namespace ChannelCF;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Values = std::vector<ConfigType>;
using Outputs = std::vector<unsigned>;

std::string described(const ChannelConfigSpec& spec)
{
    std::string text = BoardType_to_string(spec.board).to_string() + ":";
    for (const ConfigType type : spec.values)
        text += ' ' + ConfigType_to_string(type).to_string();
    return text;
}

TEST(ChannelConfigSpec, answers_for_wide_and_odd_configurations)
{
    const std::tuple<Values, unsigned, Outputs, Outputs, Outputs> rows[] = {
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
    for (const auto& [values, user_channel, video, primary, keys] : rows) {
        const ChannelConfigSpec spec{BoardType_sorrel, values};
        SCOPED_TRACE(described(spec));
        EXPECT_EQ(spec.AllOutputs(user_channel, false), video);
        EXPECT_EQ(spec.PrimaryAngleOutputs(user_channel, false), primary);
        EXPECT_EQ(spec.AllOutputs(user_channel, true), keys);
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

/// Both ends tell one and the same story.
void expect_agreement(const ChannelConfigSpec& spec)
{
    SCOPED_TRACE(described(spec));
    for (unsigned user_channel = 0; user_channel < 16; ++user_channel)
        for (const bool key : {false, true}) {
            unsigned position = 0;
            for (const unsigned output : spec.AllOutputs(user_channel, key))
                EXPECT_EQ(spec.GetOutputSource(output), (OutputSource{user_channel, position++, key}));
        }
}

/// FNV-1a, by the number.
struct Digest
{
    std::uint32_t value = 2166136261;

    void add(std::uint32_t number) { value = (value ^ number) * 16777619; }
    void add(const Outputs& numbers)
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
            for (unsigned angle = 0; angle < 7; ++angle)
                add(spec.get_angle_primary_output(i, angle));
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
    QStringList names{"VV", "V_K", "DUAL_SSM6", "ISO4_2P_VV"};
    for (unsigned number = 0; number < ConfigType_count; ++number) {
        const auto type = static_cast<ConfigType>(number);
        const AString name = ConfigType_to_string(type);
        EXPECT_EQ(string_to_ConfigType(name), type);
        names += QString(name);
        for (const BoardType board :
             {BoardType_sorrel, BoardType_tansy1, BoardType_tansy2, BoardType_tansy3}) {
            expect_agreement({board, {type}});
            for (const ConfigType x : {type, ConfigType_absent, ConfigType_VVVV, ConfigType_VKVV,
                                       ConfigType_ISO4, ConfigType_SSM3, ConfigType_DUAL_VK})
                for (const Values& values : {Values{type, x},
                                             {x, type},
                                             {type, ConfigType_absent, x},
                                             {x, type, ConfigType_absent},
                                             {x, x, type}})
                    boards.add(ChannelConfigSpec{board, values});
        }
    }
    for (const QString& name : qAsConst(names))
        for (const QStringList& sets : {QStringList{name, "VKVK"}, {"VVVV", name}, {"x", "x", name}})
            for (unsigned output = 0; output < 16; ++output)
                keys.add(static_cast<std::uint32_t>(find_key(sets, output)));
    EXPECT_EQ(boards.value, 0x798d8600u);
    EXPECT_EQ(keys.value, 0xf95a279au);
}

TEST(FindKey, has_tables_of_its_own)
{
    const std::tuple<QStringList, unsigned, int> rows[] = {
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
    for (const auto& [names, output, key] : rows)
        EXPECT_EQ(find_key(names, output), key) << names.join(' ').toStdString() << ", output " << output;
}

} // namespace
