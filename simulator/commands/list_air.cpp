// From element to element of a play list, as their times come.
#include <simulator/commands/list_air_p.h>

#include <simulator/commands/cues_p.h>
#include <simulator/commands/list_kind_p.h>
#include <simulator/commands/running_p.h>
#include <simulator/server_state_p.h>

namespace simulator {

namespace {

// Elements only run in their order, so that each way to repeat is the same one.
bool repeats(const LoadedList& list)
{
    return list.loop.startsWith(QLatin1String("loop")) || list.loop.startsWith(QLatin1String("pingpong"));
}

std::optional<quint32> following(const LoadedList& list, const std::optional<quint32>& index)
{
    const std::size_t next = index ? *index + 1 : 0;
    if (next < list.elements.size())
        return static_cast<quint32>(next);
    return repeats(list) && !list.elements.empty() ? std::optional<quint32>(0) : std::nullopt;
}

std::optional<quint32> up_next(const LoadedList& list)
{
    return list.air.lock ? list.air.lock : list.chosen ? list.chosen : following(list, list.air.now);
}

bool takes_next(const LoadedList& list)
{
    const QString at_end = text(list.elements[*list.air.now], "ListElementAtEnd");
    return at_end.isEmpty() || at_end == QLatin1String("take");
}

// Whether the next element goes on air within half a second.
bool is_near_end(ServerState& state, const Channel& at)
{
    const LoadedList& list = *at.play_list;
    if (!list.air.now || at.speed == 0 || at.is_wound_back() || at.cue.loop != Loop::off || !takes_next(list))
        return false;
    const qint64 end = static_cast<qint64>(path_of(at.cue).end) << 16;
    const qint64 way = at.speed > 0 ? end - at.motion.at : at.motion.at;
    const FieldRate rate = state.configuration.field_rate();
    return way * rate.seconds * 2 <= std::abs(static_cast<qint64>(at.speed)) * rate.fields;
}

void start_transition(Channel& at, const Element& element)
{
    const Element& own = child(element, "Transition");
    const Element& transition =
        own.tag.isEmpty() && at.play_list->transition ? *at.play_list->transition : own;
    if (text(transition, "TransitionType") == QLatin1String("dissolve"))
        at.transition = number(transition, "TransitionDuration").value_or(0);
}

// Under the list, over and over. False if there is nothing to play.
bool play_bed(ServerState& state, Audience& audience, int channel)
{
    Channel& at = channel_at(state, channel);
    Cue cue;
    if (!at.play_list->bed || cue_element(state, *at.play_list->bed, cue))
        return false;
    cue.loop = Loop::loop;
    cue.loop_in = cue.position;
    cue.loop_out = cue.out_point;
    load(state, audience, channel, std::move(cue), ChannelStatus::play);
    start_transition(at, *at.play_list->bed);
    return true;
}

// What the preview channel has otherwise is no concern of the list's; what it shows of it is as it was cued.
void show_next(ServerState& state, Audience& audience, int channel)
{
    const auto pair = program_pair(state, channel);
    if (!pair || pair->program != channel)
        return;
    const LoadedList& list = *channel_at(state, channel).play_list;
    Cue cue;
    if (!list.air.next || cue_element(state, list.elements[*list.air.next], cue))
        cue = {};
    if (channel_at(state, pair->preview).cue == cue)
        return;
    if (cue.clip.isEmpty())
        clear(state, audience, pair->preview);
    else
        load(state, audience, pair->preview, std::move(cue));
    tell_changes(state, audience, pair->preview);
}

void tell_air(const ListKind& kind, Audience& audience, int channel, LoadedList& list)
{
    const struct
    {
        const char* report;
        std::optional<quint32> OnAir::*index;
    } told[] = {{kind.air_now, &OnAir::now}, {kind.air_lock, &OnAir::lock}, {kind.air_next, &OnAir::next}};
    for (const auto& [report, index] : told)
        if (list.air.*index != list.told.*index)
            audience.report(report, {channel_tag(channel), air_tag(kind, list.air.*index)});
    list.told = list.air;
}

} // namespace

Refusal cue_element(ServerState& state, const Element& element, Cue& cue)
{
    const Element& content = child(element, "ContentID");
    const bool is_virtual = has(content, "VClipID");
    const Refusal refusal =
        make_cue(state, text(content, is_virtual ? "VClipID" : "ClipID"), is_virtual, element, cue);
    cue.loop = Loop::off;
    return refusal;
}

Refusal find_next(ServerState& state, int channel, Upcoming& next)
{
    const LoadedList& list = *channel_at(state, channel).play_list;
    Refusal refusal =
        refuse(QStringLiteral("the play list on channel %1 is at its end").arg(channel_name(channel)));
    auto index = up_next(list);
    for (std::size_t left = list.elements.size(); index && left > 0; --left) {
        next.cue = {};
        next.index = *index;
        refusal = cue_element(state, list.elements[*index], next.cue);
        if (!refusal)
            return {};
        index = following(list, index);
    }
    return refusal;
}

void put_on_air(ServerState& state, Audience& audience, int channel, Upcoming element, bool rolls)
{
    Channel& at = channel_at(state, channel);
    LoadedList& list = *at.play_list;
    load(state, audience, channel, std::move(element.cue),
         rolls ? ChannelStatus::play : ChannelStatus::cueing);
    start_transition(at, list.elements[element.index]);
    list.air.now = element.index;
    list.air.lock.reset();
    list.chosen.reset();
}

bool rolls_by_itself(const LoadedList& list, quint32 index)
{
    if (list.chosen == index)
        return list.chosen_rolls;
    return text(list.elements[index], "ListElementAtStart") != QLatin1String("pause");
}

bool follow_element(ServerState& state, Audience& audience, int channel)
{
    Channel& at = channel_at(state, channel);
    if (at.chase_list && at.chase_list->air.now && !is_writing(at))
        return state.chase_timecode.has_value(); // which then says what comes
    if (!at.play_list || !at.play_list->air.now)
        return false;
    const LoadedList& list = *at.play_list;
    if (takes_next(list)) {
        Upcoming next;
        if (find_next(state, channel, next)) {
            leave_air(at);
            return play_bed(state, audience, channel);
        }
        const bool rolls = rolls_by_itself(list, next.index);
        put_on_air(state, audience, channel, std::move(next), rolls);
        return true;
    }
    const bool again = text(list.elements[*list.air.now], "ListElementAtEnd") == QLatin1String("loop");
    if (again)
        go_to(at, at.cue.position);
    return again;
}

void leave_air(Channel& channel)
{
    for (auto* list : {&channel.play_list, &channel.chase_list})
        if (*list)
            (*list)->air.now.reset();
}

void foresee(ServerState& state, int channel)
{
    Channel& at = channel_at(state, channel);
    if (!at.play_list)
        return;
    OnAir& air = at.play_list->air;
    Upcoming next;
    if (!is_near_end(state, at))
        air.lock.reset();
    else if (!air.lock && !find_next(state, channel, next))
        air.lock = next.index;
    air.next = up_next(*at.play_list);
}

void settle_lists(ServerState& state, Audience& audience, int channel)
{
    Channel& at = channel_at(state, channel);
    foresee(state, channel);
    if (at.play_list)
        tell_air(play_list_kind, audience, channel, *at.play_list);
    if (at.chase_list)
        tell_air(chase_list_kind, audience, channel, *at.chase_list);
    show_next(state, audience, channel);
}

// A and B are a pair, C and D, and so on. A partner that has something of its own to do is left alone.
std::optional<ProgramPair> program_pair(ServerState& state, int channel)
{
    const auto runs_over_two = [](const Channel& at) {
        return at.play_list && at.play_list->mode == QLatin1String("pgm_pvw");
    };
    const int partner = channel ^ 1;
    const bool is_program = runs_over_two(channel_at(state, channel));
    if (!is_program && !runs_over_two(channel_at(state, partner)))
        return std::nullopt;
    const ProgramPair pair = is_program ? ProgramPair{channel, partner} : ProgramPair{partner, channel};
    const Channel& preview = channel_at(state, pair.preview);
    if (preview.status == ChannelStatus::nochannel || preview.play_list || preview.chase_list ||
        preview.thief || is_writing(preview))
        return std::nullopt;
    return pair;
}

} // namespace simulator
