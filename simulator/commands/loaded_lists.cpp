// The lists on channels: loaded, edited, reordered and put on air.
#include <simulator/commands/list_kind_p.h>

#include <simulator/catalogue_p.h>
#include <simulator/reading_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr std::size_t most_picked = 65536;

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

Element modified_tag(const LoadedList& list)
{
    return {"ModifiedFlag", list.modified ? QStringLiteral("modified") : QStringLiteral("unmodified")};
}

// Everything that there is to say of the list on a channel, through `tell(report, fields)`.
template <class Tell>
void tell_list(const ListKind& kind, ServerState& state, int channel, Tell tell)
{
    const auto& loaded = channel_at(state, channel).*kind.on_channel;
    if (!loaded)
        return tell(kind.unloaded, {channel_tag(channel)});
    const bool plays = &kind == &play_list_kind;
    if (plays)
        tell(kind.loaded, {channel_tag(channel), {kind.id, loaded->id}, {"ListPlayMode", loaded->mode}});
    else
        tell(kind.loaded, {channel_tag(channel), {kind.id, loaded->id}});
    for (std::size_t i = 0; i < loaded->elements.size(); ++i)
        tell(kind.exists, {channel_tag(channel), index_tag(kind, i), loaded->elements[i]});
    tell(kind.air_now, {channel_tag(channel), air_tag(kind, loaded->air_now)});
    if (plays) {
        tell("channel_listplay_air_next", {channel_tag(channel), air_tag(kind, loaded->air_next)});
        tell("channel_listplay_loop", {channel_tag(channel), {"Loop", loaded->loop}});
    }
    tell(kind.modified, {channel_tag(channel), modified_tag(*loaded)});
}

void tell_all(const ListKind& kind, Call& call, int channel)
{
    tell_list(kind, call.state, channel,
              [&](const char* report, const std::initializer_list<Element>& fields) {
                  call.report(report, fields);
              });
}

void tell_one(const ListKind& kind, Call& call, int channel)
{
    tell_list(kind, call.state, channel,
              [&](const char* report, const std::initializer_list<Element>& fields) {
                  call.audience.report_to(call.session, report, fields);
              });
}

template <const ListKind& kind>
Refusal load_list(Call& call)
{
    const int channel = named_channels(call).front();
    if (Refusal refusal = not_free(call, channel))
        return refusal;
    const auto* elements = (call.state.*kind.saved).find(call.text(kind.id));
    if (!elements)
        return no_such_list(kind, call.text(kind.id));
    auto& loaded = channel_at(call.state, channel).*kind.on_channel;
    LoadedList list{call.text(kind.id), *elements, Share(call.state.budget)};
    if (!list.share.grow(weight(list.elements)))
        return no_room();
    if (call.has("ListPlayMode"))
        list.mode = call.text("ListPlayMode");
    if (call.has("Transition"))
        list.transition = child(call.arguments, "Transition");
    if (loaded)
        call.report(kind.cleared, {channel_tag(channel)});
    loaded = std::move(list);
    tell_all(kind, call, channel);
    return {};
}

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

// The same for one element, which must be there.
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

void set_modified(const ListKind& kind, Call& call, int channel, LoadedList& list, bool modified)
{
    if (list.modified == modified)
        return;
    list.modified = modified;
    call.report(kind.modified, {channel_tag(channel), modified_tag(list)});
}

template <const ListKind& kind>
Refusal unload(Call& call)
{
    return on_loaded(kind, call, [&](int channel, LoadedList&) -> Refusal {
        (channel_at(call.state, channel).*kind.on_channel).reset();
        call.report(kind.unloaded, {channel_tag(channel)});
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
    return on_loaded(kind, call, [&](int channel, LoadedList& list) -> Refusal {
        const quint32 index = call.required_number(kind.index);
        const Element& element = child(call.arguments, kind.element);
        if (index > list.elements.size())
            return refuse(QStringLiteral("the %1 on channel %2 ends before %3")
                              .arg(QLatin1String(kind.noun), channel_name(channel))
                              .arg(index));
        if (list.elements.size() == most_list_elements || !list.share.grow(weight(element)))
            return no_room();
        list.elements.insert(list.elements.begin() + index, element);
        shift(list.air_now, index, true);
        shift(list.air_next, index, true);
        call.report(kind.inserted, {channel_tag(channel), index_tag(kind, index), element});
        set_modified(kind, call, channel, list, true);
        return {};
    });
}

template <const ListKind& kind>
Refusal remove(Call& call)
{
    return on_element(kind, call, [&](int channel, LoadedList& list, quint32 index) -> Refusal {
        list.share.grow(-weight(list.elements[index]));
        list.elements.erase(list.elements.begin() + index);
        shift(list.air_now, index, false);
        shift(list.air_next, index, false);
        call.report(kind.removed, {channel_tag(channel), index_tag(kind, index)});
        set_modified(kind, call, channel, list, true);
        return {};
    });
}

template <const ListKind& kind>
Refusal modify(Call& call)
{
    return on_element(kind, call, [&](int channel, LoadedList& list, quint32 index) -> Refusal {
        Element element = list.elements[index];
        for (const Element& change : child(call.arguments, kind.change).children)
            element.set(change);
        read(*Catalogue::get().tag(element.tag)->record, element); // puts it in wire order
        if (!list.share.grow(weight(element) - weight(list.elements[index])))
            return no_room();
        list.elements[index] = element;
        call.report(kind.exists, {channel_tag(channel), index_tag(kind, index), element});
        set_modified(kind, call, channel, list, true);
        return {};
    });
}

template <const ListKind& kind>
Refusal clear_modified(Call& call)
{
    return on_loaded(kind, call, [&](int channel, LoadedList& list) -> Refusal {
        set_modified(kind, call, channel, list, false);
        return {};
    });
}

// Reordering: the elements that were picked move, in the order they stand in, before the one that the
// finish names.

template <const ListKind& kind>
Refusal reorder_start(Call& call)
{
    return on_loaded(kind, call, [&](int channel, LoadedList&) -> Refusal {
        call.session.*kind.reordering = Reordering{channel, {}};
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
    if (reordering->picked.size() == most_picked)
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

    return on_loaded(kind, call, reordering.channel, [&](int channel, LoadedList& list) -> Refusal {
        const quint32 before = call.required_number(kind.index);
        std::vector<bool> picked(list.elements.size());
        for (const quint32 index : reordering.picked) {
            if (index >= picked.size())
                return refuse(QStringLiteral("there is no element %1 to move").arg(index));
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
        for (auto* index : {&list.air_now, &list.air_next})
            if (*index)
                *index = static_cast<quint32>(std::find(order.begin(), order.end(), **index) - order.begin());

        call.report(kind.cleared, {channel_tag(channel)});
        list.modified = true;
        tell_all(kind, call, channel);
        return {};
    });
}

// What only play lists do.

void tell_next(Call& call, int channel, const LoadedList& list)
{
    call.report("channel_listplay_air_next", {channel_tag(channel), air_tag(play_list_kind, list.air_next)});
}

Refusal put_on_air(Call& call, int channel, LoadedList& list, quint32 index, bool rolls)
{
    const Element& element = list.elements[index];
    const Element& content = child(element, "ContentID");
    const bool is_virtual = has(content, "VClipID");
    Cue cue;
    if (Refusal refusal =
            make_cue(call.state, text(content, is_virtual ? "VClipID" : "ClipID"), is_virtual, element, cue))
        return refusal;
    cue.position =
        std::clamp<qint64>(static_cast<qint64>(cue.position) + call.distance("JogDistance"), 0, cue.length);
    load(call, channel, std::move(cue), rolls ? QStringLiteral("play") : QStringLiteral("stop"));
    list.air_now = index;
    list.air_next.reset();
    if (index + 1 < list.elements.size())
        list.air_next = index + 1;
    call.report(play_list_kind.air_now, {channel_tag(channel), air_tag(play_list_kind, list.air_now)});
    tell_next(call, channel, list);
    return {};
}

Refusal bed(Call& call)
{
    return on_loaded(play_list_kind, call, [&](int, LoadedList& list) -> Refusal {
        const Element& element = child(call.arguments, "ListElement");
        if (!list.share.grow(weight(element) - (list.bed ? weight(*list.bed) : 0)))
            return no_room();
        list.bed = element;
        return {};
    });
}

Refusal list_take(Call& call)
{
    return on_loaded(play_list_kind, call, [&](int channel, LoadedList& list) -> Refusal {
        const quint32 next = list.air_next.value_or(list.air_now ? *list.air_now + 1 : 0);
        if (next >= list.elements.size())
            return refuse(
                QStringLiteral("the play list on channel %1 is at its end").arg(channel_name(channel)));
        return put_on_air(call, channel, list, next, true);
    });
}

Refusal play_now(Call& call)
{
    return on_element(play_list_kind, call, [&](int channel, LoadedList& list, quint32 index) {
        return put_on_air(call, channel, list, index, call.text("Roll") == QLatin1String("roll"));
    });
}

Refusal play_next(Call& call)
{
    return on_element(play_list_kind, call, [&](int channel, LoadedList& list, quint32 index) -> Refusal {
        list.air_next = index;
        tell_next(call, channel, list);
        return {};
    });
}

Refusal list_set_loop(Call& call)
{
    return on_loaded(play_list_kind, call, [&](int channel, LoadedList& list) -> Refusal {
        list.loop = call.text("Loop");
        call.report("channel_listplay_loop", {channel_tag(channel), {"Loop", list.loop}});
        return {};
    });
}

} // namespace

void tell_play_list(Call& call, int channel)
{
    tell_one(play_list_kind, call, channel);
}

void tell_chase_list(Call& call, int channel)
{
    tell_one(chase_list_kind, call, channel);
}

CommandRows loaded_play_list_commands()
{
    return {
        {"list_load", load_list<play_list_kind>},
        {"list_unload", unload<play_list_kind>},
        {"list_bed", bed},
        {"list_insert", insert<play_list_kind>},
        {"list_remove_item", remove<play_list_kind>},
        {"list_take", list_take},
        {"list_play_now", play_now},
        {"list_play_next", play_next},
        {"list_play_modify_item", modify<play_list_kind>},
        {"list_play_clear_modified", clear_modified<play_list_kind>},
        {"list_play_reorder_start", reorder_start<play_list_kind>},
        {"list_play_reorder_item", reorder_item<play_list_kind>},
        {"list_play_reorder_finish", reorder_finish<play_list_kind>},
        {"list_set_loop", list_set_loop},
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
        {"chase_play_reorder_start", reorder_start<chase_list_kind>},
        {"chase_play_reorder_item", reorder_item<chase_list_kind>},
        {"chase_play_reorder_finish", reorder_finish<chase_list_kind>},
    };
}

} // namespace simulator
