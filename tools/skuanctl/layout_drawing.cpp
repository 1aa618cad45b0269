// Each angle's outputs stand together, its video before its key, whatever their numbers.
#include <skuanctl/layout_drawing.h>

#include <QString>

#include <algorithm>
#include <cstddef>

namespace {

struct Output
{
    unsigned number;
    std::size_t angle;
    bool key;
    std::size_t part, parts; // of the outputs that make one picture; parts counted from 0
};

/// The outputs of one kind, angle by angle: an angle goes from its primary output to the next one's.
void add_outputs(const ChannelCF::ChannelConfigSpec& spec, unsigned user_channel, bool key,
                 std::vector<Output>& outputs)
{
    const std::vector<unsigned> all = spec.AllOutputs(user_channel, key);
    const std::vector<unsigned> primary = spec.PrimaryAngleOutputs(user_channel, key);
    for (std::size_t angle = 0; angle < primary.size(); ++angle) {
        const auto begin = std::find(all.begin(), all.end(), primary[angle]);
        const auto end =
            angle + 1 < primary.size() ? std::find(begin, all.end(), primary[angle + 1]) : all.end();
        const auto parts = static_cast<std::size_t>(end - begin);
        for (std::size_t part = 0; part < parts; ++part)
            outputs.push_back({begin[static_cast<std::ptrdiff_t>(part)], angle, key, part, parts});
    }
}

std::vector<Output> outputs_of(const ChannelCF::ChannelConfigSpec& spec, unsigned user_channel)
{
    std::vector<Output> outputs;
    for (const bool key : {false, true})
        add_outputs(spec, user_channel, key, outputs);
    std::stable_sort(outputs.begin(), outputs.end(),
                     [](const Output& a, const Output& b) { return a.angle < b.angle; });
    return outputs;
}

QString shown(const Output& output, bool many_angles, bool is_4K)
{
    QStringList words;
    if (is_4K)
        words += QStringLiteral("4K");
    if (many_angles)
        words += QStringLiteral("angle %1").arg(output.angle);
    words += output.key ? QStringLiteral("key") : QStringLiteral("video");
    if (output.parts > 1)
        words += QStringLiteral("%1 of %2").arg(output.part + 1).arg(output.parts);
    return words.join(' ');
}

} // namespace

std::vector<unsigned> user_channels(const ChannelCF::ChannelConfigSpec& spec)
{
    constexpr unsigned most = 12;
    std::vector<unsigned> channels;
    for (unsigned user_channel = 0; user_channel < most; ++user_channel)
        if (!spec.AllOutputs(user_channel, false).empty())
            channels.push_back(user_channel);
    return channels;
}

QStringList layout_drawing(const ChannelCF::ChannelConfigSpec& spec)
{
    QStringList lines;
    for (const unsigned user_channel : user_channels(spec)) {
        const std::vector<Output> outputs = outputs_of(spec, user_channel);
        const bool many_angles = spec.get_angle_count(user_channel) > 1;
        QString head = QStringLiteral("user channel %1 ─").arg(user_channel, 2);
        for (const Output& output : outputs) {
            const bool first = &output == &outputs.front(), last = &output == &outputs.back();
            const QString branch = first ? (last ? "─" : "┬") : (last ? "└" : "├");
            lines += QStringLiteral("%1%2─ output %3  %4")
                         .arg(head, branch)
                         .arg(output.number, 2)
                         .arg(shown(output, many_angles, spec.is4K(user_channel)));
            head.fill(' ');
        }
    }
    return lines.isEmpty() ? QStringList(QStringLiteral("no channels")) : lines;
}
