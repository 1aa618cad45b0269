// What the four items say, and what they leave open.
#include <skuan/config/cf_channel_config.h>
#include <skuan/config/cf_model.h>
#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>

#include <support/core_application.h>

#include <gmock/gmock.h>

#include <initializer_list>
#include <memory>
#include <vector>

namespace {

using testing::ElementsAre;

// Named after what it tests, which is reached by `::`.
class CFChannelConfig : public support::CoreApplication
{
protected:
    std::unique_ptr<CFModel> model{CFModel::create(false, nullptr)};
    USItemModel* const board_channels = USModel::localhost()->get_item("cf.herbae.0.channel_count");
    const ::CFChannelConfig channels{model.get(), USModel::localhost()};
    int changes = 0;

    CFChannelConfig()
    {
        QObject::connect(&channels, &::CFChannelConfig::changed, [this] { ++changes; });
    }

    void say(unsigned set, const char* value, std::initializer_list<const char*> allowed)
    {
        KVRP3::ConfigurationItem record;
        record.configuration_item_name = AString::sprintf("ChannelConfigurationSet%u", set);
        record.configuration_item_effective_value = AString(value);
        auto& values = record.configuration_item_allowed_values;
        for (const char* text : allowed)
            values.vec[values.count++] = AString(text);
        model->get_item(QString("ChannelConfigurationSet%1").arg(set))->config(record);
    }
};

TEST_F(CFChannelConfig, follows_the_four_items)
{
    EXPECT_EQ(channels.board_type(), ChannelCF::BoardType_invalid);
    const struct
    {
        const char* count;
        ChannelCF::BoardType board;
    } boards[] = {
        {"none", ChannelCF::BoardType_invalid}, {"0", ChannelCF::BoardType_tansy1},
        {"1", ChannelCF::BoardType_tansy1},     {"2", ChannelCF::BoardType_tansy2},
        {"-1", ChannelCF::BoardType_invalid},   {"9", ChannelCF::BoardType_tansy3},
    };
    for (const auto& row : boards) {
        board_channels->set(row.count);
        EXPECT_EQ(channels.board_type(), row.board) << row.count;
    }

    changes = 0;
    say(0, "VVVK", {"absent", "VVVV", "VVVK"});
    say(1, "3D_ISO2", {"3D_ISO2"});
    EXPECT_EQ(channels.channel_count(), 0); // one set is not known yet
    EXPECT_THAT(channels.AllUserChannels(), ElementsAre(0, 1, 2));
    say(2, "VVVV", {"absent", "C2_VV"});
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(channels.channel_count(), 3);
    EXPECT_EQ(channels.spec().values, (std::vector{ChannelCF::ConfigType_VVVK, ChannelCF::ConfigType_3D_ISO2,
                                                   ChannelCF::ConfigType_VVVV}));
    EXPECT_EQ(channels.get(0), ChannelConfig_VVVK);
    EXPECT_TRUE(channels.have_3D());
    EXPECT_EQ(::CFChannelConfig::track_count_3D(channels.get(1)), 2);
    EXPECT_EQ(channels.get(2), ChannelConfig_absent); // nothing else is allowed that is known by name
    say(2, "VVVV", {"absent", "C2_VV", "C2_VK"});
    EXPECT_EQ(channels.get(2), ChannelConfig_VVVV); // of two texts only this is concluded
    EXPECT_EQ(channels.get(3), ChannelConfig_unknown);
    EXPECT_EQ(channels.find_key(2), 3);
}

TEST_F(CFChannelConfig, outlives_its_mirrors)
{
    say(0, "VVVV", {"VVVV", "absent"});
    model.reset();
    EXPECT_EQ(channels.get(0), ChannelConfig_absent);
    EXPECT_EQ(channels.channel_count(), 0);
}

} // namespace
