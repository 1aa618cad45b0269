// From the catalogue's notation to the lists that the queries read.
#include <skuan/config/channel_layout_p.h>

#include <skuan/config/channel_notation_p.h>
#include <skuan/foundation/assertfail.h>

#include <utility>

namespace ChannelCF {

unsigned Angle::primary_channel() const
{
    const std::vector<unsigned>& v = video.vector();
    if (v.empty()) {
        assertfail(__FILE__, __LINE__, "!v.empty ()");
        return 0;
    }
    return v.front();
}

static void gather(const ChannelSet& channels, std::vector<unsigned>& primary, std::vector<unsigned>& all)
{
    const std::vector<unsigned>& v = channels.vector();
    if (v.empty())
        return;
    primary.push_back(v.front());
    all.insert(all.end(), v.begin(), v.end());
}

void UserChannel::finish()
{
    if (!SKUAN_CHECK(!finished))
        return;
    finished = true;
    if (angles.empty())
        return;
    for (std::size_t i = 1; i < angles.size(); ++i)
        if (angles[i - 1].primary_channel() >= angles[i].primary_channel()) {
            assertfail(__FILE__, __LINE__, "prev < angles[i].primary_channel ()");
            return;
        }
    primary = angles.front().primary_channel();
    num_angles = static_cast<unsigned>(angles.size());
    for (Angle& angle : angles) {
        angle.finished = true;
        gather(angle.video, primary_video, all_video);
        gather(angle.key, primary_key, all_key);
    }
}

void Config::finish()
{
    if (!SKUAN_CHECK(!finished))
        return;
    finished = true;
    for (UserChannel& user_channel : user_channels)
        user_channel.finish();
    if (no_gaps)
        return;
    std::vector<UserChannel> order;
    for (UserChannel& user_channel : user_channels) {
        if (user_channel.primary < order.size()) {
            assertfail(__FILE__, __LINE__, "primary >= order.size ()");
            continue;
        }
        UserChannel gap;
        gap.finish();
        order.resize(user_channel.primary, gap);
        order.push_back(std::move(user_channel));
    }
    user_channels = std::move(order);
}

static Angle make_angle(const AngleNotation& notation, bool is_4K)
{
    Angle angle;
    angle.is_4K = is_4K;
    if (notation.kind == AngleNotation::slow_motion)
        angle.ssm_count = static_cast<unsigned>(notation.outputs.size());
    if (notation.kind == AngleNotation::video_and_key) {
        angle.video.insert(notation.outputs.front());
        angle.key.insert(notation.outputs.back());
    } else
        for (const unsigned output : notation.outputs)
            angle.video.insert(output);
    if (!is_4K)
        for (ChannelSet& set : angle.further)
            set.insert(angle.primary_channel());
    return angle;
}

static void fill(Config& config, const char* layout)
{
    for (const UserChannelNotation& notation : LayoutNotation(layout).user_channels) {
        UserChannel& user_channel = config.user_channels.emplace_back();
        for (const AngleNotation& angle : notation.angles)
            user_channel.angles.push_back(make_angle(angle, notation.is_4K));
        config.no_gaps = config.no_gaps || notation.is_4K;
    }
    config.finish();
}

std::unique_ptr<ConfigSorrel> make_config(const SorrelRow& row)
{
    if (!row.layout)
        return nullptr;
    auto config = std::make_unique<ConfigSorrel>(row.slots, row.channel_count);
    fill(*config, row.layout);
    return config;
}

std::unique_ptr<ConfigTansy> make_config(const TansyRow& row)
{
    auto config = std::make_unique<ConfigTansy>();
    fill(*config, row.layout);
    return config;
}

} // namespace ChannelCF
