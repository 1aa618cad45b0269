// The lists on channels: loaded, shown and edited.
#include <simulator/commands/loaded_lists_p.h>

#include <simulator/catalogue_p.h>
#include <simulator/commands/list_air_p.h>
#include <simulator/reading_p.h>

namespace simulator {

namespace {

Element modified_tag(const LoadedList& list)
{
    return {"ModifiedFlag", list.modified ? QStringLiteral("modified") : QStringLiteral("unmodified")};
}

// Everything that there is to say of the list on a channel, through `tell(report, fields)`.
template <class Tell>
void tell_list(const ListKind& kind, Deck deck, Tell tell)
{
    const auto& loaded = deck.channel().*kind.on_channel;
    if (!loaded)
        return tell(kind.unloaded, {deck.tag()});
    const bool plays = &kind == &play_list_kind;
    if (plays)
        tell(kind.loaded, {deck.tag(), {kind.id, loaded->id}, {"ListPlayMode", loaded->mode}});
    else
        tell(kind.loaded, {deck.tag(), {kind.id, loaded->id}});
    for (std::size_t i = 0; i < loaded->elements.size(); ++i)
        tell(kind.exists, {deck.tag(), index_tag(kind, i), loaded->elements[i]});
    tell(kind.air_now, {deck.tag(), air_tag(kind, loaded->air.now)});
    if (plays) {
        tell(kind.air_lock, {deck.tag(), air_tag(kind, loaded->air.lock)});
        tell(kind.air_next, {deck.tag(), air_tag(kind, loaded->air.next)});
        tell("channel_listplay_loop", {deck.tag(), {"Loop", loaded->loop}});
    }
    tell(kind.modified, {deck.tag(), modified_tag(*loaded)});
}

void tell_one(const ListKind& kind, Call& call, Deck deck)
{
    tell_list(kind, deck, [&](const char* report, const std::initializer_list<Element>& fields) {
        call.audience.report_to(call.session, report, fields);
    });
}

template <const ListKind& kind>
Refusal load_list(Call& call)
{
    const Deck deck = call.deck();
    if (Refusal refusal = not_free(call, deck))
        return refusal;
    const auto* elements = (call.state.*kind.saved).find(call.text(kind.id));
    if (!elements)
        return no_such_list(kind, call.text(kind.id));
    auto& loaded = deck.channel().*kind.on_channel;
    LoadedList list{call.text(kind.id), *elements, Share(call.state.budget)};
    if (!list.share.grow(weight(list.elements)))
        return no_room();
    if (call.has("ListPlayMode"))
        list.mode = call.text("ListPlayMode");
    if (call.has("Transition"))
        list.transition = child(call.arguments, "Transition");
    if (loaded)
        call.report(kind.cleared, {deck.tag()});
    loaded = std::move(list);
    tell_all(kind, deck);
    tell_changes(deck);
    return {};
}

void set_modified(const ListKind& kind, Deck deck, LoadedList& list, bool modified)
{
    if (list.modified == modified)
        return;
    list.modified = modified;
    deck.audience.report(kind.modified, {deck.tag(), modified_tag(list)});
}

template <const ListKind& kind>
Refusal unload(Call& call)
{
    return on_loaded(kind, call, [&](Deck deck, LoadedList&) -> Refusal {
        (deck.channel().*kind.on_channel).reset();
        call.report(kind.unloaded, {deck.tag()});
        tell_changes(deck);
        return {};
    });
}

// What an index means when an element comes in at `at`, or goes.
void shift(std::optional<quint32>& index, quint32 at, bool in)
{
    if (!index || *index < at)
        return;
    if (in)
        ++*index;
    else if (*index == at)
        index.reset();
    else
        --*index;
}

template <const ListKind& kind>
Refusal insert(Call& call)
{
    return on_loaded(kind, call, [&](Deck deck, LoadedList& list) -> Refusal {
        const quint32 index = call.required_number(kind.index);
        const Element& element = child(call.arguments, kind.element);
        if (index > list.elements.size())
            return refuse(QStringLiteral("the %1 on channel %2 ends before %3")
                              .arg(QLatin1String(kind.noun), deck.name())
                              .arg(index));
        if (list.elements.size() == most_list_elements || !list.share.grow(weight(element)))
            return no_room();
        list.elements.insert(list.elements.begin() + index, element);
        for (auto* remembered : list.indices())
            shift(*remembered, index, true);
        call.report(kind.inserted, {deck.tag(), index_tag(kind, index), element});
        edited(kind, deck, list);
        return {};
    });
}

template <const ListKind& kind>
Refusal remove(Call& call)
{
    return on_element(kind, call, [&](Deck deck, LoadedList& list, quint32 index) -> Refusal {
        if (index == list.air.now)
            return refuse(QStringLiteral("element %1 of the %2 on channel %3 is on air")
                              .arg(index)
                              .arg(QLatin1String(kind.noun), deck.name()));
        if (Refusal refusal = not_open(kind, deck, list, index))
            return refusal;
        list.share.grow(-weight(list.elements[index]));
        list.elements.erase(list.elements.begin() + index);
        for (auto* remembered : list.indices())
            shift(*remembered, index, false);
        call.report(kind.removed, {deck.tag(), index_tag(kind, index)});
        edited(kind, deck, list);
        return {};
    });
}

template <const ListKind& kind>
Refusal modify(Call& call)
{
    return on_element(kind, call, [&](Deck deck, LoadedList& list, quint32 index) -> Refusal {
        if (Refusal refusal = not_open(kind, deck, list, index))
            return refusal;
        Element element = list.elements[index];
        for (const Element& change : child(call.arguments, kind.change).children)
            element.set(change);
        read(*Catalogue::get().tag(element.tag)->record, element); // puts it in wire order
        if (!list.share.grow(weight(element) - weight(list.elements[index])))
            return no_room();
        list.elements[index] = element;
        call.report(kind.exists, {deck.tag(), index_tag(kind, index), element});
        edited(kind, deck, list);
        return {};
    });
}

template <const ListKind& kind>
Refusal clear_modified(Call& call)
{
    return on_loaded(kind, call, [&](Deck deck, LoadedList& list) -> Refusal {
        set_modified(kind, deck, list, false);
        return {};
    });
}

} // namespace

Element index_tag(const ListKind& kind, std::size_t index)
{
    return {kind.index, decimal(index)};
}

Element air_tag(const ListKind& kind, const std::optional<quint32>& index)
{
    std::vector<Element> inside;
    if (index)
        inside.push_back(index_tag(kind, *index));
    return {kind.air, inside};
}

Refusal not_open(const ListKind& kind, Deck deck, const LoadedList& list, quint32 index)
{
    return list.air.lock == index
               ? refuse(QStringLiteral("element %1 of the %2 on channel %3 is locked for air")
                            .arg(index)
                            .arg(QLatin1String(kind.noun), deck.name()))
               : Refusal();
}

void edited(const ListKind& kind, Deck deck, LoadedList& list)
{
    list.chase.is_ordered = false;
    tell_changes(deck);
    set_modified(kind, deck, list, true);
}

void tell_all(const ListKind& kind, Deck deck)
{
    foresee(deck);
    if (auto& loaded = deck.channel().*kind.on_channel)
        loaded->told = loaded->air;
    tell_list(kind, deck, [&](const char* report, const std::initializer_list<Element>& fields) {
        deck.audience.report(report, fields);
    });
}

void tell_play_list(Call& call, Deck deck)
{
    tell_one(play_list_kind, call, deck);
}

void tell_chase_list(Call& call, Deck deck)
{
    tell_one(chase_list_kind, call, deck);
}

CommandRows loaded_play_list_commands()
{
    return {
        {"list_load", load_list<play_list_kind>},
        {"list_unload", unload<play_list_kind>},
        {"list_insert", insert<play_list_kind>},
        {"list_remove_item", remove<play_list_kind>},
        {"list_play_modify_item", modify<play_list_kind>},
        {"list_play_clear_modified", clear_modified<play_list_kind>},
    };
}

CommandRows loaded_chase_list_commands()
{
    return {
        {"chase_load", load_list<chase_list_kind>},
        {"chase_unload", unload<chase_list_kind>},
        {"chase_insert", insert<chase_list_kind>},
        {"chase_remove_item", remove<chase_list_kind>},
        {"chase_play_modify_item", modify<chase_list_kind>},
        {"chase_play_clear_modified", clear_modified<chase_list_kind>},
    };
}

} // namespace simulator
