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
bool is_near_end(Deck deck)
{
    const Channel& at = deck.channel();
    const LoadedList& list = *at.play_list;
    if (!list.air.now || at.speed == 0 || at.is_wound_back() || at.cue.loop != Loop::off || !takes_next(list))
        return false;
    const qint64 end = static_cast<qint64>(path_of(at.cue).end) << 16;
    const qint64 way = at.speed > 0 ? end - at.motion.at : at.motion.at;
    const FieldRate rate = deck.state.configuration.field_rate();
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
bool play_bed(Deck deck)
{
    Channel& at = deck.channel();
    Cue cue;
    if (!at.play_list->bed || cue_element(deck.state, *at.play_list->bed, cue))
        return false;
    cue.loop = Loop::loop;
    cue.loop_in = cue.position;
    cue.loop_out = cue.out_point;
    load(deck, std::move(cue), ChannelStatus::play);
    start_transition(at, *at.play_list->bed);
    return true;
}

// What the preview channel has otherwise is no concern of the list's; what it shows of it is as it was cued.
void show_next(Deck deck)
{
    const auto pair = program_pair(deck);
    if (!pair || pair->program.number != deck.number)
        return;
    const LoadedList& list = *deck.channel().play_list;
    Cue cue;
    if (!list.air.next || cue_element(deck.state, list.elements[*list.air.next], cue))
        cue = {};
    if (pair->preview.channel().cue == cue)
        return;
    if (cue.clip.isEmpty())
        clear(pair->preview);
    else
        load(pair->preview, std::move(cue));
    tell_changes(pair->preview);
}

void tell_air(const ListKind& kind, Deck deck, LoadedList& list)
{
    const struct
    {
        const char* report;
        std::optional<quint32> OnAir::*index;
    } told[] = {{kind.air_now, &OnAir::now}, {kind.air_lock, &OnAir::lock}, {kind.air_next, &OnAir::next}};
    for (const auto& [report, index] : told)
        if (list.air.*index != list.told.*index)
            deck.audience.report(report, {deck.tag(), air_tag(kind, list.air.*index)});
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

Refusal find_next(Deck deck, Upcoming& next)
{
    const LoadedList& list = *deck.channel().play_list;
    Refusal refusal = refuse(QStringLiteral("the play list on channel %1 is at its end").arg(deck.name()));
    auto index = up_next(list);
    for (std::size_t left = list.elements.size(); index && left > 0; --left) {
        next.cue = {};
        next.index = *index;
        refusal = cue_element(deck.state, list.elements[*index], next.cue);
        if (!refusal)
            return {};
        index = following(list, index);
    }
    return refusal;
}

void put_on_air(Deck deck, Upcoming element, bool rolls)
{
    Channel& at = deck.channel();
    LoadedList& list = *at.play_list;
    load(deck, std::move(element.cue), rolls ? ChannelStatus::play : ChannelStatus::cueing);
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

bool follow_element(Deck deck)
{
    Channel& at = deck.channel();
    if (at.chase_list && at.chase_list->air.now && !is_writing(at))
        return deck.state.chase_timecode.has_value(); // which then says what comes
    if (!at.play_list || !at.play_list->air.now)
        return false;
    const LoadedList& list = *at.play_list;
    if (takes_next(list)) {
        Upcoming next;
        if (find_next(deck, next)) {
            leave_air(at);
            return play_bed(deck);
        }
        const bool rolls = rolls_by_itself(list, next.index);
        put_on_air(deck, std::move(next), rolls);
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

void foresee(Deck deck)
{
    Channel& at = deck.channel();
    if (!at.play_list)
        return;
    OnAir& air = at.play_list->air;
    Upcoming next;
    if (!is_near_end(deck))
        air.lock.reset();
    else if (!air.lock && !find_next(deck, next))
        air.lock = next.index;
    air.next = up_next(*at.play_list);
}

void settle_lists(Deck deck)
{
    Channel& at = deck.channel();
    foresee(deck);
    if (at.play_list)
        tell_air(play_list_kind, deck, *at.play_list);
    if (at.chase_list)
        tell_air(chase_list_kind, deck, *at.chase_list);
    show_next(deck);
}

// A partner that has something of its own to do is left alone.
std::optional<ProgramPair> program_pair(Deck deck)
{
    const auto runs_over_two = [](const Channel& at) {
        return at.play_list && at.play_list->mode == QLatin1String("pgm_pvw");
    };
    const Deck partner = deck.partner();
    const bool is_program = runs_over_two(deck.channel());
    if (!is_program && !runs_over_two(partner.channel()))
        return std::nullopt;
    const ProgramPair pair = is_program ? ProgramPair{deck, partner} : ProgramPair{partner, deck};
    const Channel& preview = pair.preview.channel();
    if (preview.status == ChannelStatus::nochannel || preview.play_list || preview.chase_list ||
        preview.thief || is_writing(preview))
        return std::nullopt;
    return pair;
}

} // namespace simulator
