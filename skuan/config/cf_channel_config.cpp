// From four texts to answers; nothing is kept, for the mirrors have it.
#include <skuan/config/cf_channel_config.h>

#include <skuan/config/cf_item_model.h>
#include <skuan/config/cf_model.h>
#include <skuan/config/channel_find_key.h>
#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>
#include <skuan/foundation/assertfail.h>

#include <QStringList>

#include <algorithm>

using namespace ChannelCF;

CFChannelConfig::CFChannelConfig(CFModel* cf_model, USModel* us_model, QObject* parent) : QObject(parent)
{
    if (SKUAN_CHECK(cf_model != nullptr))
        for (unsigned set = 0; set < set_count; ++set) {
            sets_[set] = cf_model->get_item(QStringLiteral("ChannelConfigurationSet%1").arg(set));
            connect(sets_[set], qOverload<QString>(&CFItemModel::changed), this, &CFChannelConfig::changed);
        }
    if (SKUAN_CHECK(us_model != nullptr)) {
        board_channels_ = us_model->get_item(QStringLiteral("cf.herbae.0.channel_count"));
        connect(board_channels_, &USItemModel::changed, this, &CFChannelConfig::changed);
    }
}

CFChannelConfig::CFChannelConfig(QObject* parent)
    : CFChannelConfig(CFModel::localhost(), USModel::localhost(), parent)
{
}

CFChannelConfig::~CFChannelConfig() = default;

BoardType CFChannelConfig::board_type() const
{
    bool is_number = false;
    const unsigned channels = board_channels_ ? board_channels_->get().toUInt(&is_number) : 0;
    if (!is_number)
        return BoardType_invalid;
    return channels < 2 ? BoardType_tansy1 : channels == 2 ? BoardType_tansy2 : BoardType_tansy3;
}

QString CFChannelConfig::text(unsigned set) const
{
    return sets_[set] ? sets_[set]->get() : QString();
}

ChannelConfigSpec CFChannelConfig::spec() const
{
    ChannelConfigSpec result{board_type(), {}};
    for (unsigned set = 0; set < set_count; ++set)
        result.values.push_back(string_to_ConfigType(text(set)));
    return result;
}

unsigned CFChannelConfig::get_angle_count(unsigned user_channel) const
{
    return spec().get_angle_count(user_channel);
}

std::vector<unsigned> CFChannelConfig::AllOutputs(unsigned user_channel, bool key) const
{
    return spec().AllOutputs(user_channel, key);
}

std::vector<unsigned> CFChannelConfig::PrimaryAngleOutputs(unsigned user_channel, bool key) const
{
    return spec().PrimaryAngleOutputs(user_channel, key);
}

bool CFChannelConfig::is4K(unsigned user_channel) const
{
    return spec().is4K(user_channel);
}

AOption<OutputSource> CFChannelConfig::GetOutputSource(unsigned output) const
{
    return spec().GetOutputSource(output);
}

unsigned CFChannelConfig::channel_count() const
{
    const bool all_known =
        std::all_of(sets_.begin(), sets_.end(), [](const auto& set) { return set && set->have_cf(); });
    return all_known ? spec().channel_count() : 0;
}

bool CFChannelConfig::isUserChannel(unsigned user_channel) const
{
    return !AllOutputs(user_channel, false).empty();
}

std::vector<unsigned> CFChannelConfig::AllUserChannels() const
{
    constexpr unsigned most_user_channels = 12;
    const ChannelConfigSpec now = spec(); // other threads may edit meanwhile
    std::vector<unsigned> result;
    for (unsigned user_channel = 0; user_channel < most_user_channels; ++user_channel)
        if (!now.AllOutputs(user_channel, false).empty())
            result.push_back(user_channel);
    return result;
}

ChannelConfig CFChannelConfig::get(unsigned set) const
{
    if (!SKUAN_CHECK(set < set_count))
        return ChannelConfig_unknown;
    const QStringList allowed = sets_[set] ? sets_[set]->allowed_values() : QStringList();
    const bool only_absent =
        allowed.size() <= 2 && std::none_of(allowed.begin(), allowed.end(), [](const QString& value) {
            return present(string_to_ChannelConfig(value));
        });
    return only_absent ? ChannelConfig_absent : string_to_ChannelConfig(text(set));
}

bool CFChannelConfig::is3D(ChannelConfig config)
{
    return config >= ChannelConfig_3D_ISO3 && config <= ChannelConfig_3D_ISO2b;
}

unsigned CFChannelConfig::track_count_3D(ChannelConfig config)
{
    if (!is3D(config))
        return 1;
    return config <= ChannelConfig_3D_ISO3b ? 3 : 2;
}

bool CFChannelConfig::have_3D() const
{
    return is3D(get(0)) || is3D(get(1)) || is3D(get(2));
}

int CFChannelConfig::find_key(unsigned output) const
{
    return ChannelCF::find_key({text(0), text(1), text(2)}, output);
}
