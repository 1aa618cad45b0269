// One table of options: its rows are the parser, the help and the effect.
#include <skuanctl/catalogue.h>
#include <skuanctl/nearest.h>
#include <skuanctl/options.h>
#include <skuanctl/verb.h>

#include <QCommandLineParser>

#include <cmath>

using std::chrono::milliseconds;

namespace {

std::optional<milliseconds> seconds(const QString& text)
{
    constexpr double most = 1e6; // eleven days, which a timer can still count in milliseconds
    bool good = false;
    const double value = text.toDouble(&good);
    if (!good || !(value >= 0.001 && value <= most))
        return std::nullopt;
    return milliseconds(std::llround(value * 1000));
}

std::optional<int> positive(const QString& text)
{
    bool good = false;
    const int number = text.toInt(&good);
    return good && number > 0 ? std::optional(number) : std::nullopt;
}

} // namespace

const std::vector<OptionRow>& option_rows()
{
    static const std::vector<OptionRow> table = {
        {{"host"},
         "HOST",
         {},
         "the server's name or address; 127.0.0.1 by default",
         [](const QString& text, Options& options) {
             options.host = text;
             return !text.isEmpty();
         }},
        {{"timeout"},
         "SECONDS",
         {},
         "wait so long for the connection, and for each answer after\nthe one before; 5 by default",
         [](const QString& text, Options& options) {
             const auto time = seconds(text);
             options.timeout = time.value_or(options.timeout);
             return time.has_value();
         }},
        {{"json"},
         nullptr,
         {},
         "write one JSON object a line; errors too, on standard error",
         [](const QString&, Options& options) { return options.json = true; }},
        {{"count"},
         "N",
         {"raw", "reports", "capture"},
         "of raw and reports: stay until N reports have come; of capture:\nuntil N connections have closed",
         [](const QString& text, Options& options) { return (options.count = positive(text)).has_value(); }},
        {{"listen"},
         "SECONDS",
         {"raw", "reports"},
         "of raw and reports: stay so long after the last answer, for reports",
         [](const QString& text, Options& options) { return (options.listen = seconds(text)).has_value(); }},
        {{"bind"},
         "ADDRESS",
         {"capture", "replay"},
         "of capture: listen here, at port 8913, and not at 127.0.0.1; of\nreplay: listen, and play the "
         "server's side",
         [](const QString& text, Options& options) {
             options.bind = QHostAddress(text);
             return !options.bind->isNull();
         }},
        {{"connection"},
         "N",
         {"replay"},
         "of replay: only this connection of the file",
         [](const QString& text, Options& options) {
             return (options.connection = positive(text)).has_value();
         }},
        {{"paced"},
         nullptr,
         {"replay"},
         "of replay: say nothing before its recorded time",
         [](const QString&, Options& options) { return options.paced = true; }},
        {{"h", "help"},
         nullptr,
         {},
         "this text; with a verb, all there is to say about it",
         [](const QString&, Options& options) { return options.help = true; }},
    };
    return table;
}

QString dashed(const QString& option)
{
    return (option.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + option;
}

namespace {

/// It may be a command that was meant, without its verb.
QString no_such_verb(const QString& word)
{
    QStringList known;
    for (const VerbRow& row : verb_rows())
        known += QLatin1String(row.name);
    return QStringLiteral("there is no verb '%1'").arg(word) +
           (find_row(catalogue().commands, word) ? QStringLiteral("; did you mean call %1?").arg(word)
                                                 : hint(word, known));
}

/// Takes the verb and its arguments; gives what is wrong with them.
QString take_verb(const QStringList& words, Options& options)
{
    if (words.isEmpty())
        return QStringLiteral("no verb is given");
    options.verb = find_verb(words.constFirst());
    if (!options.verb)
        return no_such_verb(words.constFirst());
    options.arguments = words.mid(1);
    const int most = options.verb->most_arguments;
    if (most >= 0 && options.arguments.size() > most)
        return QStringLiteral("what is '%1'?").arg(options.arguments[most]);
    return {};
}

} // namespace

Options parse_options(const QStringList& arguments)
{
    QCommandLineParser parser;
    for (const OptionRow& row : option_rows())
        parser.addOption({row.names, QString(), QLatin1String(row.value)});

    Options options;
    // Looked for by hand first, so that bad usage too is told in the form that was asked for.
    options.json = arguments.mid(0, arguments.indexOf(QLatin1String("--"))).contains(QLatin1String("--json"));
    if (!parser.parse(arguments)) {
        options.error = parser.errorText();
        if (options.error.endsWith(QLatin1Char('.'))) // the sentence goes on
            options.error.chop(1);
        return options;
    }
    for (const OptionRow& row : option_rows()) {
        const QString& name = row.names.constLast();
        if (parser.isSet(name) && !row.take(parser.value(name), options)) {
            options.error = QStringLiteral("'%1' is no value for --%2").arg(parser.value(name), name);
            return options;
        }
    }
    const QStringList words = parser.positionalArguments();
    if (options.help && words.isEmpty())
        return options;
    options.error = take_verb(words, options);
    for (const OptionRow& row : option_rows())
        if (options.error.isEmpty() && !row.verbs.isEmpty() && parser.isSet(row.names.constLast()) &&
            !row.verbs.contains(options.verb->name))
            options.error = QStringLiteral("--%1 belongs to %2")
                                .arg(row.names.constLast(), row.verbs.join(QStringLiteral(" and ")));
    return options;
}

QString in_seconds(milliseconds time)
{
    return QStringLiteral("%1 s").arg(static_cast<double>(time.count()) / 1000);
}
