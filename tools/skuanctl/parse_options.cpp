// Reading the command line, word by word: options may stand anywhere behind the words that they belong to.
#include <skuanctl/catalogue.h>
#include <skuanctl/nearest.h>
#include <skuanctl/options.h>
#include <skuanctl/verb.h>

#include <QHostAddress>
#include <QSet>

namespace {

/// A word like -10 is a value.
bool is_option(const QString& word)
{
    return word.size() > 1 && word[0] == '-' && !word[1].isDigit() && word[1] != '.';
}

/// Whether a word that the verb takes itself may have that value; others are checked with their tags.
bool may_be(const Word& word, const QString& value)
{
    if (word.tag)
        return true;
    if (word.placeholder == QLatin1String("ADDRESS"))
        return !QHostAddress(value).isNull();
    return word.placeholder != QLatin1String("N") || value.toInt() > 0;
}

class Parser
{
public:
    Options options;

    bool parse(const QStringList& words)
    {
        bool only_values = false;
        for (int i = 1; i < words.size(); ++i) {
            if (!only_values && words[i] == QLatin1String("--")) {
                only_values = true;
                continue;
            }
            const bool good =
                !only_values && is_option(words[i]) ? take_option(words, i) : take_word(words[i]);
            if (!good)
                return false;
        }
        return options.help || options.version || finish();
    }

private:
    bool refuse(const QString& why)
    {
        options.error = why;
        return false;
    }

    bool refuse_value(const QString& value, const QString& option, const QString& takes)
    {
        return refuse(
            QStringLiteral("'%1' is no value for %2, which takes %3").arg(value, dashed(option), takes));
    }

    bool take_option(const QStringList& words, int& at)
    {
        if (!options.verb)
            settle(options.words);
        const QString name = words[at].section('=', 0, 0).mid(words[at].startsWith("--") ? 2 : 1);
        const OptionRow* const general = find_option(name);
        const Word* const own = find_own(name);
        if (!general && !own)
            return refuse(no_such_option(words[at].section('=', 0, 0)));
        const bool has_value = own ? !own->placeholder.isEmpty() : general->value != nullptr;
        const int equals = words[at].indexOf('=');
        if (equals >= 0 && !has_value)
            return refuse(QStringLiteral("%1 takes no value").arg(dashed(name)));
        if (equals < 0 && has_value && at + 1 == words.size())
            return refuse(QStringLiteral("%1 needs a value").arg(dashed(name)));
        const QString value = !has_value ? QString() : equals >= 0 ? words[at].mid(equals + 1) : words[++at];
        if (own) {
            if (!own->repeats && options.has(name.toUtf8()))
                return refuse(QStringLiteral("%1 is given twice").arg(dashed(name)));
            if (!may_be(*own, value))
                return refuse_value(value, name, own->placeholder);
            options.own.emplace_back(name, value);
            return true;
        }
        given_.insert(general->names.constLast());
        return general->take(value, options) || refuse_value(value, name, general->value);
    }

    const Word* find_own(const QString& name) const
    {
        for (const Word& word : options.form.options)
            if (word.option == name)
                return &word;
        return nullptr;
    }

    QString no_such_option(const QString& word) const
    {
        QStringList known;
        for (const OptionRow& row : option_rows())
            known += dashed(row.names.constLast());
        for (const Word& own : options.form.options)
            known += dashed(own.option);
        return QStringLiteral("there is no option '%1'%2")
                   .arg(word, options.verb ? " (a value that looks like one stands behind --)"
                                           : ", unless it belongs behind its verb") +
               hint(word, known);
    }

    bool take_word(const QString& word)
    {
        const bool may_go_on = options.verb && options.arguments.isEmpty() && options.own.empty();
        if (may_go_on && settle(options.words + ' ' + word))
            return true;
        if (options.verb) {
            options.arguments += word;
            return true;
        }
        if (options.words.isEmpty() && !family(word).empty() && !find_verb(word)) {
            options.words = word;
            return true;
        }
        return settle(options.words.isEmpty() ? word : options.words + ' ' + word) ||
               refuse(no_such_verb(word));
    }

    /// Whether these words name a verb, which is then the one.
    bool settle(const QString& words)
    {
        const VerbRow* const verb = find_verb(words);
        if (!verb)
            return false;
        options.words = words;
        options.verb = verb;
        options.form = form_of(*verb);
        return true;
    }

    /// It may be a command that was meant, without its verb.
    QString no_such_verb(const QString& word) const
    {
        QStringList known;
        for (const VerbRow* const row : family(options.words))
            known += QString::fromUtf8(row->name).section(' ', 1);
        if (!options.words.isEmpty())
            return QStringLiteral("there is no '%1 %2'").arg(options.words, word) + hint(word, known);
        for (const VerbRow& row : verb_rows())
            known += QString::fromUtf8(row.name).section(' ', 0, 0);
        known.removeDuplicates();
        return QStringLiteral("there is no verb '%1'").arg(word) +
               (find_row(catalogue().commands, word) ? QStringLiteral("; did you mean call %1?").arg(word)
                                                     : hint(word, known));
    }

    bool finish()
    {
        if (!options.verb)
            return refuse(options.words.isEmpty()
                              ? QStringLiteral("no verb is given")
                              : QStringLiteral("%1 needs one of %2").arg(options.words, subverbs()));
        for (const QString& name : given_)
            if (!belongs(*find_option(name), *options.verb))
                return refuse(QStringLiteral("%1 belongs to verbs that stay for reports").arg(dashed(name)));
        if (options.verb->one_host && options.hosts.size() > 1)
            return refuse(QStringLiteral("%1 is for one host at a time").arg(options.words));
        return has_all_arguments();
    }

    bool has_all_arguments()
    {
        const std::vector<Word>& places = options.form.places;
        const int given = options.arguments.size(), most = static_cast<int>(places.size());
        if (given > most && !(most > 0 && places.back().repeats))
            return refuse(QStringLiteral("%1 takes no '%2'").arg(options.words, options.arguments[most]));
        for (int i = given; i < most; ++i)
            if (!places[static_cast<std::size_t>(i)].optional)
                return refuse(QStringLiteral("%1 needs %2")
                                  .arg(options.words, places[static_cast<std::size_t>(i)].placeholder));
        return true;
    }

    QString subverbs() const
    {
        QStringList names;
        for (const VerbRow* const row : family(options.words))
            names += QString::fromUtf8(row->name).section(' ', 1);
        return names.join(QStringLiteral(", "));
    }

    QSet<QString> given_; // options of the program's own
};

} // namespace

Options parse_options(const QStringList& arguments)
{
    Parser parser;
    // Looked for by hand first, so that bad usage too is told in the form that was asked for.
    parser.options.json =
        arguments.mid(0, arguments.indexOf(QLatin1String("--"))).contains(QLatin1String("--json"));
    parser.parse(arguments);
    return parser.options;
}
