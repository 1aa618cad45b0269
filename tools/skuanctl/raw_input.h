// Commands as a person or a script writes them: cut apart and checked before anything is sent.
#pragma once

#include <skuan/foundation/astring.h>
#include <skuan/markup/xml_tree.h>

#include <QByteArray>
#include <QString>

#include <vector>

struct RawCommand
{
    QByteArray bytes; ///< as they stood in the input
    AString xid;      ///< empty if the command has none
};

struct RawInput
{
    std::vector<RawCommand> commands;
    QString error; ///< which message cannot be sent, and why; empty if all can
};

/// Cuts messages as the server does: each ends at the first closing `cmd` tag. White space between them
/// is dropped.
RawInput cut_commands(const QByteArray& text);

/// All of standard input. `*error` says why it cannot be taken, and is left alone if it can.
QByteArray read_standard_input(QString* error);

/// The xid that a command or a reply bears; empty if there is none.
AString xid_of(const XMLTree& message);
