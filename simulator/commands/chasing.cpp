// From a timecode to the element whose time it is, and to the field of its clip.
#include <simulator/commands/chasing_p.h>

#include <simulator/commands/list_air_p.h>
#include <simulator/commands/running_p.h>
#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr qint64 tolerance = 2 << 16; // a channel may be a frame off before it is corrected

qint64 trigger(const Element& element)
{
    return number(element, "TcStartTrigger").value_or(0);
}

// Who has no trigger never starts.
void put_in_order(LoadedList& list)
{
    std::vector<quint32>& order = list.chase.order;
    order.clear();
    for (std::size_t i = 0; i < list.elements.size(); ++i)
        if (has(list.elements[i], "TcStartTrigger"))
            order.push_back(static_cast<quint32>(i));
    std::stable_sort(order.begin(), order.end(), [&](quint32 a, quint32 b) {
        return trigger(list.elements[a]) < trigger(list.elements[b]);
    });
    list.chase.is_ordered = true;
}

// The element that began last before that time.
std::optional<quint32> element_at(LoadedList& list, qint64 time)
{
    if (!list.chase.is_ordered)
        put_in_order(list);
    const std::vector<quint32>& order = list.chase.order;
    const auto later = std::upper_bound(order.begin(), order.end(), time, [&](qint64 wanted, quint32 index) {
        return wanted < trigger(list.elements[index]);
    });
    return later == order.begin() ? std::nullopt : std::optional<quint32>(*std::prev(later));
}

// Where an element is at some time.
struct Place
{
    Cue cue;
    qint64 at = 0; // in 1/65536 of a field
    bool is_black = false, has_ended = false;
};

Place place_at(ServerState& state, const Element& element, qint64 time)
{
    Place place;
    Cue& cue = place.cue;
    if (cue_element(state, element, cue)) {
        place.is_black = true;
        return place;
    }
    cue.position += std::min(cue.length - cue.position, number(element, "ClipStartOffset").value_or(0));
    const qint64 start = static_cast<qint64>(cue.position) << 16;
    const qint64 end = static_cast<qint64>(cue.out_point.value_or(cue.length)) << 16;
    const qint64 room = std::max<qint64>(0, cue.speed < 0 ? start : end - start);
    const QString at_end = text(element, "ChaseElementAtEnd");

    qint64 way = (time - trigger(element)) * std::abs(static_cast<qint64>(cue.speed));
    place.has_ended = cue.speed != 0 && way >= room;
    if (place.has_ended && room > 0 && at_end == QLatin1String("loop")) {
        way %= room;
        place.has_ended = false;
    }
    way = std::min(way, room);
    place.at = cue.speed < 0 ? start - way : start + way;
    place.is_black = place.has_ended && (at_end.isEmpty() || at_end == QLatin1String("black"));
    return place;
}

// Stops what chases; it goes on when there is a timecode again.
void lose_timecode(ServerState& state, Audience& audience)
{
    state.chase_timecode.reset();
    for (const Deck deck : all_decks(state, audience)) {
        Channel& at = deck.channel();
        if (!at.chase_list || !at.chase_list->air.now || at.speed == 0)
            continue;
        stand(deck);
        at.chase_list->chase.stands = true;
    }
}

Refusal sending_chase_ltcin(Call& call)
{
    ServerState& state = call.state;
    const Element& timecode = child(call.arguments, "Timecode");
    call.report("chase_ltc_timecode", {timecode});
    lose_old_timecode(state, call.audience);
    if (text(timecode, "Valid") == QLatin1String("true") && has(timecode, "FieldNumber")) {
        const auto before = std::exchange(state.chase_timecode,
                                          ChaseTimecode{text(timecode, "FieldNumber").toInt(), state.field});
        state.chase_timecode->runs = !before || before->number != state.chase_timecode->number;
    } else {
        lose_timecode(state, call.audience);
    }
    for (const Deck deck : all_decks(state, call.audience))
        if (deck.channel().chase_list) {
            chase(deck);
            tell_changes(deck);
        }
    return {};
}

} // namespace

// What a client does with the channel stands until another element comes: it may stop it and play it on, or
// put something else there. A recording is not ended by a timecode.
void chase(Deck deck)
{
    Channel& at = deck.channel();
    if (!at.chase_list || !deck.state.chase_timecode || is_writing(at))
        return;
    LoadedList& list = *at.chase_list;
    const qint64 time = deck.state.chase_timecode->at(deck.state.field);
    const auto element = element_at(list, time);
    Place place;
    place.is_black = true;
    if (element)
        place = place_at(deck.state, list.elements[*element], time);

    const bool is_new = list.chase.element != element || list.chase.is_black != place.is_black;
    list.chase.element = element;
    list.chase.is_black = place.is_black;
    if (place.is_black) {
        if (list.air.now)
            clear(deck);
        return;
    }
    if (is_new && list.air.now != element) {
        load(deck, std::move(place.cue), ChannelStatus::play);
        at.motion = {place.at, false};
        list.air.now = element;
        list.chase.stands = false;
    }
    if (list.air.now != element)
        return;

    const bool runs = deck.state.chase_timecode->runs && !place.has_ended;
    if (runs && list.chase.stands) {
        roll(deck);
        list.chase.stands = false;
        at.motion = {place.at, false};
    } else if (!runs && (list.chase.stands || at.speed != 0)) {
        stand(deck);
        list.chase.stands = true;
        at.motion = {place.at, false};
    } else if (at.speed != 0 && std::abs(at.motion.at - place.at) > tolerance) {
        at.motion = {place.at, false};
    }
}

void lose_old_timecode(ServerState& state, Audience& audience)
{
    if (!state.chase_timecode)
        return;
    const FieldRate rate = state.configuration.field_rate();
    const quint64 age = state.field - state.chase_timecode->heard;
    if (age * static_cast<quint64>(rate.seconds) >= static_cast<quint64>(rate.fields))
        lose_timecode(state, audience);
}

bool is_chasing(const ServerState& state, const Channel& channel)
{
    return state.chase_timecode && channel.chase_list;
}

CommandRows chasing_commands()
{
    return {
        {"sending_chase_ltcin", sending_chase_ltcin},
    };
}

} // namespace simulator
