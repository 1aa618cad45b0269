// What every change of the store has in common, be it one of clips or of directories.
#pragma once

#include <simulator/call_p.h>
#include <simulator/clip_store.h>
#include <simulator/server_state_p.h>

namespace simulator {

// Of a clip or directory with its name, and of what the server itself notes of a clip.
constexpr qint64 entry_weight = 4096;

// Carries out `change`, which may be refused, if there is room for that many bytes.
template <class Change>
Refusal with_room(Call& call, qint64 bytes, Change change)
{
    if (!call.state.budget.take(bytes))
        return no_room();
    const Refusal refusal = change();
    if (refusal)
        call.state.budget.give(bytes);
    return refusal;
}

// Tells of names, each in a report of its own under that tag.
void tell_names(Call& call, const char* report, const char* tag, const QStringList& names);
void tell_created_directories(Call& call, const QStringList& names);

// What a change of the store came to, as an answer. `kind` is "clip" or "directory".
Refusal refusal_of(ClipStore::Outcome outcome, const char* kind, const QString& from, const QString& to);

// Why a clip cannot go or change its name; also for all clips in a directory, `name` with a slash.
Refusal in_use(const Call& call, const QString& name);

} // namespace simulator
