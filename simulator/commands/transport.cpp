// Transport of channels, one by one and in sets. The commands for sets are those for one channel: all
// channels must be fit for it, or none of them moves.
#include <simulator/commands/channels_p.h>
#include <simulator/commands/clips_p.h>
#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr std::size_t most_precued = 64;

enum class Needs { Nothing, Clip, Precued };

// Why a channel cannot do it.
Refusal unfit(const Call& call, int channel, Needs needs)
{
    const Channel& at = channel_at(call.state, channel);
    if (needs == Needs::Clip && at.cue.clip.isEmpty())
        return refuse(QStringLiteral("nothing is loaded on channel %1").arg(channel_name(channel)));
    if (needs == Needs::Precued && at.precued.empty())
        return refuse(QStringLiteral("nothing waits on channel %1").arg(channel_name(channel)));
    return not_free(call, channel);
}

template <class Act>
Refusal on_channels(Call& call, Needs needs, Act act)
{
    const std::vector<int> channels = named_channels(call);
    for (const int channel : channels)
        if (Refusal refusal = unfit(call, channel, needs))
            return refusal;
    for (const int channel : channels) {
        act(channel_at(call.state, channel));
        tell_changes(call.state, call.audience, channel);
    }
    return {};
}

void run(Call& call, Channel& channel)
{
    if (call.has("Speed"))
        channel.cue.speed = to_speed(call.text("Speed")).value_or(normal_speed);
    channel.status = QStringLiteral("play");
    channel.speed = channel.cue.speed;
    if (!channel.cue.is_virtual)
        stamp_clip(call.state, channel.cue.clip, "PlayedStamp");
}

void halt(Channel& channel)
{
    channel.status = QStringLiteral("stop");
    channel.speed = 0;
}

// A clip that is being recorded has no end yet.
void go_to(Channel& channel, qint64 position)
{
    channel.cue.position = static_cast<quint32>(std::clamp<qint64>(position, 0, channel.cue.length));
}

void roll_precued(Channel& channel)
{
    channel.cue = channel.precued.front();
    channel.precued.pop_front();
    channel.status = QStringLiteral("play");
    channel.speed = channel.cue.speed;
}

Refusal cue_clip(Call& call)
{
    const int channel = named_channels(call).front();
    if (Refusal refusal = not_free(call, channel))
        return refusal;
    Cue cue;
    const bool is_virtual = call.text("ClipScope") == QLatin1String("vclip");
    if (Refusal refusal = make_cue(call.state, call.text("ClipID"), is_virtual, call.arguments, cue))
        return refusal;
    load(call, channel, std::move(cue), QStringLiteral("stop"));
    return {};
}

Refusal play(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Channel& channel) { run(call, channel); });
}

Refusal stop(Call& call)
{
    return on_channels(call, Needs::Clip, halt);
}

Refusal jog(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Channel& channel) {
        halt(channel);
        go_to(channel, static_cast<qint64>(channel.cue.position) + call.distance("JogDistance"));
    });
}

Refusal gotocmd(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Channel& channel) {
        halt(channel);
        go_to(channel, call.required_number("GotoPosition"));
    });
}

Refusal go_at(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Channel& channel) {
        go_to(channel, call.required_number("GotoPosition"));
        run(call, channel);
    });
}

// As near to a clip's end as the delay lets it.
Refusal go_live(Call& call)
{
    const int channel = named_channels(call).front();
    if (Refusal refusal = unfit(call, channel, call.has("ClipID") ? Needs::Nothing : Needs::Clip))
        return refusal;
    Cue cue;
    if (!call.has("ClipID"))
        cue = channel_at(call.state, channel).cue;
    else if (Refusal refusal = make_cue(call.state, call.text("ClipID"), false, call.arguments, cue))
        return refusal;
    cue.angle = call.number("Angle").value_or(cue.angle);
    cue.position = cue.length - std::min(cue.length, call.number("TimeDelay").value_or(0));
    load(call, channel, std::move(cue),
         call.has("TimeDelay") ? QStringLiteral("timedelay") : QStringLiteral("play"));
    return {};
}

Refusal unload(Call& call)
{
    return on_channels(call, Needs::Nothing, [&](Channel& channel) {
        if (!channel.cue.clip.isEmpty() && !channel.cue.is_virtual)
            stamp_clip(call.state, channel.cue.clip, "UnloadedStamp");
        channel.cue = {};
        channel.status = QStringLiteral("idle");
        channel.speed = 0;
    });
}

// What waits goes on air; with nothing that waits, what is loaded.
Refusal take(Call& call)
{
    const bool waits = !channel_at(call.state, named_channels(call).front()).precued.empty();
    return on_channels(call, waits ? Needs::Precued : Needs::Clip, [&](Channel& channel) {
        if (waits)
            roll_precued(channel);
        else
            run(call, channel);
    });
}

Refusal precue(Call& call)
{
    const int channel = named_channels(call).front();
    if (Refusal refusal = not_free(call, channel))
        return refusal;
    Channel& at = channel_at(call.state, channel);
    if (at.precued.size() == most_precued)
        return refuse(QStringLiteral("too much waits on channel %1").arg(channel_name(channel)));
    Cue cue;
    if (Refusal refusal = make_cue(call.state, call.text("ClipID"), false, call.arguments, cue))
        return refusal;
    if (const auto length = call.number("ClipLength"))
        cue.out_point = cue.position + std::min(*length, cue.length - cue.position);
    at.precued.push_back(std::move(cue));
    tell_changes(call.state, call.audience, channel);
    return {};
}

Refusal precue_activate(Call& call)
{
    return on_channels(call, Needs::Precued, roll_precued);
}

Refusal precue_clear(Call& call)
{
    return on_channels(call, Needs::Nothing, [](Channel& channel) { channel.precued.clear(); });
}

Refusal set_loop(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Channel& channel) { channel.cue.loop = call.text("Loop"); });
}

constexpr char loop_in[] = "LoopIn", loop_out[] = "LoopOut", clip_position[] = "ClipPosition";

// Sets a point of the cue to the argument of that tag.
template <std::optional<quint32> Cue::*point, const char* tag>
Refusal set_point(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Channel& channel) {
        channel.cue.*point = std::min(call.required_number(tag), channel.cue.length);
    });
}

template <std::optional<quint32> Cue::*point>
Refusal clear_point(Call& call)
{
    return on_channels(call, Needs::Clip, [](Channel& channel) { (channel.cue.*point).reset(); });
}

Refusal iso_angle(Call& call)
{
    return on_channels(call, Needs::Clip,
                       [&](Channel& channel) { channel.cue.angle = call.required_number("Angle"); });
}

Refusal ee(Call& call)
{
    return on_channels(call, Needs::Nothing, [&](Channel& channel) {
        channel.ee_mask = call.required_number("SonyEditMask");
        channel.auto_ee = call.text("AutoEE") == QLatin1String("true");
    });
}

Refusal insert_edit(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Channel& channel) {
        channel.ee_mask = call.required_number("SonyEditMask");
        channel.status = QStringLiteral("insert");
        channel.speed = normal_speed;
    });
}

// Commands are carried out in order, so that all before this one is done.
Refusal sync(Call&)
{
    return {};
}

Refusal sending_chase_ltcin(Call& call)
{
    call.report("chase_ltc_timecode", {child(call.arguments, "Timecode")});
    return {};
}

} // namespace

CommandRows transport_commands()
{
    return {
        {"cue_clip", cue_clip},
        {"play", play},
        {"stop", stop},
        {"jog", jog},
        {"gotocmd", gotocmd},
        {"go_at", go_at},
        {"go_live", go_live},
        {"unload", unload},
        {"take", take},
        {"precue", precue},
        {"precue_activate", precue_activate},
        {"precue_clear", precue_clear},
        {"set_loop", set_loop},
        {"set_loop_in", set_point<&Cue::loop_in, loop_in>},
        {"set_loop_out", set_point<&Cue::loop_out, loop_out>},
        {"clear_loop_in", clear_point<&Cue::loop_in>},
        {"clear_loop_out", clear_point<&Cue::loop_out>},
        {"set_out_point", set_point<&Cue::out_point, clip_position>},
        {"clear_out_point", clear_point<&Cue::out_point>},
        {"iso_angle", iso_angle},
        {"ee", ee},
        {"insert_edit", insert_edit},
        {"sync", sync},
        {"sending_chase_ltcin", sending_chase_ltcin},

        {"gang_play", play},
        {"gang_stop", stop},
        {"gang_jog", jog},
        {"gang_gotocmd", gotocmd},
        {"gang_go_at", go_at},
        {"gang_precue_activate", precue_activate},
        {"gang_ee", ee},
        {"gang_insert_edit", insert_edit},
    };
}

} // namespace simulator
