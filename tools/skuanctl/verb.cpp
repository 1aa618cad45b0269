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
    };
    return rows;
}

void Verb::on_error(AString message, KVRP3::ErrorCode code)
{
    // A lost connection fails the command too; the link tells that one in better words.
    if (program_.link().answered_error())
        program_.fail({exit_server_error, QStringLiteral("the server answered: %1").arg(QString(message)),
                       QString(KVRP3::ErrorCode_to_string(code))});
}
