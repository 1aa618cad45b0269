// From field to field: clips are made ready, run, loop, are recorded, and end.
#include <simulator/commands/running_p.h>

#include <simulator/commands/chasing_p.h>
#include <simulator/commands/clips_p.h>
#include <simulator/commands/cues_p.h>
#include <simulator/commands/list_air_p.h>
#include <simulator/commands/machine_p.h>
#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr quint32 cueing_time = 2; // fields

bool waits_for(const Channel& channel, std::initializer_list<PrecueCondition> moments)
{
    return !channel.precued.empty() &&
           std::find(moments.begin(), moments.end(), channel.precued.front().when) != moments.end();
}

// The clip has no more fields that way. Whoever winds it back to its beginning wants no other one on air.
void reach_end(ServerState& state, Audience& audience, int channel)
{
    const Channel& at = channel_at(state, channel);
    if (at.is_wound_back())
        halt(state, audience, channel);
    else if (waits_for(at, {PrecueCondition::end_of_clip, PrecueCondition::end_of_clip2}))
        roll_precued(state, audience, channel);
    else if (!follow_element(state, audience, channel))
        halt(state, audience, channel);
}

// A field more of the recording, unless it is as long as it may be or the disks are full.
void record_field(ServerState& state, Audience& audience, int channel)
{
    Channel& at = channel_at(state, channel);
    const bool is_full = at.most_recorded != 0 && at.cue.length >= at.most_recorded;
    if (is_full && at.cue.loop == Loop::record)
        return; // the newest field takes the place of the oldest
    if (is_full || available_space(state) < field_size || !state.clips.grow_clip(at.cue.clip))
        return halt(state, audience, channel);
    follow_length(state, at.cue.clip);
    at.motion = standing_at(at.cue.length);
    const FieldRate rate = state.configuration.field_rate();
    const int second = (rate.fields + rate.seconds / 2) / rate.seconds; // of 59.94 fields: 60
    if (at.cue.length % static_cast<quint32>(second) == 0)
        tell_written(state, audience, at.cue.clip);
}

// Behind the last field that has been recorded so far, the next one is waited for.
void play_field(ServerState& state, Audience& audience, int channel)
{
    Channel& at = channel_at(state, channel);
    const Passed passed = advance(at.motion, path_of(at.cue), at.speed);
    if (passed == Passed::End && at.motion.at != 0 && !at.cue.out_point && is_recorded(state, at.cue.clip))
        return;
    if (passed == Passed::End)
        reach_end(state, audience, channel);
    else if (passed == Passed::Loop && waits_for(at, {PrecueCondition::end_of_clip2}))
        roll_precued(state, audience, channel);
}

void run(ServerState& state, Audience& audience, int channel)
{
    Channel& at = channel_at(state, channel);
    if (at.transition > 0)
        --at.transition;
    if (waits_for(at, {PrecueCondition::immediate}))
        return roll_precued(state, audience, channel);
    switch (at.status) {
    case ChannelStatus::cueing:
        if (--at.cueing == 0)
            at.status = ChannelStatus::stop;
        break;
    case ChannelStatus::play:
    case ChannelStatus::timedelay:
    case ChannelStatus::insert:
        play_field(state, audience, channel);
        break;
    default: // record: see run_channels()
        break;
    }
}

// Whether the channel, left alone, will be another one after the next field.
bool goes_on(const Channel& channel)
{
    return channel.speed != 0 || channel.status == ChannelStatus::cueing || channel.transition > 0 ||
           waits_for(channel, {PrecueCondition::immediate});
}

} // namespace

void load(ServerState& state, Audience& audience, int channel, Cue cue, ChannelStatus status)
{
    clear(state, audience, channel);
    Channel& at = channel_at(state, channel);
    at.cue = std::move(cue);
    at.motion = standing_at(at.cue.position);
    if (status != ChannelStatus::cueing)
        return roll(state, audience, channel, status);
    at.status = status;
    at.cueing = cueing_time;
    if (!at.cue.is_virtual)
        stamp_clip(state, at.cue.clip, "LoadedStamp");
}

void roll(ServerState& state, Audience& audience, int channel, ChannelStatus status)
{
    Channel& at = channel_at(state, channel);
    if (is_writing(at))
        stand(state, audience, channel);
    at.status = status;
    at.speed = at.cue.speed;
    at.motion.backwards = false;
    if (!at.cue.is_virtual)
        stamp_clip(state, at.cue.clip, "PlayedStamp");
}

void halt(ServerState& state, Audience& audience, int channel)
{
    if (waits_for(channel_at(state, channel), {PrecueCondition::previous_stops}))
        roll_precued(state, audience, channel);
    else
        stand(state, audience, channel);
}

void stand(ServerState& state, Audience& audience, int channel)
{
    Channel& at = channel_at(state, channel);
    const bool was_writing = is_writing(at);
    at.status = ChannelStatus::stop;
    at.speed = 0;
    at.motion.backwards = false;
    if (was_writing)
        tell_written(state, audience, at.cue.clip);
}

void go_to(Channel& channel, qint64 field)
{
    channel.motion = standing_at(static_cast<quint32>(std::clamp<qint64>(field, 0, channel.cue.length)));
}

void roll_precued(ServerState& state, Audience& audience, int channel)
{
    Channel& at = channel_at(state, channel);
    Cue cue = std::move(at.precued.front().cue);
    at.precued.pop_front();
    load(state, audience, channel, std::move(cue), ChannelStatus::play);
}

void clear(ServerState& state, Audience& audience, int channel)
{
    Channel& at = channel_at(state, channel);
    if (is_writing(at))
        stand(state, audience, channel);
    if (!at.cue.clip.isEmpty() && !at.cue.is_virtual)
        stamp_clip(state, at.cue.clip, "UnloadedStamp");
    at.cue = {};
    at.motion = {};
    at.status = ChannelStatus::idle;
    at.speed = 0;
    at.transition = 0;
    leave_air(at);
}

void record(ServerState& state, Audience& audience, int channel, const QString& clip, quint32 most)
{
    clear(state, audience, channel);
    Channel& at = channel_at(state, channel);
    at.cue.clip = clip;
    at.status = ChannelStatus::record;
    at.speed = normal_speed;
    at.most_recorded = most;
}

bool is_recorded(const ServerState& state, const QString& clip)
{
    return std::any_of(state.channels.begin(), state.channels.end(), [&](const Channel& channel) {
        return channel.status == ChannelStatus::record && channel.cue.clip == clip;
    });
}

bool is_writing(const Channel& channel)
{
    return channel.status == ChannelStatus::record || channel.status == ChannelStatus::insert;
}

bool shows_input(const Channel& channel)
{
    return is_writing(channel) || channel.ee_mask != 0 ||
           (channel.auto_ee &&
            (channel.status == ChannelStatus::idle || channel.status == ChannelStatus::stop));
}

// Recordings first, so that who plays one of them sees its newest field.
bool run_channels(ServerState& state, Audience& audience)
{
    for (int channel = 0; channel < channel_count; ++channel)
        if (channel_at(state, channel).status == ChannelStatus::record)
            record_field(state, audience, channel);
    lose_old_timecode(state, audience);
    bool more = false;
    for (int channel = 0; channel < channel_count; ++channel) {
        run(state, audience, channel);
        chase(state, audience, channel);
        tell_changes(state, audience, channel);
        const Channel& at = channel_at(state, channel);
        more = more || goes_on(at) || is_chasing(state, at) ||
               (shows_input(at) && audience.listens_to("channel_timecode", channel));
    }
    return more;
}

} // namespace simulator
