// The verb complete: what the last word may become. Each shell's script asks it, so that none of them
// knows the protocol.
#include <skuanctl/complete.h>
#include <skuanctl/help.h>
#include <skuanctl/run.h>

namespace {

QStringList options_for(const Options& options)
{
    QStringList all;
    for (const Word& word : options.form.options)
        all += dashed(word.option);
    for (const OptionRow& row : option_rows())
        if (!options.verb || belongs(row, *options.verb))
            all += dashed(row.names.constLast());
    return all;
}

/// Null if the words do not end with an option that waits for its value.
const Word* waiting_option(const Options& options, const QString& last)
{
    for (const Word& word : options.form.options)
        if (last == dashed(word.option) && !word.placeholder.isEmpty())
            return &word;
    return nullptr;
}

bool waits(const OptionRow& row, const QString& last)
{
    return row.value && row.names.contains(last.mid(last.startsWith("--") ? 2 : 1));
}

QStringList values_of(const Word& word, const QString& begun)
{
    return word.tag ? value_candidates(*word.tag, begun) : QStringList();
}

/// What may stand in place of the last word.
QStringList candidates(const QStringList& words)
{
    const QString word = words.isEmpty() ? QString() : words.constLast();
    const QStringList before = words.mid(0, words.size() - 1);
    const QString last = before.isEmpty() ? QString() : before.constLast();
    const Options options = parse_options(QStringList("skuanctl") + before);
    if (last.startsWith('-')) {
        if (const Word* const option = waiting_option(options, last))
            return values_of(*option, word);
        for (const OptionRow& row : option_rows())
            if (waits(row, last))
                return {};
    }
    if (word.startsWith('-'))
        return options_for(options);
    QStringList all;
    if (options.arguments.isEmpty())
        for (const VerbRow* const row : family(options.words))
            all += QString::fromUtf8(row->name).section(' ', 1);
    if (options.words.isEmpty())
        return first_words();
    if (!options.verb)
        return all;
    if (options.verb->candidates)
        return options.verb->candidates(options.arguments, word);
    const std::vector<Word>& places = options.form.places;
    const auto at = static_cast<std::size_t>(options.arguments.size());
    if (at < places.size())
        all = values_of(places[at], word) + all;
    return all;
}

class Complete : public Verb
{
public:
    using Verb::Verb;

    bool prepare() override
    {
        const QStringList& words = run_.options().arguments;
        for (const QString& candidate : candidates(words))
            if (candidate.startsWith(words.constLast()))
                run_.line(candidate, {{"candidate", candidate}});
        run_.done();
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

QStringList value_candidates(const Tag& tag, const QString& begun)
{
    const bool is_list = tag.kind == Kind::container;
    const Tag& member = is_list ? *tag.parts.front().tag : tag;
    if (member.kind == Kind::boolean || member.kind == Kind::flag)
        return {QStringLiteral("true"), QStringLiteral("false")};
    return is_list ? list_candidates(begun, member.names) : member.names;
}

std::unique_ptr<Verb> make_complete(Run& run)
{
    return std::make_unique<Complete>(run);
}
