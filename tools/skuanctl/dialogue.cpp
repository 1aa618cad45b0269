// The course of a dialogue. The catalogue tells which replies end their command.
#include <skuanctl/catalogue.h>
#include <skuanctl/dialogue.h>
#include <skuanctl/message_text.h>
#include <skuanctl/program.h>

namespace {

/// A reply that is not known ends its command, so that nobody waits for what may not come.
bool ends_command(const XMLTree& body)
{
    const Reply* const reply = find_row(catalogue().replies, body.get_tag());
    return !reply || reply->ends;
}

} // namespace

Dialogue::Dialogue(Program& program, bool stays) : Verb(program), stays_(stays)
{
    listening_.setSingleShot(true);
    QObject::connect(&listening_, &QTimer::timeout, &program, [this] { listened_long_enough(); });
}

bool Dialogue::stays() const
{
    return stays_ || program_.options().count || program_.options().listen;
}

bool Dialogue::has_all_reports() const
{
    const auto& count = program_.options().count;
    return count && reports_ >= *count;
}

void Dialogue::start()
{
    for (const Outgoing& command : commands_)
        unanswered_.insert(command.xid);
    for (const Outgoing& command : commands_)
        program_.link().send_bytes(command.bytes);
    if (unanswered_.empty())
        all_answered();
}

bool Dialogue::take(const XMLTree& message)
{
    const XMLTree& body = body_of(message);
    if (message.has_tag_z("reply")) {
        const AString xid = xid_of(message);
        show_reply(message, body);
        take_reply(xid, body);
    } else if (!has_all_reports()) {
        show_report(message, body);
        ++reports_;
        if (has_all_reports() && unanswered_.empty())
            end();
    }
    return true;
}

void Dialogue::take_reply(const AString& xid, const XMLTree& body)
{
    const auto command = unanswered_.find(xid);
    if (command == unanswered_.end()) {
        if (xid.empty() && body.has_tag_z("error")) // of bytes that the server cannot read; it hangs up next
            on_error_reply(body);
        return;
    }
    if (!ends_command(body))
        return;
    unanswered_.erase(command);
    if (body.has_tag_z("error")) {
        was_error_ = true;
        on_error_reply(body);
    }
    if (unanswered_.empty())
        all_answered();
}

void Dialogue::on_error_reply(const XMLTree& body)
{
    fail_as_server_said(body.get_subnode(AString::l1("ErrorMessage")).get_content(),
                        body.get_subnode(AString::l1("ErrorCode")).get_content().despace());
}

void Dialogue::all_answered()
{
    if (!stays() || has_all_reports())
        return end();
    program_.link().stop_waiting();
    if (program_.options().listen)
        listening_.start(*program_.options().listen);
}

void Dialogue::listened_long_enough()
{
    if (!program_.options().count)
        return end();
    program_.fail({exit_timed_out,
                   QStringLiteral("%1 of %2 reports came within %3")
                       .arg(reports_)
                       .arg(*program_.options().count)
                       .arg(in_seconds(*program_.options().listen)),
                   {}});
}

void Dialogue::end()
{
    program_.done(was_error_ ? exit_server_error : exit_ok);
}

void print_typed(Program& program, const char* kind, const XMLTree& body)
{
    const QString name = body.get_tag();
    const Reply* const reply = find_row(catalogue().replies, name);
    const Report* const report = find_row(catalogue().reports, name);
    static const Parts none;
    const Parts& parts = reply ? reply->parts : report ? report->parts : none;
    program.output().lines(
        lines_of(body, parts),
        {{"kind", QLatin1String(kind)}, {"name", name}, {"values", values_of(body, parts)}});
}
