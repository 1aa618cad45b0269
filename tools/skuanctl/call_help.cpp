// The help on call and on each command, from the catalogue.
#include <skuanctl/call_help.h>
#include <skuanctl/catalogue.h>
#include <skuanctl/help.h>
#include <skuanctl/nearest.h>
#include <skuanctl/value_text.h>
#include <skuanctl/verb.h>

namespace {

const char* const about_arguments =
    "\nArguments:\n"
    "  ClipID=bars_and_tone              a value, taken as it stands behind the first =\n"
    "  MinLatency                        a flag; MinLatency=true says the same\n"
    "  ListElement.ContentID.ClipID=x    a part of a record\n"
    "  ChannelSet=A,B                    members that have names\n"
    "  KeyList=title KeyList=reel        members that are texts, one at a time\n"
    "  MetadataList.Metadata.Key=title MetadataList.Metadata.Value=x\n"
    "                                    members that are records: a part that comes again begins\n"
    "                                    the next one; Metadata[0], Metadata[1] name them, too\n"
    "  KeyList                           a record or container with nothing in it\n"
    "They may come in any order.\n"
    "\nWith --json, numbers and truth values come as such (numbers beyond 2^53 as text), a\n"
    "speed as a multiple of normal speed, records as objects, and members as arrays.\n";

QString bracketed(const Part& part)
{
    return part.optional ? QLatin1Char('[') + part.tag->name + QLatin1Char(']') : part.tag->name;
}

/// The parts with their meanings and values, each under the one that it belongs to.
QString part_rows(const Parts& parts, const QString& indent = {})
{
    QString text;
    for (const Part& part : parts) {
        const Tag& tag = *part.tag;
        const bool has_parts = tag.kind == Kind::record;
        const bool is_plain = has_parts || tag.kind == Kind::string;
        text += help_entry(indent + bracketed(part),
                           is_plain ? tag.meaning : QStringLiteral("%1 (%2)").arg(tag.meaning, wanted(tag)));
        const bool has_record = tag.kind == Kind::container && tag.parts.front().tag->kind == Kind::record;
        if (has_parts || has_record)
            text += part_rows(tag.parts, indent + QStringLiteral("  "));
    }
    return text;
}

QString all_commands()
{
    QString text =
        QStringLiteral("usage: skuanctl [OPTION...] call COMMAND [TAG=VALUE...]\n"
                       "Sends one command and prints its replies. call COMMAND --help tells what one\n"
                       "of them takes. Each call is a connection of its own: commands that belong\n"
                       "together have verbs of their own, as list save, or go through raw in one run.\n") +
        about_arguments;
    QString section;
    for (const Command& command : catalogue().commands) {
        if (command.section != section)
            text += QStringLiteral("\n%1:\n").arg(section = command.section);
        text += help_entry(command.name, command.meaning);
    }
    return text;
}

QString one_command(const Command& command)
{
    QString text = QStringLiteral("usage: skuanctl [OPTION...] call %1").arg(command.name);
    for (const Part& part : command.parts)
        text += QLatin1Char(' ') + bracketed(part);
    text += QLatin1Char('\n') + command.meaning + QLatin1Char('\n');
    if (!command.parts.empty())
        text += QStringLiteral("\nArguments, in brackets those that may be left out:\n") +
                part_rows(command.parts);
    text += QStringLiteral("\nReplies, or an error:\n");
    for (const QString& name : command.replies) {
        const Reply* const reply = find_row(catalogue().replies, name);
        const QString more = reply->ends ? QString() : QStringLiteral("\nany number of them");
        text += help_entry(name, reply->meaning + more) + part_rows(reply->parts, QStringLiteral("  "));
    }
    return text;
}

} // namespace

QString no_such_command(const QString& name)
{
    const QString near = hint(name, names_of(catalogue().commands));
    return QStringLiteral("there is no command '%1'").arg(name) +
           (near.isEmpty() ? QStringLiteral("; call --help lists them") : near);
}

QString call_details(const QStringList& arguments, QString* error)
{
    if (arguments.isEmpty())
        return all_commands();
    const Command* const command = find_row(catalogue().commands, arguments.constFirst());
    if (command)
        return one_command(*command);
    *error = no_such_command(arguments.constFirst());
    return {};
}
