// Each angle's outputs stand together, its video before its key, whatever their numbers.
#include <skuanctl/layout_drawing.h>

#include <QString>

#include <algorithm>
#include <cstddef>

using ChannelCF::ChannelConfigSpec;

namespace {

using Outputs = std::vector<unsigned>;

/// The outputs of each angle of those that have any: from its primary one to that of the next.
std::vector<Outputs> by_angle(const ChannelConfigSpec& spec, unsigned user_channel, bool key)
{
    const Outputs all = spec.AllOutputs(user_channel, key);
    const Outputs primary = spec.PrimaryAngleOutputs(user_channel, key);
    std::vector<Outputs> angles;
    for (auto next = primary.begin(); next != primary.end();) {
        const auto begin = std::find(all.begin(), all.end(), *next);
        const auto end = ++next == primary.end() ? all.end() : std::find(begin, all.end(), *next);
        angles.emplace_back(begin, end);
    }
    return angles;
}

/// An output, and what it shows.
struct Fed
{
    unsigned output;
    QString by;
};

std::vector<Fed> fed_by(const ChannelConfigSpec& spec, unsigned user_channel)
{
    const std::vector<AngleOutputs> angles = angles_of(spec, user_channel);
    std::vector<Fed> all;
    for (std::size_t angle = 0; angle < angles.size(); ++angle)
        for (const bool key : {false, true}) {
            const Outputs& outputs = key ? angles[angle].key : angles[angle].video;
            for (std::size_t i = 0; i < outputs.size(); ++i) {
                QStringList words;
                if (spec.is4K(user_channel))
                    words += QStringLiteral("4K");
                if (angles.size() > 1)
                    words += QStringLiteral("angle %1").arg(angle);
                words += key ? QStringLiteral("key") : QStringLiteral("video");
                if (outputs.size() > 1) // which make one picture
                    words += QStringLiteral("%1 of %2").arg(i + 1).arg(outputs.size());
                all.push_back({outputs[i], words.join(' ')});
            }
        }
    return all;
}

} // namespace

std::vector<unsigned> user_channels(const ChannelConfigSpec& spec)
{
    constexpr unsigned most = 12;
    std::vector<unsigned> channels;
    for (unsigned user_channel = 0; user_channel < most; ++user_channel)
        if (!spec.AllOutputs(user_channel, false).empty())
            channels.push_back(user_channel);
    return channels;
}

std::vector<AngleOutputs> angles_of(const ChannelConfigSpec& spec, unsigned user_channel)
{
    const std::vector<Outputs> videos = by_angle(spec, user_channel, false);
    const std::vector<Outputs> keys = by_angle(spec, user_channel, true); // of all angles, or of none
    std::vector<AngleOutputs> angles(videos.size());
    for (std::size_t i = 0; i < angles.size(); ++i)
        angles[i] = {videos[i], i < keys.size() ? keys[i] : Outputs()};
    return angles;
}

QStringList layout_drawing(const ChannelConfigSpec& spec)
{
    QStringList lines;
    for (const unsigned user_channel : user_channels(spec)) {
        const std::vector<Fed> all = fed_by(spec, user_channel);
        QString head = QStringLiteral("user channel %1 ─").arg(user_channel, 2);
        for (const Fed& one : all) {
            const bool first = &one == &all.front(), last = &one == &all.back();
            const QString branch = first ? (last ? "─" : "┬") : (last ? "└" : "├");
            lines += QStringLiteral("%1%2─ output %3  %4").arg(head, branch).arg(one.output, 2).arg(one.by);
            head.fill(' ');
        }
    }
    return lines.isEmpty() ? QStringList(QStringLiteral("no channels")) : lines;
}
