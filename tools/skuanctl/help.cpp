// The help, from the tables of verbs, options and exit codes.
#include <skuanctl/failure.h>
#include <skuanctl/help.h>
#include <skuanctl/value_text.h>
#include <skuanctl/verb.h>

namespace {

/// "list, show, save"; empty for a verb of one word.
QString second_words(const QString& first)
{
    QStringList words;
    for (const VerbRow* const verb : family(first))
        words += QString::fromUtf8(verb->name).section(' ', 1);
    return words.join(QStringLiteral(", "));
}

QString general_help()
{
    QString text = QStringLiteral("usage: skuanctl [OPTION...] VERB [ARGUMENT...]\n"
                                  "Asks and drives video disk servers over TCP, port 8913.\n"
                                  "\nVerbs (VERB --help tells more, and so does man skuanctl):\n");
    for (const QString& first : first_words()) {
        const VerbRow* const verb = find_verb(first);
        const QString more = second_words(first);
        text += verb ? help_entry(*verb) : QString();
        if (!more.isEmpty())
            text += help_entry(first + " ...", more);
    }
    text += QStringLiteral("\nOptions, and -- before a word that only looks like one:\n");
    for (const OptionRow& row : option_rows())
        text += help_entry(spelled(row), row.help);
    text += QStringLiteral("\nExit codes, and the error that --json names:\n");
    for (const ExitRow& row : exit_rows())
        text += help_entry(QStringLiteral("%1 %2").arg(row.code, 3).arg(row.name), row.meaning);
    text += QStringLiteral("\nExamples:\n");
    for (const QString& example : examples())
        text += QStringLiteral("  ") + example + '\n';
    return text;
}

QString family_help(const QString& first)
{
    QString text;
    for (const VerbRow* const verb : family(first))
        text += help_entry(*verb);
    return text;
}

/// Of the words that say more than their spelling; empty if none does.
QString section(const char* head, const std::vector<Word>& words)
{
    QString text;
    for (const Word& word : words)
        if (const QString meaning = meaning_of(word); !meaning.isEmpty())
            text += help_entry(spelled(word), meaning);
    return text.isEmpty() ? text : QLatin1String(head) + text;
}

QString verb_help(const VerbRow& verb)
{
    const Form form = form_of(verb);
    QString text = QStringLiteral("usage: skuanctl [OPTION...] %1\n%2\n").arg(usage(verb), verb.help);
    text += section("\nArguments, in brackets those that may be left out:\n", form.places);
    text += section("\nOptions, beside those of all verbs:\n", form.options);
    if (const QString keys = keys_of(verb); !keys.isEmpty())
        text += QStringLiteral("\nWith --json, the keys of each line:\n") + help_entry({}, keys);
    if (const QString more = family_help(verb.name); !more.isEmpty())
        text += QStringLiteral("\nBeside it:\n") + more;
    return text;
}

} // namespace

QStringList examples()
{
    return {
        "skuanctl --host studio-1,studio-2 info",
        "skuanctl --json clip list news | jq -r .ClipID",
        "skuanctl cue A news/opening --at 250 --loop loop",
        "skuanctl gang play A,B --speed 0.5",
        "skuanctl --count 1 --timeout 60 clip watch",
        "skuanctl list show evening --json | skuanctl list save copy",
        "skuanctl call cue_clip Channel=A ClipID=bars_and_tone Loop=loop",
    };
}

QStringList first_words()
{
    QStringList words;
    for (const VerbRow& verb : verb_rows())
        words += QString::fromUtf8(verb.name).section(' ', 0, 0);
    words.removeDuplicates();
    return words;
}

QString spelled(const OptionRow& row)
{
    QStringList names;
    for (const QString& name : row.names)
        names += dashed(name);
    return names.join(", ") + (row.value ? QLatin1Char(' ') + QLatin1String(row.value) : QString());
}

QString meaning_of(const Word& word)
{
    if (!word.tag)
        return word.help;
    QString text = word.tag->meaning;
    if (!word.placeholder.isEmpty() && word.tag->kind != Kind::string && word.tag->kind != Kind::record)
        text += QStringLiteral(" (%1)").arg(wanted(*word.tag));
    if (!word.fallback.isEmpty() && !word.placeholder.isEmpty())
        text += QStringLiteral(" By default: %1.").arg(word.fallback);
    return text;
}

QString keys_of(const VerbRow& verb)
{
    const bool prints_reports = verb.make == make_watch || !*verb.shows;
    if (verb.stay == Stay::always && prints_reports)
        return QStringLiteral("kind (report), name, values (by tag)");
    if (!*verb.command)
        return QString::fromUtf8(verb.shows);
    QStringList keys;
    for (const QString& name : commands_of(verb).front()->replies)
        keys += names_of(find_row(catalogue().replies, name)->parts);
    return keys.join(QStringLiteral(", "));
}

QString help_entry(const VerbRow& verb)
{
    return help_entry(usage(verb), verb.help);
}

QString help_entry(const QString& left, const QString& right)
{
    constexpr int margin = 30, width = 100;
    QString text = QStringLiteral("  ") + left;
    bool begins = true;
    int column = text.size() < margin ? text.size() : width; // too long a name has a line to itself
    for (const QString& line : right.split(QLatin1Char('\n'))) {
        for (const QString& word : line.split(QLatin1Char(' '))) {
            const bool fits = !begins && column + 1 + word.size() <= width;
            if (fits)
                text += QLatin1Char(' ');
            else if (column < margin)
                text += QString(margin - column, QLatin1Char(' '));
            else
                text += QLatin1Char('\n') + QString(margin, QLatin1Char(' '));
            column = (fits ? column + 1 : margin) + word.size();
            text += word;
            begins = false;
        }
        begins = true;
    }
    return text + QLatin1Char('\n');
}

QString help_text(const Options& options, QString* error)
{
    if (options.verb)
        return options.verb->details ? options.verb->details(options.arguments, error)
                                     : verb_help(*options.verb);
    return options.words.isEmpty() ? general_help() : family_help(options.words);
}
