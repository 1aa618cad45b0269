// What only play lists do: their elements go on air, now or next, over a bed, in a loop.
#include <simulator/commands/cues_p.h>
#include <simulator/commands/loaded_lists_p.h>
#include <simulator/commands/running_p.h>

#include <algorithm>

namespace simulator {

namespace {

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
    load(call.state, call.audience, channel, std::move(cue),
         rolls ? ChannelStatus::play : ChannelStatus::cueing);
    tell_changes(call.state, call.audience, channel);
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
