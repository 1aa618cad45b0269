// What all messages have in common: which table they are looked up in, and that they hold one body.
#include <skuan/protocol/kvrp3_api_parser.h>

#include <skuan/foundation/enum_string.h>
#include <skuan/protocol/kvrp3_children_p.h>
#include <skuan/protocol/kvrp3_tag_list_p.h>
#include <skuan/protocol/message_numbers_p.h>

namespace KVRP3 {

APIParser::APIParser() = default;
APIParser::~APIParser() = default;

void APIParser::parse(const XMLTree& message)
{
    receive_debug_hook_.run(message);
    parse_ok_ = true;
    parse_xid_ = AString();
    parse_error_msg_ = AString();

    const bool is_reply = message.has_tag(name<"reply">());
    if (!is_reply && !message.has_tag(name<"report">())) {
        store_error(AString(), AString::l1("XML Message is not a <reply> or <report> message"));
        return;
    }
    AString xid;
    if (is_reply) {
        AString error;
        if (!Children<tag::xid>(message).read<tag::xid>(0, &xid, &error)) {
            store_error(AString(), error);
            return;
        }
    }
    int number;
    const EnumString& numbers = is_reply ? reply_numbers() : report_numbers();
    if (const XMLTree* body = find_body(message, numbers, xid, &number))
        dispatch(number, xid, *body);
}

const XMLTree* APIParser::find_body(const XMLTree& message, const EnumString& numbers, const AString& xid,
                                    int* number)
{
    const XMLTree* body = nullptr;
    for (const auto* entry = message.get_subnodes().first_entry(); entry; entry = entry->next) {
        const int found = numbers.to_enumval(entry->value.get_tag());
        if (found < 0)
            continue; // the xid, or something that a newer server has added
        if (body) {
            store_error(xid, AString::l1("XML Message contains multiple commands"));
            return nullptr;
        }
        body = &entry->value;
        *number = found;
    }
    if (!body)
        store_error(xid, AString::l1("XML Message contains no commands"));
    return body;
}

bool APIParser::store_error(const AString& xid, const AString& message)
{
    if (parse_ok_) {
        parse_ok_ = false;
        parse_xid_ = xid;
        parse_error_msg_ = message;
    }
    return false;
}

} // namespace KVRP3
