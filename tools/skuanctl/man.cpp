// The verb man: the manual page, from the same tables as the help.
#include <skuanctl/failure.h>
#include <skuanctl/help.h>
#include <skuanctl/run.h>

namespace {

/// A text that roff prints as it stands.
QString plain(QString text)
{
    text.replace('\\', QLatin1String("\\e")).replace('-', QLatin1String("\\-"));
    text.replace('`', QLatin1String("\\(ga")).replace('\'', QLatin1String("\\(aq"));
    return text.startsWith('.') ? QStringLiteral("\\&") + text : text;
}

QString bold(const QString& text)
{
    return QStringLiteral("\\fB") + plain(text) + QStringLiteral("\\fR");
}

QString entry(const QString& head, const QString& text)
{
    return QStringLiteral(".TP\n%1\n%2\n").arg(bold(head), plain(text));
}

QString section(const char* name)
{
    return QStringLiteral(".SH %1\n").arg(QLatin1String(name));
}

QString verb_entry(const VerbRow& verb)
{
    QString text = entry(usage(verb), verb.help);
    const std::vector<Word> options = form_of(verb).options;
    if (options.empty())
        return text;
    text += QStringLiteral(".RS\n");
    for (const Word& word : options)
        text += entry(spelled(word), meaning_of(word));
    return text + QStringLiteral(".RE\n");
}

QString page()
{
    QString text =
        QStringLiteral(".TH SKUANCTL 1 \"\" Skuan \"User Commands\"\n") + section("NAME") +
        QStringLiteral("skuanctl \\- ask and drive video disk servers\n") + section("SYNOPSIS") +
        QStringLiteral("\\fBskuanctl\\fR [\\fIOPTION\\fR...] \\fIVERB\\fR [\\fIARGUMENT\\fR...]\n") +
        section("DESCRIPTION") +
        plain("Each run connects to port 8913 of each host, does one thing and ends. Positions, lengths "
              "and distances count fields; a speed is a multiple of normal speed. What a verb does not "
              "offer, call does.") +
        '\n' + section("OPTIONS") +
        plain("Options may stand anywhere behind the verb; those of all verbs also before it. A word that "
              "only looks like one, as a clip of the name -x, stands behind --.") +
        '\n';
    for (const OptionRow& row : option_rows())
        text += entry(spelled(row), row.help);
    text += section("VERBS");
    for (const VerbRow& verb : verb_rows())
        text += verb_entry(verb);
    text +=
        section("JSON") +
        plain(
            "With --json each line is an object, whose keys are the tags of the protocol; VERB --help names "
            "them. Numbers and truth values come as such, numbers beyond 2^53 as text, records as objects, "
            "members as arrays. With several hosts there is the key host. An error has the keys error, "
            "message, exit_code, and code if the server told one.") +
        '\n' + section("EXIT STATUS");
    for (const ExitRow& row : exit_rows())
        text += entry(QStringLiteral("%1 %2").arg(row.code).arg(row.name), row.meaning);
    text +=
        section("NOTES") +
        plain(
            "On a terminal, control characters in names are shown as \\n, \\t or \\u{1b}, and a backslash as "
            "\\\\. Elsewhere names are written as they are, in UTF-8; a name may hold a line break, so a "
            "script that must be sure reads --json.") +
        '\n' + section("EXAMPLES") + QStringLiteral(".nf\n");
    for (const QString& example : examples())
        text += plain(example) + '\n';
    return text + QStringLiteral(".fi\n");
}

class Man : public Verb
{
public:
    using Verb::Verb;

    bool prepare() override
    {
        const QString text = page();
        run_.lines(text.split('\n', Qt::SkipEmptyParts), {{"page", text}});
        run_.done();
        return false;
    }

    void start() override {}
};

} // namespace

std::unique_ptr<Verb> make_man(Run& run)
{
    return std::make_unique<Man>(run);
}
