// Export: the clips of one are named between its start and its end.
#include <simulator/call_p.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>

namespace simulator {

namespace {

Refusal no_export()
{
    return refuse(QStringLiteral("no export has been started"));
}

Refusal initiate(Call& call)
{
    call.report("export_requested", {child(call.arguments, "Channel")});
    return {};
}

Refusal start(Call& call)
{
    call.session.export_draft = ExportDraft{{}, Share(call.state.budget)};
    return {};
}

Refusal add(Call& call)
{
    auto& draft = call.session.export_draft;
    if (!draft)
        return no_export();
    if (!call.state.clips.has_clip(call.text("ClipID")))
        return no_such_clip(call.text("ClipID"));
    if (call.text("Filename").isEmpty())
        return refuse(QStringLiteral("an export needs a file name"));
    if (!draft->share.grow(weight(call.arguments)))
        return no_room();
    draft->clips.push_back(call.arguments);
    return {};
}

// No file is written: there is nothing in the clips. A clip may have gone since it was named.
Refusal end(Call& call)
{
    if (!call.session.export_draft)
        return no_export();
    const ExportDraft done = std::move(*call.session.export_draft);
    call.session.export_draft.reset();
    for (const Element& clip : done.clips)
        if (!call.state.clips.has_clip(text(clip, "ClipID")))
            return no_such_clip(text(clip, "ClipID"));
    return {};
}

} // namespace

CommandRows export_commands()
{
    return {
        {"export_initiate", initiate},
        {"export_start", start},
        {"export_add", add},
        {"export_end", end},
    };
}

} // namespace simulator
