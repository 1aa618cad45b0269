// The frame around a command, a reply or a report.
#include <skuanctl/messages.h>

Outgoing command_message(const XMLTree& command, const AString& xid)
{
    XMLTree message(AString::l1("cmd"), XMLTree(AString::l1("xid"), xid));
    message += command;
    const std::string text = message.flatten(XMLTree::flatten_compact, true).to_string();
    return {QByteArray(text.data(), static_cast<int>(text.size())), xid};
}

AString xid_of(const XMLTree& message)
{
    static const AString xid = AString::l1("xid");
    return message.get_subnode(xid).get_content().despace();
}

const XMLTree& body_of(const XMLTree& message)
{
    static const XMLTree none;
    for (const XMLTree& child : message.get_subnodes())
        if (!child.has_tag_z("xid"))
            return child;
    return none;
}
