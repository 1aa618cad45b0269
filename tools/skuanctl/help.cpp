// The help, from the tables of verbs, options and exit codes.
#include <skuanctl/failure.h>
#include <skuanctl/help.h>
#include <skuanctl/verb.h>

namespace {

QString spelled(const OptionRow& row)
{
    QStringList names;
    for (const QString& name : row.names)
        names += dashed(name);
    return names.join(", ") + (row.value ? QLatin1Char(' ') + QLatin1String(row.value) : QString());
}

QString general_help()
{
    QString text = QStringLiteral("usage: skuanctl [OPTION...] VERB [ARGUMENT...]\n"
                                  "Asks a video disk server over TCP, port 8913.\n"
                                  "\nVerbs:\n");
    for (const VerbRow& verb : verb_rows())
        text += help_entry(QStringLiteral("%1 %2").arg(verb.name, verb.arguments), verb.help);
    text += QStringLiteral("\nOptions:\n");
    for (const OptionRow& row : option_rows())
        text += help_entry(spelled(row), row.help);
    text += QStringLiteral("\nWith --json, the keys of each line:\n");
    for (const VerbRow& verb : verb_rows())
        text += help_entry(verb.name, verb.keys);
    text += help_entry("any error", "error (see below), message, exit_code; code (the server's, if it\n"
                                    "answered with an error)");
    text += QStringLiteral("\nExit codes, and the error that --json names:\n");
    for (const ExitRow& row : exit_rows())
        text += help_entry(QStringLiteral("%1 %2").arg(row.code, 3).arg(row.name), row.meaning);
    text += QStringLiteral(
        "\nOn a terminal, control characters in names are shown as \\n, \\t or \\u{1b}, and a\n"
        "backslash as \\\\. Elsewhere names are written as they are, in UTF-8; a name may hold\n"
        "a line break, so a script that must be sure reads --json.\n"
        "\nExamples:\n"
        "  skuanctl --host studio-1 clips news\n"
        "  skuanctl --json clips | jq -r .clip\n"
        "  skuanctl call cue_clip Channel=A ClipID=bars_and_tone Loop=loop\n"
        "  skuanctl --json reports A,B:status clip_change\n"
        "  skuanctl raw '<cmd><xid>1</xid><get_computer_name></get_computer_name></cmd>'\n"
        "  skuanctl --listen 60 raw < register.xml\n");
    return text;
}

} // namespace

QString help_entry(const QString& left, const QString& right)
{
    constexpr int margin = 26, width = 100;
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
    return options.verb && options.verb->details ? options.verb->details(options.arguments, error)
                                                 : general_help();
}
