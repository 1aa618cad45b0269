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
void reach_end(Deck deck)
{
    const Channel& at = deck.channel();
    if (at.is_wound_back())
        halt(deck);
    else if (waits_for(at, {PrecueCondition::end_of_clip, PrecueCondition::end_of_clip2}))
        roll_precued(deck);
    else if (!follow_element(deck))
        halt(deck);
}

// A field more of the recording, unless it is as long as it may be or the disks are full.
void record_field(Deck deck)
{
    Channel& at = deck.channel();
    const bool is_full = at.most_recorded != 0 && at.cue.length >= at.most_recorded;
    if (is_full && at.cue.loop == Loop::record)
        return; // the newest field takes the place of the oldest
    if (is_full || available_space(deck.state) < field_size || !deck.state.clips.grow_clip(at.cue.clip))
        return halt(deck);
    follow_length(deck.state, at.cue.clip);
    at.motion = standing_at(at.cue.length);
    const FieldRate rate = deck.state.configuration.field_rate();
    const int second = (rate.fields + rate.seconds / 2) / rate.seconds; // of 59.94 fields: 60
    if (at.cue.length % static_cast<quint32>(second) == 0)
        tell_written(deck.state, deck.audience, at.cue.clip);
}

// Behind the last field that has been recorded so far, the next one is waited for.
void play_field(Deck deck)
{
    Channel& at = deck.channel();
    const Passed passed = advance(at.motion, path_of(at.cue), at.speed);
    if (passed == Passed::End && at.motion.at != 0 && !at.cue.out_point &&
        is_recorded(deck.state, at.cue.clip))
        return;
    if (passed == Passed::End)
        reach_end(deck);
    else if (passed == Passed::Loop && waits_for(at, {PrecueCondition::end_of_clip2}))
        roll_precued(deck);
}

void run(Deck deck)
{
    Channel& at = deck.channel();
    if (at.transition > 0)
        --at.transition;
    if (waits_for(at, {PrecueCondition::immediate}))
        return roll_precued(deck);
    switch (at.status) {
    case ChannelStatus::cueing:
        if (--at.cueing == 0)
            at.status = ChannelStatus::stop;
        break;
    case ChannelStatus::play:
    case ChannelStatus::timedelay:
    case ChannelStatus::insert:
        play_field(deck);
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

void load(Deck deck, Cue cue, ChannelStatus status)
{
    clear(deck);
    Channel& at = deck.channel();
    at.cue = std::move(cue);
    at.motion = standing_at(at.cue.position);
    if (status != ChannelStatus::cueing)
        return roll(deck, status);
    at.status = status;
    at.cueing = cueing_time;
    if (!at.cue.is_virtual)
        stamp_clip(deck.state, at.cue.clip, "LoadedStamp");
}

void roll(Deck deck, ChannelStatus status)
{
    Channel& at = deck.channel();
    if (is_writing(at))
        stand(deck);
    at.status = status;
    at.speed = at.cue.speed;
    at.motion.backwards = false;
    if (!at.cue.is_virtual)
        stamp_clip(deck.state, at.cue.clip, "PlayedStamp");
}

void halt(Deck deck)
{
    if (waits_for(deck.channel(), {PrecueCondition::previous_stops}))
        roll_precued(deck);
    else
        stand(deck);
}

void stand(Deck deck)
{
    Channel& at = deck.channel();
    const bool was_writing = is_writing(at);
    at.status = ChannelStatus::stop;
    at.speed = 0;
    at.motion.backwards = false;
    if (was_writing)
        tell_written(deck.state, deck.audience, at.cue.clip);
}

void go_to(Channel& channel, qint64 field)
{
    channel.motion = standing_at(static_cast<quint32>(std::clamp<qint64>(field, 0, channel.cue.length)));
}

void roll_precued(Deck deck)
{
    Channel& at = deck.channel();
    Cue cue = std::move(at.precued.front().cue);
    at.precued.pop_front();
    load(deck, std::move(cue), ChannelStatus::play);
}

void clear(Deck deck)
{
    Channel& at = deck.channel();
    if (is_writing(at))
        stand(deck);
    if (!at.cue.clip.isEmpty() && !at.cue.is_virtual)
        stamp_clip(deck.state, at.cue.clip, "UnloadedStamp");
    at.cue = {};
    at.motion = {};
    at.status = ChannelStatus::idle;
    at.speed = 0;
    at.transition = 0;
    leave_air(at);
}

void record(Deck deck, const QString& clip, quint32 most)
{
    clear(deck);
    Channel& at = deck.channel();
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
    const std::vector<Deck> decks = all_decks(state, audience);
    for (const Deck deck : decks)
        if (deck.channel().status == ChannelStatus::record)
            record_field(deck);
    lose_old_timecode(state, audience);
    bool more = false;
    for (const Deck deck : decks) {
        run(deck);
        chase(deck);
        tell_changes(deck);
        const Channel& at = deck.channel();
        more = more || goes_on(at) || is_chasing(state, at) ||
               (shows_input(at) && audience.listens_to("channel_timecode", deck.number));
    }
    return more;
}

} // namespace simulator
