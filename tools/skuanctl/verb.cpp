// The table of verbs.
#include <skuanctl/program.h>
#include <skuanctl/verb.h>

const std::vector<VerbRow>& verb_rows()
{
    static const std::vector<VerbRow> rows = {
        {"name", "", 0, "print the computer name of the server", "computer_name", make_name},
        {"version", "", 0, "print what the server was built from: version and source path", "version, path",
         make_version},
        {"clips", "[DIRECTORY]", 1,
         "list the ids of the clips, of all directories or of one, as they\ncome; on a terminal, "
         "their number at the end",
         "clip", make_clips},
        {"raw", "[XML...]", -1,
         "send <cmd> messages, from the arguments or else from standard\n"
         "input, and print each reply and report as one line of XML, until\n"
         "every command is answered; each is checked before any is sent,\n"
         "and then sent as it stands",
         "kind (reply or report), xid (of a reply), name, xml", make_raw},
        {"call", "COMMAND [TAG=VALUE...]", -1,
         "send one command and print its replies; call --help lists the\n"
         "commands, call COMMAND --help tells what one of them takes",
         "kind (reply), name, values (by tag)", make_call, call_details, call_candidates},
        {"reports", "[CLASS...]", -1,
         "print reports as they come, of these classes or of all, until\n"
         "Ctrl-C, --count or --listen ends it; reports --help lists them",
         "kind (report), name, values (by tag)", make_reports, reports_details, reports_candidates},
        {"capture", "FILE", 1,
         "stand between clients and the server, and write what they say to a\nnew file, until --count "
         "connections have closed, or Ctrl-C",
         "listening, port", make_capture},
        {"replay", "FILE", 1,
         "play the client's side of a captured conversation to the server, or\nwith --bind the server's "
         "side to clients; the other side has to say\nthe same as it did, byte for byte",
         "bytes, connections; or where it differs: line, connection, from,\nmessage (from 1), byte (from "
         "0), expected, got; listening, port",
         make_replay},
        {"complete", "-- WORD...", -1,
         "print what the last word may become, for the completion of\n"
         "shells; the words before it are those after skuanctl",
         "candidate", make_complete},
    };
    return rows;
}

const VerbRow* find_verb(const QString& name)
{
    for (const VerbRow& verb : verb_rows())
        if (name == QLatin1String(verb.name))
            return &verb;
    return nullptr;
}

void Verb::on_error(AString message, KVRP3::ErrorCode code)
{
    // A lost connection fails the command too; the link tells that one in better words.
    if (program_.link().answered_error())
        fail_as_server_said(message, KVRP3::ErrorCode_to_string(code));
}

void Verb::fail_as_server_said(const QString& message, const QString& code)
{
    program_.fail({exit_server_error, QStringLiteral("the server answered: %1").arg(message), code});
}
