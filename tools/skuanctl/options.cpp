// One table of options: its rows are the parser, the help and the effect.
#include <skuanctl/failure.h>
#include <skuanctl/options.h>
#include <skuanctl/verb.h>

#include <QCommandLineParser>

#include <algorithm>
#include <cmath>

using std::chrono::milliseconds;

namespace {

struct Row
{
    QStringList names;
    const char* value; // null: the option has none
    const char* verb;  // null: the option is for every verb
    const char* help;
    bool (*take)(const QString& value, Options& options); // false: no such value
};

std::optional<milliseconds> seconds(const QString& text)
{
    constexpr double most = 1e6; // eleven days, which a timer can still count in milliseconds
    bool good = false;
    const double value = text.toDouble(&good);
    if (!good || !(value >= 0.001 && value <= most))
        return std::nullopt;
    return milliseconds(std::llround(value * 1000));
}

const std::vector<Row>& rows()
{
    static const std::vector<Row> table = {
        {{"host"},
         "HOST",
         nullptr,
         "the server's name or address; 127.0.0.1 by default",
         [](const QString& text, Options& options) {
             options.host = text;
             return !text.isEmpty();
         }},
        {{"timeout"},
         "SECONDS",
         nullptr,
         "wait so long for the connection, and for each answer after\nthe one before; 5 by default",
         [](const QString& text, Options& options) {
             const auto time = seconds(text);
             options.timeout = time.value_or(options.timeout);
             return time.has_value();
         }},
        {{"json"},
         nullptr,
         nullptr,
         "write one JSON object a line; errors too, on standard error",
         [](const QString&, Options& options) { return options.json = true; }},
        {{"count"},
         "N",
         "raw",
         "of raw: stay until N reports have come",
         [](const QString& text, Options& options) {
             bool good = false;
             options.count = text.toInt(&good);
             return good && *options.count > 0;
         }},
        {{"listen"},
         "SECONDS",
         "raw",
         "of raw: stay so long after the last answer, for reports",
         [](const QString& text, Options& options) { return (options.listen = seconds(text)).has_value(); }},
        {{"h", "help"},
         nullptr,
         nullptr,
         "this text",
         [](const QString&, Options& options) { return options.help = true; }},
    };
    return table;
}

QString spelled(const Row& row)
{
    QStringList names;
    for (const QString& name : row.names)
        names += (name.size() == 1 ? "-" : "--") + name;
    return names.join(", ") + (row.value ? QLatin1Char(' ') + QLatin1String(row.value) : QString());
}

/// One entry of a help section; the lines of its text stand under each other.
QString entry(const QString& left, const QString& right)
{
    constexpr int margin = 24;
    QString text = right;
    text.replace(QLatin1Char('\n'), QLatin1Char('\n') + QString(margin, QLatin1Char(' ')));
    return QStringLiteral("  ") + left.leftJustified(margin - 2) + text + QLatin1Char('\n');
}

const VerbRow* find_verb(const QString& name)
{
    const auto& verbs = verb_rows();
    const auto verb =
        std::find_if(verbs.begin(), verbs.end(), [&](const VerbRow& v) { return name == v.name; });
    return verb == verbs.end() ? nullptr : &*verb;
}

/// Takes the verb and its arguments; gives what is wrong with them.
QString take_verb(const QStringList& words, Options& options)
{
    if (words.isEmpty())
        return QStringLiteral("no verb is given");
    options.verb = find_verb(words.constFirst());
    if (!options.verb)
        return QStringLiteral("there is no verb '%1'").arg(words.constFirst());
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
    for (const Row& row : rows())
        parser.addOption({row.names, QString(), QLatin1String(row.value)});

    Options options;
    // Looked for by hand first, so that bad usage too is told in the form that was asked for.
    options.json = arguments.contains(QLatin1String("--json"));
    if (!parser.parse(arguments)) {
        options.error = parser.errorText();
        return options;
    }
    for (const Row& row : rows()) {
        const QString& name = row.names.constLast();
        if (parser.isSet(name) && !row.take(parser.value(name), options)) {
            options.error = QStringLiteral("'%1' is no value for --%2").arg(parser.value(name), name);
            return options;
        }
    }
    if (options.help)
        return options;
    options.error = take_verb(parser.positionalArguments(), options);
    for (const Row& row : rows())
        if (options.error.isEmpty() && row.verb && parser.isSet(row.names.constLast()) &&
            QLatin1String(row.verb) != QLatin1String(options.verb->name))
            options.error = QStringLiteral("--%1 belongs to %2").arg(row.names.constLast(), row.verb);
    return options;
}

QString help_text()
{
    QString text = QStringLiteral("usage: skuanctl [OPTION...] VERB [ARGUMENT...]\n"
                                  "Asks a video disk server over TCP, port 8913.\n"
                                  "\nVerbs:\n");
    for (const VerbRow& verb : verb_rows())
        text += entry(QStringLiteral("%1 %2").arg(verb.name, verb.arguments), verb.help);
    text += QStringLiteral("\nOptions:\n");
    for (const Row& row : rows())
        text += entry(spelled(row), row.help);
    text += QStringLiteral("\nWith --json, the keys of each line:\n");
    for (const VerbRow& verb : verb_rows())
        text += entry(verb.name, verb.keys);
    text += entry("any error", "error (see below), message, exit_code; code (the server's, if it\n"
                               "answered with an error)");
    text += QStringLiteral("\nExit codes, and the error that --json names:\n");
    for (const ExitRow& row : exit_rows())
        text += entry(QStringLiteral("%1 %2").arg(row.code, 3).arg(row.name), row.meaning);
    text += QStringLiteral(
        "\nOn a terminal, control characters in names are shown as \\n, \\t or \\u{1b}, and a\n"
        "backslash as \\\\. Elsewhere names are written as they are, in UTF-8; a name may hold\n"
        "a line break, so a script that must be sure reads --json.\n"
        "\nExamples:\n"
        "  skuanctl --host studio-1 clips News\n"
        "  skuanctl --json clips | jq -r .clip\n"
        "  skuanctl raw '<cmd><xid>1</xid><get_computer_name></get_computer_name></cmd>'\n"
        "  skuanctl --listen 60 raw < register.xml\n");
    return text;
}

QString in_seconds(milliseconds time)
{
    return QStringLiteral("%1 s").arg(static_cast<double>(time.count()) / 1000);
}
