// A standard behind a text: what is read, what is written, and in what order it is told.
#include <skuan/config/cf_model.h>
#include <skuan/config/video_standard_model.h>

#include <support/core_application.h>

#include <gmock/gmock.h>

#include <memory>

using namespace Vantor;
using testing::ElementsAre;

namespace {

class VideoStandards : public support::CoreApplication
{
protected:
    std::unique_ptr<CFModel> mirror{CFModel::create(false, nullptr)};
    CFItemModel* const item = mirror->get_item("VideoStandard");
    VideoStandardModel model{mirror.get()};

    void say(const char* value, std::initializer_list<const char*> allowed)
    {
        KVRP3::ConfigurationItem record;
        record.configuration_item_name = AString("VideoStandard");
        record.configuration_item_effective_value = AString(value);
        auto& values = record.configuration_item_allowed_values;
        for (const char* text : allowed)
            values.vec[values.count++] = AString(text);
        item->config(record);
    }
};

TEST_F(VideoStandards, are_read_and_written_as_the_server_does)
{
    EXPECT_TRUE(model.get() == VideoStandard_invalid && !model.have_cf());
    say("1080_50i", {"720_50p", "1080_60i", "1080_50i", "?", "1080i 50Hz"});
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

TEST_F(VideoStandards, tell_a_change_in_four_ways)
{
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
    say("625_50i", {});
    EXPECT_EQ(told, "625i 50Hz|50Hz625i|50Hz|625i|");
    told.clear();
    say("4K_60p", {});
    EXPECT_EQ(told, "||||");
    told.clear();
    // A slot that sets another standard is told the rest of the newer one only.
    QObject::connect(&model, qOverload<VideoFrequency, VideoResolution>(&Model::changed), &model,
                     [&] { model.set(VideoStandard_720_60p); });
    say("625_50i", {});
    EXPECT_EQ(told, "625i 50Hz|50Hz625i|720p 60Hz|60Hz720p|60Hz|720p|60Hz|720p|");
    settle();
    EXPECT_EQ(queued, VideoStandard_720_60p);

    auto* const doomed = new Model(mirror.get(), nullptr);
    QObject::connect(doomed, qOverload<VideoStandard>(&Model::changed), [=] { delete doomed; });
    item->set("720_50p");
}

TEST_F(VideoStandards, of_this_machine_are_those_of_its_mirror)
{
    VideoStandardModel here;
    CFModel::get_item_localhost("VideoStandard")->set("1080_48i");
    EXPECT_EQ(here.get_frequency(), VideoFrequency_48Hz);
}

} // namespace
