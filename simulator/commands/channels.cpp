// A channel's state as reports, and the ways in which it changes that several families share.
#include <simulator/commands/channels_p.h>

#include <simulator/commands/clips_p.h>
#include <simulator/commands/machine_p.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>

#include <algorithm>

namespace simulator {

namespace {

using Row = std::vector<Element>;

Row status(ServerState& state, int channel)
{
    const Channel& at = channel_at(state, channel);
    Row row = {channel_tag(channel), {"ChannelStatus", at.status}};
    if (!at.cue.clip.isEmpty())
        row.push_back({"ClipID", at.cue.clip});
    return row;
}

Row clipid(ServerState& state, int channel)
{
    return {channel_tag(channel), {"ClipID", channel_at(state, channel).cue.clip}};
}

Row speed(ServerState& state, int channel)
{
    return {channel_tag(channel), {"Speed", speed_text(channel_at(state, channel).speed)}};
}

Row timecode(ServerState& state, int channel)
{
    return {channel_tag(channel),
            {"ClipPosition", decimal(channel_at(state, channel).cue.position)},
            {"DisplayTimecode", display_timecode(state, channel_at(state, channel).cue)},
            {"InputTimecode", no_timecode()}};
}

Row aux_audio_timecode(ServerState& state, int channel)
{
    return {channel_tag(channel), {"ClipPosition", decimal(channel_at(state, channel).cue.position)}};
}

Row info(ServerState& state, int channel)
{
    const Channel& at = channel_at(state, channel);
    Row fields = {{"ClipID", at.cue.clip}};
    if (!at.cue.clip.isEmpty()) {
        fields.insert(
            fields.end(),
            {{"ClipLength", decimal(at.cue.length)}, {"Interp", at.cue.interp}, {"Loop", at.cue.loop}});
        if (at.cue.loop_in)
            fields.push_back({"LoopIn", decimal(*at.cue.loop_in)});
        if (at.cue.loop_out)
            fields.push_back({"LoopOut", decimal(*at.cue.loop_out)});
        fields.insert(fields.end(), {{"Playback", at.cue.playback},
                                     {"AngleCount", decimal(1)},
                                     {"Angle", decimal(at.cue.angle)},
                                     {"AudioTrackCount", decimal(audio_track_count)}});
    }
    const Row edit = {{"SonyEditMask", decimal(at.ee_mask)}, {"AutoEE", truth(at.auto_ee)}};
    fields.insert(fields.end(), {{"EEStatus", edit},
                                 {"PrecueCount", decimal(at.precued.size())},
                                 {"StealStatus", at.steal_status},
                                 {"TransitionInProgress", truth(false)}});
    if (!at.cue.clip.isEmpty())
        fields.push_back({"NaturalSpeed", speed_text(normal_speed)});
    return {channel_tag(channel), {"ChannelInformation", fields}};
}

// The reports that show a channel's state, each with its class.
struct Shown
{
    const char* report_class;
    const char* report;
    Row (*fields)(ServerState&, int);
};

constexpr Shown shown[] = {
    {"status", "channel_status", status},
    {"clipid", "channel_clipid", clipid},
    {"speed", "channel_speed", speed},
    {"timecode", "channel_timecode", timecode},
    {"info", "channel_info", info},
    {"aux_audio_timecode", "channel_aux_audio_timecode", aux_audio_timecode},
};

std::optional<quint32> within(const std::optional<quint32>& position, quint32 length)
{
    return position ? std::optional<quint32>(std::min(*position, length)) : std::nullopt;
}

} // namespace

QString channel_name(int channel)
{
    return QString(QChar(static_cast<char16_t>(u'A' + channel)));
}

Element channel_tag(int channel)
{
    return {"Channel", channel_name(channel)};
}

Channel& channel_at(ServerState& state, int channel)
{
    return state.channels[static_cast<std::size_t>(channel)];
}

std::vector<int> named_channels(const Call& call)
{
    std::vector<int> channels;
    const auto add = [&](const Element& element) {
        const int channel = element.text.at(0).unicode() - 'A';
        if (std::find(channels.begin(), channels.end(), channel) == channels.end())
            channels.push_back(channel);
    };
    if (call.has("Channel"))
        add(child(call.arguments, "Channel"));
    for (const Element& member : child(call.arguments, "ChannelSet").children)
        add(member);
    return channels;
}

Refusal not_free(const Call& call, int channel)
{
    const Session* thief = channel_at(call.state, channel).thief;
    return thief && thief != &call.session
               ? refuse(QStringLiteral("another client has channel %1 to itself").arg(channel_name(channel)))
               : Refusal();
}

Refusal make_cue(ServerState& state, const QString& clip, bool is_virtual, const Element& options, Cue& cue)
{
    if (is_virtual) {
        const VirtualClip* found = state.vclips.find(clip);
        if (!found)
            return {QStringLiteral("no such virtual clip %1").arg(quoted(clip)), "clipnotfound"};
        cue.length = found->length;
    } else {
        const Clip* found = state.clips.clip(clip);
        if (!found)
            return no_such_clip(clip);
        cue.length = found->played_length();
        const Element info{QStringLiteral("ClipInfo"), found->attributes};
        for (const auto& [tag, field] : {std::pair("Loop", &Cue::loop), std::pair("Playback", &Cue::playback),
                                         std::pair("Interp", &Cue::interp)})
            if (has(info, tag))
                cue.*field = text(info, tag);
    }
    cue.clip = clip;
    cue.is_virtual = is_virtual;
    cue.position = std::min(number(options, "GotoPosition").value_or(0), cue.length);
    cue.out_point = within(number(options, "ClipPosition"), cue.length);
    cue.loop_in = within(number(options, "LoopIn"), cue.length);
    cue.loop_out = within(number(options, "LoopOut"), cue.length);
    cue.angle = number(options, "Angle").value_or(0);
    if (has(options, "Loop"))
        cue.loop = text(options, "Loop");
    if (has(options, "Playback"))
        cue.playback = text(options, "Playback");
    if (has(options, "Speed"))
        cue.speed = to_speed(text(options, "Speed")).value_or(normal_speed);
    return {};
}

void load(Call& call, int channel, Cue cue, const QString& status)
{
    Channel& at = channel_at(call.state, channel);
    at.cue = std::move(cue);
    at.status = status;
    const bool rolls = status != QLatin1String("stop");
    at.speed = rolls ? at.cue.speed : 0;
    if (!at.cue.is_virtual)
        stamp_clip(call.state, at.cue.clip, rolls ? "PlayedStamp" : "LoadedStamp");
    tell_changes(call.state, call.audience, channel);
}

// While nobody listens nothing is built; whoever registers is told the whole state first.
void tell_changes(ServerState& state, Audience& audience, int channel)
{
    for (const Shown& one : shown) {
        if (!audience.listens_to(one.report, channel))
            continue;
        Row fields = one.fields(state, channel);
        Row& told = channel_at(state, channel).told[QLatin1String(one.report)];
        if (told == fields)
            continue;
        audience.report(one.report, fields);
        told = std::move(fields);
    }
}

void tell_state(Call& call, int channel, const QString& report_class)
{
    for (const Shown& one : shown) {
        if (report_class != QLatin1String(one.report_class))
            continue;
        Row fields = one.fields(call.state, channel);
        call.audience.report_to(call.session, one.report, fields);
        channel_at(call.state, channel).told[QLatin1String(one.report)] = std::move(fields);
    }
    if (report_class == QLatin1String("listplay"))
        tell_play_list(call, channel);
    if (report_class == QLatin1String("chaseplay"))
        tell_chase_list(call, channel);
}

} // namespace simulator
