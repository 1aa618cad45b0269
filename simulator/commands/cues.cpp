// From a clip's name and what a command says of it to what a channel plays.
#include <simulator/commands/cues_p.h>

#include <simulator/catalogue_p.h>
#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

Loop loop_of(const QString& name)
{
    return static_cast<Loop>(Catalogue::get().value("Loop", name));
}

// Reads what the clip itself says of how it is played, or a command.
void take_options(const Element& options, Cue& cue)
{
    if (has(options, "Loop"))
        cue.loop = loop_of(text(options, "Loop"));
    if (has(options, "Playback"))
        cue.playback = text(options, "Playback");
    if (has(options, "Interp"))
        cue.interp = text(options, "Interp");
}

std::optional<quint32> within(const std::optional<quint32>& position, quint32 length)
{
    return position ? std::optional<quint32>(std::min(*position, length)) : std::nullopt;
}

} // namespace

quint32 angle_count(const ServerState& state, const Cue& cue)
{
    const Clip* clip = cue.is_virtual ? nullptr : state.clips.clip(cue.clip);
    return std::max(1u, clip ? clip->attribute("ISOCount").toUInt() : 0u);
}

quint32 within_angles(const ServerState& state, const Cue& cue, quint32 angle)
{
    return std::min(angle, angle_count(state, cue) - 1);
}

Refusal make_cue(ServerState& state, const QString& clip, bool is_virtual, const Element& options, Cue& cue)
{
    if (is_virtual) {
        const VirtualClip* found = state.vclips.find(clip);
        if (!found)
            return no_such_vclip(clip);
        cue.length = found->length;
    } else {
        const Clip* found = state.clips.clip(clip);
        if (!found)
            return no_such_clip(clip);
        cue.length = found->played_length();
        take_options({QStringLiteral("ClipInfo"), found->attributes}, cue);
    }
    cue.clip = clip;
    cue.is_virtual = is_virtual;
    cue.position = std::min(number(options, "GotoPosition").value_or(0), cue.length);
    cue.out_point = within(number(options, "ClipPosition"), cue.length);
    cue.loop_in = within(number(options, "LoopIn"), cue.length);
    cue.loop_out = within(number(options, "LoopOut"), cue.length);
    cue.angle = within_angles(state, cue, number(options, "Angle").value_or(0));
    take_options(options, cue);
    if (has(options, "Speed"))
        cue.speed = to_speed(text(options, "Speed")).value_or(normal_speed);
    return {};
}

// With `auto` a clip repeats what lies between its loop points, once it has them both.
Path path_of(const Cue& cue)
{
    Path path;
    path.end = std::min(cue.out_point.value_or(cue.length), cue.length);
    path.loop_in = cue.loop_in.value_or(0);
    path.loop_out = cue.loop_out.value_or(path.end);
    path.loop = cue.loop == Loop::automatic && cue.loop_in && cue.loop_out ? Loop::loopto : cue.loop;
    return path;
}

void follow_length(ServerState& state, const QString& clip)
{
    const Clip* found = state.clips.clip(clip);
    for (Channel& channel : state.channels) {
        if (found && channel.cue.plays(clip)) {
            channel.cue.length = found->played_length();
            if (channel.motion.field() > channel.cue.length)
                channel.motion = standing_at(channel.cue.length);
        }
        for (Precued& precued : channel.precued)
            if (found && precued.cue.plays(clip))
                precued.cue.length = found->played_length();
    }
}

} // namespace simulator
