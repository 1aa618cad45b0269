// What models make of the texts of a mirror's items: configurations of channels, and a video standard.
#include <skuan/config/cf_channel_config.h>
#include <skuan/config/cf_model.h>
#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>
#include <skuan/config/video_standard_model.h>

#include <support/core_application.h>

#include <gmock/gmock.h>

#include <initializer_list>
#include <memory>
#include <vector>

using namespace Vantor;
using testing::ElementsAre;

namespace {

class Mirrored : public support::CoreApplication
{
protected:
    std::unique_ptr<CFModel> mirror{CFModel::create(false, nullptr)};

    void say(const char* name, const char* value, std::initializer_list<const char*> allowed)
    {
        KVRP3::ConfigurationItem record;
        record.configuration_item_name = AString(name);
        record.configuration_item_effective_value = AString(value);
        auto& values = record.configuration_item_allowed_values;
        for (const char* text : allowed)
            values.vec[values.count++] = AString(text);
        mirror->get_item(name)->config(record);
    }
};

TEST_F(Mirrored, channels_follow_their_four_items)
{
    USItemModel* const board_channels = USModel::localhost()->get_item("cf.herbae.0.channel_count");
    const CFChannelConfig channels(mirror.get(), USModel::localhost());
    int changes = 0;
    QObject::connect(&channels, &CFChannelConfig::changed, [&] { ++changes; });
    EXPECT_EQ(channels.board_type(), ChannelCF::BoardType_invalid);
    const std::pair<const char*, ChannelCF::BoardType> boards[] = {
        {"none", ChannelCF::BoardType_invalid}, {"0", ChannelCF::BoardType_tansy1},
        {"1", ChannelCF::BoardType_tansy1},     {"2", ChannelCF::BoardType_tansy2},
        {"-1", ChannelCF::BoardType_invalid},   {"9", ChannelCF::BoardType_tansy3},
    };
    for (const auto& [count, board] : boards) {
        board_channels->set(count);
        EXPECT_EQ(channels.board_type(), board) << count;
    }

    changes = 0;
    say("ChannelConfigurationSet0", "VVVK", {"absent", "VVVV", "VVVK"});
    say("ChannelConfigurationSet1", "3D_ISO2", {"3D_ISO2"});
    EXPECT_EQ(channels.channel_count(), 0); // one set is not known yet
    EXPECT_THAT(channels.AllUserChannels(), ElementsAre(0, 1, 2));
    say("ChannelConfigurationSet2", "VVVV", {"absent", "C2_VV"});
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(channels.channel_count(), 3);
    EXPECT_EQ(channels.spec().values, (std::vector{ChannelCF::ConfigType_VVVK, ChannelCF::ConfigType_3D_ISO2,
                                                   ChannelCF::ConfigType_VVVV}));
    EXPECT_EQ(channels.get(0), ChannelConfig_VVVK);
    EXPECT_TRUE(channels.have_3D());
    EXPECT_EQ(CFChannelConfig::track_count_3D(channels.get(1)), 2);
    EXPECT_EQ(channels.get(2), ChannelConfig_absent); // nothing else is allowed that is known by name
    say("ChannelConfigurationSet2", "VVVV", {"absent", "C2_VV", "C2_VK"});
    EXPECT_EQ(channels.get(2), ChannelConfig_VVVV); // of two texts only this is concluded
    EXPECT_EQ(channels.get(3), ChannelConfig_unknown);
    EXPECT_EQ(channels.find_key(2), 3);
    mirror.reset();
    EXPECT_EQ(channels.get(0), ChannelConfig_absent);
    EXPECT_EQ(channels.channel_count(), 0);
}

TEST_F(Mirrored, standards_are_read_and_written_as_the_server_does)
{
    CFItemModel* const item = mirror->get_item("VideoStandard");
    VideoStandardModel model(mirror.get());
    EXPECT_TRUE(model.get() == VideoStandard_invalid && !model.have_cf());
    say("VideoStandard", "1080_50i", {"720_50p", "1080_60i", "1080_50i", "?", "1080i 50Hz"});
    EXPECT_TRUE(model.have_cf());
    EXPECT_EQ(model.get(), VideoStandard_1080_50i);
    EXPECT_EQ(model.get_frequency(), VideoFrequency_50Hz);
    EXPECT_EQ(model.get_resolution(), VideoResolution_1080i);
    EXPECT_THAT(model.allowed_values(), ElementsAre(VideoStandard_720_50p, VideoStandard_1080_50i));
    EXPECT_TRUE(model.allowed(VideoFrequency_50Hz) && !model.allowed(VideoFrequency_60Hz));
    EXPECT_TRUE(model.allowed(VideoResolution_720p) && !model.allowed(VideoResolution_1080p));
    EXPECT_TRUE(model.allowed(VideoFrequency_50Hz, VideoResolution_720p) &&
                !model.allowed(VideoFrequency_48Hz, VideoResolution_4K));
    EXPECT_FALSE(model.allowed(VideoStandard_invalid) || model.allowed(VideoFrequency_invalid));

    model.set(VideoStandard_525_59_94i);
    EXPECT_EQ(item->get(), "525_59_94i");
    model.set(VideoStandard_invalid);
    EXPECT_EQ(item->get(), "525_59_94i");
    model.set(VideoFrequency_50Hz, VideoResolution_1080i); // the number, which then reads as no standard
    EXPECT_EQ(item->get(), "6");
    EXPECT_EQ(model.get(), VideoStandard_invalid);

    mirror.reset();
    EXPECT_TRUE(model.get() == VideoStandard_invalid && model.allowed_values().isEmpty());
    model.set(VideoStandard_720_50p);
    VideoStandardModel of_nothing(nullptr, nullptr);
    EXPECT_FALSE(of_nothing.have_cf());
}

TEST_F(Mirrored, standards_tell_a_change_in_four_ways)
{
    VideoStandardModel model(mirror.get());
    std::string told;
    const auto tell = [&](const AString& what) { told += what.to_string() + '|'; };
    using Model = VideoStandardModel;
    QObject::connect(&model, qOverload<VideoResolution>(&Model::changed),
                     [&](VideoResolution x) { tell(toString(x)); });
    QObject::connect(&model, qOverload<VideoFrequency>(&Model::changed),
                     [&](VideoFrequency x) { tell(toString(x)); });
    QObject::connect(&model, qOverload<VideoFrequency, VideoResolution>(&Model::changed),
                     [&](VideoFrequency f, VideoResolution r) { tell(toString(f) + toString(r)); });
    QObject::connect(&model, qOverload<VideoStandard>(&Model::changed),
                     [&](VideoStandard x) { tell(toString(x)); });
    VideoStandard queued{};
    QObject::connect(
        &model, qOverload<VideoStandard>(&Model::changed), &model, [&](VideoStandard x) { queued = x; },
        Qt::QueuedConnection);
    say("VideoStandard", "625_50i", {});
    EXPECT_EQ(told, "625i 50Hz|50Hz625i|50Hz|625i|");
    told.clear();
    say("VideoStandard", "4K_60p", {});
    EXPECT_EQ(told, "||||");
    told.clear();
    // A slot that sets another standard is told the rest of the newer one only.
    QObject::connect(&model, qOverload<VideoFrequency, VideoResolution>(&Model::changed), &model,
                     [&] { model.set(VideoStandard_720_60p); });
    say("VideoStandard", "625_50i", {});
    EXPECT_EQ(told, "625i 50Hz|50Hz625i|720p 60Hz|60Hz720p|60Hz|720p|60Hz|720p|");
    settle();
    EXPECT_EQ(queued, VideoStandard_720_60p);

    auto* const doomed = new Model(mirror.get(), nullptr);
    QObject::connect(doomed, qOverload<VideoStandard>(&Model::changed), [=] { delete doomed; });
    mirror->get_item("VideoStandard")->set("720_50p");
}

TEST_F(Mirrored, standards_of_this_machine_are_those_of_its_mirror)
{
    VideoStandardModel here;
    CFModel::get_item_localhost("VideoStandard")->set("1080_48i");
    EXPECT_EQ(here.get_frequency(), VideoFrequency_48Hz);
}

} // namespace
