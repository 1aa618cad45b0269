// What clients do with play lists on air: they take an element, now or next, and set the bed and the loop.
#include <simulator/commands/list_air_p.h>
#include <simulator/commands/loaded_lists_p.h>
#include <simulator/commands/running_p.h>

namespace simulator {

namespace {

Refusal bed(Call& call)
{
    return on_loaded(play_list_kind, call, [&](Deck, LoadedList& list) -> Refusal {
        const Element& element = child(call.arguments, "ListElement");
        if (!list.share.grow(weight(element) - (list.bed ? weight(*list.bed) : 0)))
            return no_room();
        list.bed = element;
        return {};
    });
}

bool is_roll(const Call& call)
{
    return call.text("Roll") == QLatin1String("roll");
}

Refusal list_take(Call& call)
{
    return on_loaded(play_list_kind, call, [&](Deck deck, LoadedList& list) -> Refusal {
        Upcoming next;
        if (Refusal refusal = find_next(deck, next))
            return refusal;
        const bool rolls = rolls_by_itself(list, next.index);
        put_on_air(deck, std::move(next), rolls);
        tell_changes(deck);
        return {};
    });
}

Refusal play_now(Call& call)
{
    return on_element(play_list_kind, call, [&](Deck deck, LoadedList& list, quint32 index) -> Refusal {
        Upcoming element{index, {}};
        if (Refusal refusal = cue_element(call.state, list.elements[index], element.cue))
            return refusal;
        const qint64 start = static_cast<qint64>(element.cue.position) + call.distance("JogDistance");
        put_on_air(deck, std::move(element), is_roll(call));
        go_to(deck.channel(), start);
        tell_changes(deck);
        return {};
    });
}

Refusal play_next(Call& call)
{
    return on_element(play_list_kind, call, [&](Deck deck, LoadedList& list, quint32 index) -> Refusal {
        if (list.air.lock)
            return not_open(play_list_kind, deck, list, *list.air.lock);
        list.chosen = index;
        list.chosen_rolls = is_roll(call);
        tell_changes(deck);
        return {};
    });
}

Refusal list_set_loop(Call& call)
{
    return on_loaded(play_list_kind, call, [&](Deck deck, LoadedList& list) -> Refusal {
        list.loop = call.text("Loop");
        call.report("channel_listplay_loop", {deck.tag(), {"Loop", list.loop}});
        tell_changes(deck);
        return {};
    });
}

} // namespace

CommandRows list_playout_commands()
{
    return {
        {"list_bed", bed},
        {"list_take", list_take},
        {"list_play_now", play_now},
        {"list_play_next", play_next},
        {"list_set_loop", list_set_loop},
    };
}

} // namespace simulator
