// Names and refusals on the way from the store to clients.
#include <simulator/commands/store_changes_p.h>

#include <simulator/commands/channels_p.h>

#include <algorithm>

namespace simulator {

void tell_names(Call& call, const char* report, const char* tag, const QStringList& names)
{
    for (const QString& name : names)
        call.report(report, {{tag, name}});
}

void tell_created_directories(Call& call, const QStringList& names)
{
    tell_names(call, "directory_created", "DirectoryName", names);
}

Refusal refusal_of(ClipStore::Outcome outcome, const char* kind, const QString& from, const QString& to)
{
    using Outcome = ClipStore::Outcome;
    const QLatin1String what(kind);
    switch (outcome) {
    case Outcome::NotFound:
        return what == QLatin1String("clip")
                   ? no_such_clip(from)
                   : refuse(QStringLiteral("no such %1 %2").arg(what, quoted(from)));
    case Outcome::Exists:
        return refuse(QStringLiteral("the %1 %2 exists already").arg(what, quoted(to)));
    case Outcome::BadName:
        return refuse(QStringLiteral("%1 cannot be the name of this %2").arg(quoted(to), what));
    case Outcome::Done:
        break;
    }
    return {};
}

Refusal in_use(const Call& call, const QString& name)
{
    const auto is_meant = [&](const Cue& cue) {
        return !cue.is_virtual &&
               (name.endsWith(QLatin1Char('/')) ? cue.clip.startsWith(name) : cue.clip == name);
    };
    for (const Deck deck : all_decks(call.state, call.audience)) {
        const Channel& channel = deck.channel();
        if (is_meant(channel.cue) ||
            std::any_of(channel.precued.begin(), channel.precued.end(),
                        [&](const Precued& precued) { return is_meant(precued.cue); }))
            return refuse(QStringLiteral("%1 is in use on channel %2").arg(quoted(name), deck.name()));
    }
    return {};
}

} // namespace simulator
