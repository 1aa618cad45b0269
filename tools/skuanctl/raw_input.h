// Commands as a person or a script writes them: cut apart and checked before anything is sent.
#pragma once

#include <skuanctl/messages.h>

#include <QString>

#include <vector>

struct RawInput
{
    std::vector<Outgoing> commands; ///< as they stood in the input
    QString error;                  ///< which message cannot be sent, and why; empty if all can
};

/// Cuts messages as the server does: each ends at the first closing `cmd` tag. White space between them
/// is dropped.
RawInput cut_commands(const QByteArray& text);

/// All of standard input. `*error` says why it cannot be taken, and is left alone if it can.
QByteArray read_standard_input(QString* error);
