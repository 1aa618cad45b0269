// Words become calls of the commands that register; the same names make the help on them and their
// completion.
#include <skuanctl/arguments.h>
#include <skuanctl/complete.h>
#include <skuanctl/help.h>
#include <skuanctl/nearest.h>
#include <skuanctl/report_classes.h>
#include <skuanctl/verb.h>

namespace {

const QString every = QStringLiteral("*");

const QStringList& names_of_type(const char* enumeration)
{
    return find_row(catalogue().tags, QLatin1String(enumeration))->names;
}

const QStringList& global_classes()
{
    return names_of_type("ReportType");
}

/// The reports whose row in the catalogue names this class.
QStringList reports_on(const QString& on)
{
    QStringList names;
    for (const Report& report : catalogue().reports)
        if (report.on == on)
            names += report.name;
    return names;
}

/// "A,B" or "*" as the members of a set.
QString members(const QString& names, const char* enumeration)
{
    return names == every ? names_of_type(enumeration).join(QLatin1Char(',')) : names;
}

BuiltCommand build(const char* command, const QStringList& arguments)
{
    return build_command(*find_row(catalogue().commands, QLatin1String(command)), arguments);
}

BuiltCommand register_global(const QStringList& words)
{
    QStringList known = global_classes();
    for (const QString& name : names_of_type("ChannelReportType"))
        known += QStringLiteral("*:") + name;
    for (const QString& word : words)
        if (!global_classes().contains(word))
            return {{}, QStringLiteral("there is no class of reports '%1'").arg(word) + hint(word, known)};
    return build("reports_register", {QStringLiteral("ReportSet=") + words.join(QLatin1Char(','))});
}

/// Of a word with a colon.
BuiltCommand register_named(const QString& word)
{
    const QString before = word.section(QLatin1Char(':'), 0, 0);
    const QString behind = word.section(QLatin1Char(':'), 1);
    if (before == QLatin1String("metadata"))
        return build("watch_metadata_database", {QStringLiteral("MetadataDatabase=") + behind});
    if (before == QLatin1String("userdict"))
        return build("userdict_watch", {QStringLiteral("Key=") + behind});
    return build("channel_reports_register",
                 {QStringLiteral("ChannelSet=") + members(before, "Channel"),
                  QStringLiteral("ChannelReportSet=") + members(behind, "ChannelReportType")});
}

} // namespace

Registration registration_of(const QStringList& words)
{
    QStringList global, named;
    for (const QString& word : words.isEmpty() ? global_classes() + QStringList("*:*") : words)
        (word.contains(QLatin1Char(':')) ? named : global) += word;

    std::vector<BuiltCommand> all;
    if (!global.isEmpty())
        all.push_back(register_global(global));
    for (const QString& word : named)
        all.push_back(register_named(word));

    Registration made;
    for (const BuiltCommand& built : all) {
        if (!built.error.isEmpty())
            return {{}, built.error};
        made.commands.push_back(built.element);
    }
    return made;
}

QString reports_details(const QStringList&, QString*)
{
    QString text =
        QStringLiteral("usage: skuanctl [OPTION...] reports [CLASS...]\n"
                       "Prints the reports of these classes as they come; without any, all reports.\n"
                       "\nClasses, and the reports they bring:\n");
    for (const QString& name : global_classes())
        text += help_entry(name, reports_on(name).join(QStringLiteral(", ")));
    text += QStringLiteral("\nClasses of channels, as in A:status, A,B:timecode,speed, *:status or A:*:\n");
    for (const QString& name : names_of_type("ChannelReportType"))
        text += help_entry(name, reports_on(QStringLiteral("channel ") + name).join(QStringLiteral(", ")));
    text += QStringLiteral("\nWhat is watched by name:\n");
    text += help_entry(QStringLiteral("metadata:DATABASE"), reports_on("watch_metadata_database").join(", "));
    text += help_entry(QStringLiteral("userdict:KEY"), reports_on("userdict_watch").join(", "));
    return text;
}

QStringList reports_candidates(const QStringList&, const QString& word)
{
    const int colon = word.indexOf(QLatin1Char(':'));
    const QString channels = word.left(colon);
    if (colon >= 0 && (channels == QLatin1String("metadata") || channels == QLatin1String("userdict")))
        return {}; // names that only the server knows
    QStringList all;
    if (colon >= 0) {
        for (const QString& list : list_candidates(word.mid(colon + 1), names_of_type("ChannelReportType")))
            all += channels + QLatin1Char(':') + list;
        return all;
    }
    for (const QString& list : list_candidates(word, names_of_type("Channel")))
        all += list + QLatin1Char(':');
    return all + global_classes() + QStringList{"*:", "metadata:", "userdict:"};
}
