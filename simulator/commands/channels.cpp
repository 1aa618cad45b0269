// A channel's state as reports, and who may use it.
#include <simulator/commands/channels_p.h>

#include <simulator/catalogue_p.h>
#include <simulator/commands/cues_p.h>
#include <simulator/commands/list_air_p.h>
#include <simulator/commands/machine_p.h>
#include <simulator/commands/running_p.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>

namespace simulator {

namespace {

using Row = std::vector<Element>;

Row status(Deck deck)
{
    const Channel& at = deck.channel();
    Row row = {deck.tag(),
               {"ChannelStatus", Catalogue::get().name("ChannelStatus", static_cast<int>(at.status))}};
    if (!at.cue.clip.isEmpty())
        row.push_back({"ClipID", at.cue.clip});
    return row;
}

Row clipid(Deck deck)
{
    return {deck.tag(), {"ClipID", deck.channel().cue.clip}};
}

Row speed(Deck deck)
{
    return {deck.tag(), {"Speed", speed_text(deck.channel().speed)}};
}

Row timecode(Deck deck)
{
    const Channel& at = deck.channel();
    return {deck.tag(),
            {"ClipPosition", decimal(at.motion.field())},
            {"DisplayTimecode", display_timecode(deck.state, at)},
            {"InputTimecode", shows_input(at) ? input_timecode(deck.state) : no_timecode()}};
}

Row aux_audio_timecode(Deck deck)
{
    return {deck.tag(), {"ClipPosition", decimal(deck.channel().motion.field())}};
}

Row info(Deck deck)
{
    const Channel& at = deck.channel();
    Row fields = {{"ClipID", at.cue.clip}};
    if (!at.cue.clip.isEmpty()) {
        fields.insert(fields.end(), {{"ClipLength", decimal(at.cue.length)},
                                     {"Interp", at.cue.interp},
                                     {"Loop", Catalogue::get().name("Loop", static_cast<int>(at.cue.loop))}});
        if (at.cue.loop_in)
            fields.push_back({"LoopIn", decimal(*at.cue.loop_in)});
        if (at.cue.loop_out)
            fields.push_back({"LoopOut", decimal(*at.cue.loop_out)});
        fields.insert(fields.end(),
                      {{"Playback", at.cue.playback},
                       {"AngleCount", decimal(angle_count(deck.state, at.cue))},
                       {"Angle", decimal(at.cue.angle)},
                       {"AudioTrackCount", deck.state.configuration.effective("AudioTrackCount")}});
    }
    const quint32 mask = at.status == ChannelStatus::insert ? at.insert_mask : at.ee_mask;
    const Row edit = {{"SonyEditMask", decimal(mask)}, {"AutoEE", truth(at.auto_ee)}};
    fields.push_back({"EEStatus", edit});
    if (const auto pair = program_pair(deck))
        fields.insert(fields.end(),
                      {{"ProgramChannel", pair->program.name()}, {"PreviewChannel", pair->preview.name()}});
    fields.insert(fields.end(), {{"PrecueCount", decimal(at.precued.size())},
                                 {"StealStatus", at.steal_status},
                                 {"TransitionInProgress", truth(at.transition > 0)}});
    if (!at.cue.clip.isEmpty())
        fields.push_back({"NaturalSpeed", speed_text(normal_speed)});
    return {deck.tag(), {"ChannelInformation", fields}};
}

// The reports that show a channel's state, each with its class.
struct Shown
{
    const char* report_class;
    const char* report;
    Row (*fields)(Deck);
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
void tell_change(Deck deck, const Shown& one)
{
    if (!deck.audience.listens_to(one.report, deck.number))
        return;
    Row fields = one.fields(deck);
    Row& told = deck.channel().told[QLatin1String(one.report)];
    if (told == fields)
        return;
    deck.audience.report(one.report, fields);
    told = std::move(fields);
}

} // namespace

Refusal not_free(const Call& call, Deck deck)
{
    if (deck.channel().status == ChannelStatus::nochannel)
        return refuse(QStringLiteral("the server has no channel %1").arg(deck.name()));
    const Session* thief = deck.channel().thief;
    return thief && thief != &call.session
               ? refuse(QStringLiteral("another client has channel %1 to itself").arg(deck.name()))
               : Refusal();
}

// What one channel of a pair does may make the other one its preview, or end that.
void tell_changes(Deck deck)
{
    for (const Shown& one : shown)
        tell_change(deck, one);
    settle_lists(deck);
    tell_change(deck.partner(), shown_info);
}

void tell_state(Call& call, Deck deck, const QString& report_class)
{
    tell_changes(deck);
    for (const Shown& one : shown) {
        if (report_class != QLatin1String(one.report_class))
            continue;
        Row fields = one.fields(deck);
        call.audience.report_to(call.session, one.report, fields);
        deck.channel().told[QLatin1String(one.report)] = std::move(fields);
    }
    if (report_class == QLatin1String("listplay"))
        tell_play_list(call, deck);
    if (report_class == QLatin1String("chaseplay"))
        tell_chase_list(call, deck);
}

} // namespace simulator
