// Reordering the list on a channel: the elements that a client picks move, in the order they stand in, before
// the one that the finish names.
#include <simulator/commands/loaded_lists_p.h>

#include <algorithm>

namespace simulator {

namespace {

template <const ListKind& kind>
Refusal reorder_start(Call& call)
{
    return on_loaded(kind, call, [&](Deck deck, LoadedList&) -> Refusal {
        call.session.*kind.reordering = Reordering{deck.number, {}, Share(call.state.budget)};
        return {};
    });
}

Refusal not_reordering(const ListKind& kind)
{
    return refuse(QStringLiteral("no %1 is being reordered").arg(QLatin1String(kind.noun)));
}

template <const ListKind& kind>
Refusal reorder_item(Call& call)
{
    auto& reordering = call.session.*kind.reordering;
    if (!reordering)
        return not_reordering(kind);
    if (!reordering->share.grow(sizeof(quint32)))
        return no_room();
    reordering->picked.push_back(call.required_number(kind.index));
    return {};
}

template <const ListKind& kind>
Refusal reorder_finish(Call& call)
{
    if (!(call.session.*kind.reordering))
        return not_reordering(kind);
    const Reordering reordering = std::move(*(call.session.*kind.reordering));
    (call.session.*kind.reordering).reset();
    const Deck reordered{call.state, call.audience, reordering.channel};

    return on_loaded(kind, call, reordered, [&](Deck deck, LoadedList& list) -> Refusal {
        const quint32 before = call.required_number(kind.index);
        std::vector<bool> picked(list.elements.size());
        for (const quint32 index : reordering.picked) {
            if (index >= picked.size())
                return refuse(QStringLiteral("there is no element %1 to move").arg(index));
            if (Refusal refusal = not_open(kind, deck, list, index))
                return refusal;
            picked[index] = true;
        }
        if (before > list.elements.size())
            return refuse(QStringLiteral("there is no element %1 to move others to").arg(before));

        std::vector<quint32> order;
        const auto append = [&](std::size_t from, std::size_t to, bool wanted) {
            for (std::size_t i = from; i < to; ++i)
                if (picked[i] == wanted)
                    order.push_back(static_cast<quint32>(i));
        };
        append(0, before, false);
        append(0, picked.size(), true);
        append(before, picked.size(), false);

        std::vector<Element> moved;
        for (const quint32 index : order)
            moved.push_back(std::move(list.elements[index]));
        list.elements = std::move(moved);
        for (auto* index : list.indices())
            if (*index)
                *index = static_cast<quint32>(std::find(order.begin(), order.end(), **index) - order.begin());

        call.report(kind.cleared, {deck.tag()});
        list.modified = true;
        list.chase.is_ordered = false;
        tell_all(kind, deck);
        tell_changes(deck);
        return {};
    });
}

} // namespace

CommandRows list_reordering_commands()
{
    return {
        {"list_play_reorder_start", reorder_start<play_list_kind>},
        {"list_play_reorder_item", reorder_item<play_list_kind>},
        {"list_play_reorder_finish", reorder_finish<play_list_kind>},
        {"chase_play_reorder_start", reorder_start<chase_list_kind>},
        {"chase_play_reorder_item", reorder_item<chase_list_kind>},
        {"chase_play_reorder_finish", reorder_finish<chase_list_kind>},
    };
}

} // namespace simulator
