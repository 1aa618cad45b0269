// Whole messages: what goes out, and the two things to know of each that comes in.
#pragma once

#include <skuan/foundation/astring.h>
#include <skuan/markup/xml_tree.h>

#include <QByteArray>

/// A command on its way.
struct Outgoing
{
    QByteArray bytes; ///< the whole message, in UTF-8
    AString xid;      ///< empty if it has none
};

Outgoing command_message(const XMLTree& command, const AString& xid);

/// The xid that a command or a reply bears; empty if there is none.
AString xid_of(const XMLTree& message);

/// What the message is about; the null tree if it holds nothing. Good as long as the message.
const XMLTree& body_of(const XMLTree& message);
