// Directories: listed, made and renamed.
#include <simulator/commands/clips_p.h>
#include <simulator/commands/store_changes_p.h>

namespace simulator {

namespace {

// Why the directory that is named cannot be listed; none named, or the empty name, is fine.
Refusal unlistable(const Call& call)
{
    return call.state.clips.has_directory(call.text("DirectoryName"))
               ? Refusal()
               : refusal_of(ClipStore::Outcome::NotFound, "directory", call.text("DirectoryName"), {});
}

Refusal download_clipids(Call& call)
{
    if (Refusal refusal = unlistable(call))
        return refusal;
    const ClipStore& clips = call.state.clips;
    for (const QString& clip :
         call.has("DirectoryName") ? clips.clips_in(call.text("DirectoryName")) : clips.clips())
        call.reply("clipid", {{"ClipID", clip}});
    return {};
}

Refusal download_directory_names(Call& call)
{
    if (Refusal refusal = unlistable(call))
        return refusal;
    const ClipStore& clips = call.state.clips;
    for (const QString& name :
         call.has("DirectoryName") ? clips.directories_in(call.text("DirectoryName")) : clips.directories())
        call.reply("directory_name", {{"DirectoryName", name}});
    return {};
}

Refusal create_directory(Call& call)
{
    const QString name = call.text("DirectoryName");
    const QStringList made = call.state.clips.missing_directories(name);
    if (Refusal refusal = with_room(call, entry_weight * made.size(), [&] {
            return refusal_of(call.state.clips.create_directory(name), "directory", name, name);
        }))
        return refusal;
    tell_created_directories(call, made);
    return {};
}

// Why a clip in a directory, `inside` with a slash, cannot be changed.
Refusal fixed_inside(const Call& call, const QString& inside)
{
    for (const QString& name : call.state.clips.clips())
        if (name.startsWith(inside))
            if (Refusal refusal = fixed_clip(call.state, name))
                return refusal;
    return {};
}

// Everything in the directory gets another name, and is told of.
Refusal rename_dir(Call& call)
{
    const QString from = call.text("FromDir"), to = call.text("ToDir"), inside = from + QLatin1Char('/');
    for (const auto why_not : {fixed_inside, in_use})
        if (Refusal refusal = why_not(call, inside))
            return refusal;
    const ClipStore& store = call.state.clips;
    const auto those_inside = [&](const QStringList& names) {
        QStringList found;
        for (const QString& name : names)
            if (name.startsWith(inside))
                found.append(name);
        return found;
    };
    const auto moved = [&](QStringList names) {
        for (QString& name : names)
            name.replace(0, from.size(), to);
        return names;
    };
    const QStringList clips = those_inside(store.clips());
    const QStringList directories = QStringList(from) + those_inside(store.directories());
    const QStringList made = store.missing_directories(ClipStore::directory_of(to));
    if (Refusal refusal = with_room(call, entry_weight * made.size(), [&] {
            return refusal_of(call.state.clips.rename_directory(from, to), "directory", from, to);
        }))
        return refusal;
    tell_names(call, "directory_deleted", "DirectoryName", directories);
    tell_created_directories(call, made + moved(directories));
    tell_names(call, "clip_deleted", "ClipID", clips);
    tell_names(call, "clip_created", "ClipID", moved(clips));
    return {};
}

} // namespace

CommandRows directory_commands()
{
    return {
        {"download_clipids", download_clipids},
        {"create_directory", create_directory},
        {"rename_dir", rename_dir},
        {"download_directory_names", download_directory_names},
    };
}

} // namespace simulator
