// The saved lists: listed, downloaded, saved element by element, renamed, deleted.
#include <simulator/commands/list_kind_p.h>

namespace simulator {

Refusal no_such_list(const ListKind& kind, const QString& id)
{
    return refuse(QStringLiteral("no such %1 %2").arg(QLatin1String(kind.noun), quoted(id)));
}

namespace {

template <const ListKind& kind>
Refusal download_ids(Call& call)
{
    for (const auto& [id, elements] : call.state.*kind.saved)
        call.reply(kind.id_reply, {{kind.id, id}});
    return {};
}

template <const ListKind& kind>
Refusal download(Call& call)
{
    const auto* elements = (call.state.*kind.saved).find(call.text(kind.id));
    if (!elements)
        return no_such_list(kind, call.text(kind.id));
    for (const Element& element : *elements)
        call.reply(kind.element_reply, {element});
    return {};
}

// A second start begins afresh.
template <const ListKind& kind>
Refusal save_start(Call& call)
{
    if (call.text(kind.id).isEmpty())
        return refuse(QStringLiteral("a %1 needs a name").arg(QLatin1String(kind.noun)));
    call.session.*kind.draft = ListDraft{call.text(kind.id), {}, Share(call.state.budget)};
    return {};
}

Refusal not_saving(const ListKind& kind)
{
    return refuse(QStringLiteral("no %1 is being saved").arg(QLatin1String(kind.noun)));
}

template <const ListKind& kind>
Refusal save_element(Call& call)
{
    auto& draft = call.session.*kind.draft;
    if (!draft)
        return not_saving(kind);
    const Element& element = child(call.arguments, kind.element);
    if (draft->elements.size() == most_list_elements || !draft->share.grow(weight(element)))
        return no_room();
    draft->elements.push_back(element);
    return {};
}

template <const ListKind& kind>
Refusal save_end(Call& call)
{
    auto& draft = call.session.*kind.draft;
    if (!draft)
        return not_saving(kind);
    ListDraft done = std::move(*draft);
    draft.reset();
    done.share = Share(call.state.budget); // what it holds moves to the shelf, which pays for it
    auto& saved = call.state.*kind.saved;
    const bool is_new = !saved.find(done.id);
    if (!saved.put(done.id, std::move(done.elements)))
        return no_room();
    call.report(is_new ? kind.created : kind.changed, {{kind.id, done.id}});
    return {};
}

template <const ListKind& kind>
Refusal rename(Call& call)
{
    auto& saved = call.state.*kind.saved;
    const QString from = call.text(kind.from), to = call.text(kind.to);
    const auto* elements = saved.find(from);
    if (!elements)
        return no_such_list(kind, from);
    if (to.isEmpty() || saved.find(to))
        return refuse(
            QStringLiteral("a %1 cannot be given the name %2").arg(QLatin1String(kind.noun), quoted(to)));
    if (!saved.put(to, *elements))
        return no_room();
    saved.erase(from);
    call.report(kind.deleted, {{kind.id, from}});
    call.report(kind.created, {{kind.id, to}});
    return {};
}

template <const ListKind& kind>
Refusal erase(Call& call)
{
    const QString id = call.text(kind.id);
    if (!(call.state.*kind.saved).erase(id))
        return no_such_list(kind, id);
    call.report(kind.deleted, {{kind.id, id}});
    return {};
}

} // namespace

CommandRows play_list_commands()
{
    return {
        {"download_listids", download_ids<play_list_kind>},
        {"download_list", download<play_list_kind>},
        {"list_save_start", save_start<play_list_kind>},
        {"list_save_element", save_element<play_list_kind>},
        {"list_save_end", save_end<play_list_kind>},
        {"list_rename", rename<play_list_kind>},
        {"list_delete", erase<play_list_kind>},
    };
}

CommandRows chase_list_commands()
{
    return {
        {"download_chaseids", download_ids<chase_list_kind>},
        {"download_chase", download<chase_list_kind>},
        {"chase_save_start", save_start<chase_list_kind>},
        {"chase_save_element", save_element<chase_list_kind>},
        {"chase_save_end", save_end<chase_list_kind>},
        {"chase_rename", rename<chase_list_kind>},
        {"chase_delete", erase<chase_list_kind>},
    };
}

} // namespace simulator
