// What every command on the list of a channel has in common, whether it edits, reorders or plays it.
#pragma once

#include <simulator/commands/list_kind_p.h>

namespace simulator {

Element index_tag(const ListKind& kind, std::size_t index);

// Tells all who listen the whole list on a channel.
void tell_all(const ListKind& kind, Call& call, int channel);

// Carries out `act(channel, list)` on the list that is loaded on the channel; it may refuse.
template <class Act>
Refusal on_loaded(const ListKind& kind, Call& call, int channel, Act act)
{
    if (Refusal refusal = not_free(call, channel))
        return refusal;
    auto& loaded = channel_at(call.state, channel).*kind.on_channel;
    if (!loaded)
        return refuse(QStringLiteral("no %1 is loaded on channel %2")
                          .arg(QLatin1String(kind.noun), channel_name(channel)));
    return act(channel, *loaded);
}

template <class Act>
Refusal on_loaded(const ListKind& kind, Call& call, Act act)
{
    return on_loaded(kind, call, named_channels(call).front(), act);
}

// Why an element cannot be changed or moved: it is about to go on air.
Refusal not_open(const ListKind& kind, int channel, const LoadedList& list, quint32 index);

// The elements of a list are others now, or stand elsewhere.
void edited(const ListKind& kind, Call& call, int channel, LoadedList& list);

// The same as on_loaded() for one element, which must be there.
template <class Act>
Refusal on_element(const ListKind& kind, Call& call, Act act)
{
    return on_loaded(kind, call, [&](int channel, LoadedList& list) -> Refusal {
        const quint32 index = call.required_number(kind.index);
        if (index >= list.elements.size())
            return refuse(QStringLiteral("the %1 on channel %2 has no element %3")
                              .arg(QLatin1String(kind.noun), channel_name(channel))
                              .arg(index));
        return act(channel, list, index);
    });
}

} // namespace simulator
