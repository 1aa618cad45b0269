// The verb complete: what the last word may become. Each shell's script asks it, so that none of them
// knows the protocol.
#include <skuanctl/complete.h>
#include <skuanctl/program.h>

namespace {

const OptionRow* find_option(const QString& word)
{
    for (const OptionRow& row : option_rows())
        for (const QString& name : row.names)
            if (word == dashed(name))
                return &row;
    return nullptr;
}

QStringList options_for(const VerbRow* verb)
{
    QStringList all;
    for (const OptionRow& row : option_rows())
        if (!verb || row.verbs.isEmpty() || row.verbs.contains(verb->name))
            all += dashed(row.names.constLast());
    return all;
}

/// What may stand in place of the last word.
QStringList candidates(const QStringList& words)
{
    const QString word = words.isEmpty() ? QString() : words.constLast();
    QStringList before; // the verb and its arguments
    for (int i = 0; i + 1 < words.size(); ++i) {
        const OptionRow* const option = find_option(words[i]);
        if (option && option->value && ++i + 1 == words.size())
            return {}; // the word is the option's value
        if (!words[i].startsWith(QLatin1Char('-')) && !option)
            before += words[i];
    }
    const VerbRow* const verb = before.isEmpty() ? nullptr : find_verb(before.constFirst());
    if (word.startsWith(QLatin1Char('-')))
        return options_for(verb);
    if (verb)
        return verb->candidates ? verb->candidates(before.mid(1), word) : QStringList();
    QStringList verbs;
    if (before.isEmpty())
        for (const VerbRow& row : verb_rows())
            verbs += row.name;
    return verbs;
}

class Complete : public Verb
{
public:
    using Verb::Verb;

    bool prepare() override
    {
        const QStringList& words = program_.options().arguments;
        const QString word = words.isEmpty() ? QString() : words.constLast();
        for (const QString& candidate : candidates(words))
            if (candidate.startsWith(word))
                program_.output().line(candidate, {{"candidate", candidate}});
        program_.done();
        return false; // there is nothing to ask a server
    }

    void start() override {}
};

} // namespace

QStringList list_candidates(const QString& begun, const QStringList& names)
{
    QStringList given = begun.split(QLatin1Char(','));
    const QString done = begun.chopped(given.takeLast().size());
    QStringList all;
    for (const QString& name : names)
        if (!given.contains(name))
            all += done + name;
    return all;
}

std::unique_ptr<Verb> make_complete(Program& program)
{
    return std::make_unique<Complete>(program);
}
