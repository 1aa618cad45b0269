// What every command on the list of a channel has in common, whether it edits, reorders or plays it.
#pragma once

#include <simulator/commands/list_kind_p.h>

namespace simulator {

Element index_tag(const ListKind& kind, std::size_t index);

// Tells all who listen the whole list on a channel.
void tell_all(const ListKind& kind, Deck deck);

// Carries out `act(deck, list)` on the list that is loaded on the channel; it may refuse.
template <class Act>
Refusal on_loaded(const ListKind& kind, Call& call, Deck deck, Act act)
{
    if (Refusal refusal = not_free(call, deck))
        return refusal;
    auto& loaded = deck.channel().*kind.on_channel;
    if (!loaded)
        return refuse(
            QStringLiteral("no %1 is loaded on channel %2").arg(QLatin1String(kind.noun), deck.name()));
    return act(deck, *loaded);
}

template <class Act>
Refusal on_loaded(const ListKind& kind, Call& call, Act act)
{
    return on_loaded(kind, call, call.deck(), act);
}

// Why an element cannot be changed or moved: it is about to go on air.
Refusal not_open(const ListKind& kind, Deck deck, const LoadedList& list, quint32 index);

// The elements of a list are others now, or stand elsewhere.
void edited(const ListKind& kind, Deck deck, LoadedList& list);

// The same as on_loaded() for one element, which must be there.
template <class Act>
Refusal on_element(const ListKind& kind, Call& call, Act act)
{
    return on_loaded(kind, call, [&](Deck deck, LoadedList& list) -> Refusal {
        const quint32 index = call.required_number(kind.index);
        if (index >= list.elements.size())
            return refuse(QStringLiteral("the %1 on channel %2 has no element %3")
                              .arg(QLatin1String(kind.noun), deck.name())
                              .arg(index));
        return act(deck, list, index);
    });
}

} // namespace simulator
