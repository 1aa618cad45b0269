// Transport of channels, one by one and in sets. The commands for sets are those for one channel: all
// channels must be fit for it, or none of them moves.
#include <simulator/catalogue_p.h>
#include <simulator/commands/clips_p.h>
#include <simulator/commands/cues_p.h>
#include <simulator/commands/running_p.h>
#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr std::size_t most_precued = 64;

enum class Needs { Nothing, Clip, Precued };

// Why a channel cannot do it.
Refusal unfit(const Call& call, Deck deck, Needs needs)
{
    if (Refusal refusal = not_free(call, deck))
        return refusal;
    const Channel& at = deck.channel();
    if (needs == Needs::Clip && at.cue.clip.isEmpty())
        return refuse(QStringLiteral("nothing is loaded on channel %1").arg(deck.name()));
    if (needs == Needs::Precued && at.precued.empty())
        return refuse(QStringLiteral("nothing waits on channel %1").arg(deck.name()));
    return {};
}

template <class Act>
Refusal on_channels(Call& call, Needs needs, Act act)
{
    const std::vector<Deck> decks = call.decks();
    for (const Deck deck : decks)
        if (Refusal refusal = unfit(call, deck, needs))
            return refusal;
    for (const Deck deck : decks) {
        act(deck);
        tell_changes(deck);
    }
    return {};
}

// The same, where nothing is to be done but to what the channel is.
template <class Act>
Refusal set_channels(Call& call, Needs needs, Act act)
{
    return on_channels(call, needs, [&](Deck deck) { act(deck.channel()); });
}

// A speed holds until the channel is told something else: the cue keeps its own.
void run(Call& call, Deck deck)
{
    roll(deck);
    if (call.has("Speed"))
        deck.channel().speed = to_speed(call.text("Speed")).value_or(normal_speed);
}

Refusal cue_clip(Call& call)
{
    const Deck deck = call.deck();
    if (Refusal refusal = not_free(call, deck))
        return refusal;
    Cue cue;
    const bool is_virtual = call.text("ClipScope") == QLatin1String("vclip");
    if (Refusal refusal = make_cue(call.state, call.text("ClipID"), is_virtual, call.arguments, cue))
        return refusal;
    load(deck, std::move(cue));
    tell_changes(deck);
    return {};
}

Refusal play(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Deck deck) { run(call, deck); });
}

Refusal stop(Call& call)
{
    return on_channels(call, Needs::Clip, halt);
}

Refusal jog(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Deck deck) {
        Channel& at = deck.channel();
        stand(deck);
        go_to(at, static_cast<qint64>(at.motion.field()) + call.distance("JogDistance"));
    });
}

Refusal gotocmd(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Deck deck) {
        stand(deck);
        go_to(deck.channel(), call.required_number("GotoPosition"));
    });
}

Refusal go_at(Call& call)
{
    return on_channels(call, Needs::Clip, [&](Deck deck) {
        run(call, deck);
        go_to(deck.channel(), call.required_number("GotoPosition"));
    });
}

// As near to a clip's end as the delay lets it, and on from there while the clip grows.
Refusal go_live(Call& call)
{
    const Deck deck = call.deck();
    if (Refusal refusal = unfit(call, deck, call.has("ClipID") ? Needs::Nothing : Needs::Clip))
        return refusal;
    Cue cue;
    if (!call.has("ClipID"))
        cue = deck.channel().cue;
    else if (Refusal refusal = make_cue(call.state, call.text("ClipID"), false, call.arguments, cue))
        return refusal;
    if (deck.channel().status == ChannelStatus::record && cue.clip == deck.channel().cue.clip)
        return refuse(QStringLiteral("channel %1 itself records the clip").arg(deck.name()));
    cue.angle = within_angles(call.state, cue, call.number("Angle").value_or(cue.angle));
    cue.speed = normal_speed;
    cue.position = cue.length - std::min(cue.length, call.number("TimeDelay").value_or(0));
    load(deck, std::move(cue), call.has("TimeDelay") ? ChannelStatus::timedelay : ChannelStatus::play);
    tell_changes(deck);
    return {};
}

Refusal unload(Call& call)
{
    return on_channels(call, Needs::Nothing, clear);
}

// The speed of what comes on air after something that ran at `before`.
qint32 following_speed(const QString& how, qint32 own, qint32 before)
{
    if (how == QLatin1String("oneX") || (how == QLatin1String("smart") && before == 0))
        return normal_speed;
    return how == QLatin1String("follow") || how == QLatin1String("smart") ? before : own;
}

// What waits goes on air; with nothing that waits, what is loaded.
Refusal take(Call& call)
{
    const Deck deck = call.deck();
    Channel& at = deck.channel();
    const bool waits = !at.precued.empty();
    return on_channels(call, waits ? Needs::Precued : Needs::Clip, [&](Deck) {
        const qint32 before = at.speed;
        if (waits)
            roll_precued(deck);
        at.cue.speed = following_speed(call.text("FollowSpeed"), at.cue.speed, before);
        roll(deck);
        if (call.text("TransitionType") == QLatin1String("dissolve"))
            at.transition = call.number("TransitionDuration").value_or(0);
    });
}

Refusal precue(Call& call)
{
    const Deck deck = call.deck();
    if (Refusal refusal = not_free(call, deck))
        return refusal;
    Channel& at = deck.channel();
    if (at.precued.size() == most_precued)
        return refuse(QStringLiteral("too much waits on channel %1").arg(deck.name()));
    Precued precued;
    if (Refusal refusal = make_cue(call.state, call.text("ClipID"), false, call.arguments, precued.cue))
        return refusal;
    Cue& cue = precued.cue;
    if (const auto length = call.number("ClipLength"))
        cue.out_point = cue.position + std::min(*length, cue.length - cue.position);
    if (call.has("PrecueCondition"))
        precued.when = static_cast<PrecueCondition>(
            Catalogue::get().value("PrecueCondition", call.text("PrecueCondition")));
    at.precued.push_back(std::move(precued));
    tell_changes(deck);
    return {};
}

Refusal precue_activate(Call& call)
{
    return on_channels(call, Needs::Precued, roll_precued);
}

Refusal precue_clear(Call& call)
{
    return set_channels(call, Needs::Nothing, [](Channel& channel) { channel.precued.clear(); });
}

Refusal set_loop(Call& call)
{
    const auto loop = static_cast<Loop>(Catalogue::get().value("Loop", call.text("Loop")));
    return set_channels(call, Needs::Clip, [&](Channel& channel) { channel.cue.loop = loop; });
}

constexpr char loop_in[] = "LoopIn", loop_out[] = "LoopOut", clip_position[] = "ClipPosition";

// Sets a point of the cue to the argument of that tag.
template <std::optional<quint32> Cue::*point, const char* tag>
Refusal set_point(Call& call)
{
    return set_channels(call, Needs::Clip, [&](Channel& channel) {
        channel.cue.*point = std::min(call.required_number(tag), channel.cue.length);
    });
}

template <std::optional<quint32> Cue::*point>
Refusal clear_point(Call& call)
{
    return set_channels(call, Needs::Clip, [](Channel& channel) { (channel.cue.*point).reset(); });
}

Refusal iso_angle(Call& call)
{
    const Deck deck = call.deck();
    const quint32 angle = call.required_number("Angle");
    const Cue& cue = deck.channel().cue;
    if (!cue.clip.isEmpty() && angle >= angle_count(call.state, cue))
        return refuse(QStringLiteral("the clip on channel %1 has no angle %2").arg(deck.name()).arg(angle));
    return set_channels(call, Needs::Clip, [&](Channel& at) { at.cue.angle = angle; });
}

Refusal ee(Call& call)
{
    return set_channels(call, Needs::Nothing, [&](Channel& channel) {
        channel.ee_mask = call.required_number("SonyEditMask");
        channel.auto_ee = call.text("AutoEE") == QLatin1String("true");
    });
}

// Runs over what is in the clip, which must be one that can be changed.
Refusal insert_edit(Call& call)
{
    for (const Deck deck : call.decks())
        if (const Cue& cue = deck.channel().cue; !cue.clip.isEmpty() && !cue.is_virtual)
            if (Refusal refusal = fixed_clip(call.state, cue.clip))
                return refusal;
    return on_channels(call, Needs::Clip, [&](Deck deck) {
        Channel& at = deck.channel();
        roll(deck, ChannelStatus::insert);
        at.speed = normal_speed;
        at.insert_mask = call.required_number("SonyEditMask");
    });
}

// Commands are carried out in order, so that all before this one is done.
Refusal sync(Call&)
{
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
