// A channel's state as reports, and who may use it.
#include <simulator/commands/channels_p.h>

#include <simulator/catalogue_p.h>
#include <simulator/commands/cues_p.h>
#include <simulator/commands/list_air_p.h>
#include <simulator/commands/machine_p.h>
#include <simulator/commands/running_p.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>

#include <algorithm>

namespace simulator {

namespace {

using Row = std::vector<Element>;

Row status(ServerState& state, int channel)
{
    const Channel& at = channel_at(state, channel);
    Row row = {channel_tag(channel),
               {"ChannelStatus", Catalogue::get().name("ChannelStatus", static_cast<int>(at.status))}};
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
    const Channel& at = channel_at(state, channel);
    return {channel_tag(channel),
            {"ClipPosition", decimal(at.motion.field())},
            {"DisplayTimecode", display_timecode(state, at)},
            {"InputTimecode", shows_input(at) ? input_timecode(state) : no_timecode()}};
}

Row aux_audio_timecode(ServerState& state, int channel)
{
    return {channel_tag(channel), {"ClipPosition", decimal(channel_at(state, channel).motion.field())}};
}

Row info(ServerState& state, int channel)
{
    const Channel& at = channel_at(state, channel);
    Row fields = {{"ClipID", at.cue.clip}};
    if (!at.cue.clip.isEmpty()) {
        fields.insert(fields.end(), {{"ClipLength", decimal(at.cue.length)},
                                     {"Interp", at.cue.interp},
                                     {"Loop", Catalogue::get().name("Loop", static_cast<int>(at.cue.loop))}});
        if (at.cue.loop_in)
            fields.push_back({"LoopIn", decimal(*at.cue.loop_in)});
        if (at.cue.loop_out)
            fields.push_back({"LoopOut", decimal(*at.cue.loop_out)});
        fields.insert(fields.end(), {{"Playback", at.cue.playback},
                                     {"AngleCount", decimal(angle_count(state, at.cue))},
                                     {"Angle", decimal(at.cue.angle)},
                                     {"AudioTrackCount", state.configuration.effective("AudioTrackCount")}});
    }
    const quint32 mask = at.status == ChannelStatus::insert ? at.insert_mask : at.ee_mask;
    const Row edit = {{"SonyEditMask", decimal(mask)}, {"AutoEE", truth(at.auto_ee)}};
    fields.push_back({"EEStatus", edit});
    if (const auto pair = program_pair(state, channel))
        fields.insert(fields.end(), {{"ProgramChannel", channel_name(pair->program)},
                                     {"PreviewChannel", channel_name(pair->preview)}});
    fields.insert(fields.end(), {{"PrecueCount", decimal(at.precued.size())},
                                 {"StealStatus", at.steal_status},
                                 {"TransitionInProgress", truth(at.transition > 0)}});
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

constexpr Shown shown_info = {"info", "channel_info", info};
constexpr Shown shown[] = {
    {"status", "channel_status", status},
    {"clipid", "channel_clipid", clipid},
    {"speed", "channel_speed", speed},
    {"timecode", "channel_timecode", timecode},
    shown_info,
    {"aux_audio_timecode", "channel_aux_audio_timecode", aux_audio_timecode},
};

// While nobody listens nothing is built; whoever registers is told the whole state first.
void tell_change(ServerState& state, Audience& audience, int channel, const Shown& one)
{
    if (!audience.listens_to(one.report, channel))
        return;
    Row fields = one.fields(state, channel);
    Row& told = channel_at(state, channel).told[QLatin1String(one.report)];
    if (told == fields)
        return;
    audience.report(one.report, fields);
    told = std::move(fields);
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
    if (channel_at(call.state, channel).status == ChannelStatus::nochannel)
        return refuse(QStringLiteral("the server has no channel %1").arg(channel_name(channel)));
    const Session* thief = channel_at(call.state, channel).thief;
    return thief && thief != &call.session
               ? refuse(QStringLiteral("another client has channel %1 to itself").arg(channel_name(channel)))
               : Refusal();
}

// What one channel of a pair does may make the other one its preview, or end that.
void tell_changes(ServerState& state, Audience& audience, int channel)
{
    for (const Shown& one : shown)
        tell_change(state, audience, channel, one);
    settle_lists(state, audience, channel);
    tell_change(state, audience, channel ^ 1, shown_info);
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
