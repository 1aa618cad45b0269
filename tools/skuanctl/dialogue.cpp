// The course of a dialogue. The catalogue tells which replies end their command.
#include <skuanctl/dialogue.h>
#include <skuanctl/message_text.h>
#include <skuanctl/run.h>

#include <skuan/markup/xml_parse.h>

namespace {

/// In the words of `call`, which can try it again by itself.
QString as_called(const Outgoing& command)
{
    const XMLTree message = XMLParse(
        AString::from_utf8(command.bytes.constData(), static_cast<unsigned>(command.bytes.size())), nullptr);
    const XMLTree& body = body_of(message);
    const Command* const row = find_row(catalogue().commands, body.get_tag());
    return row ? line_of(body, row->parts) : QString(body.get_tag());
}

} // namespace

void Dialogue::set_steps(const std::vector<XMLTree>& commands)
{
    in_steps_ = true;
    commands_.clear();
    for (const XMLTree& command : commands)
        commands_.push_back(
            command_message(command, AString::from_unsigned(static_cast<unsigned>(commands_.size() + 1))));
}

void Dialogue::start()
{
    do
        if (sent_ < commands_.size())
            send(commands_[sent_++]);
    while (!in_steps_ && sent_ < commands_.size());
    if (unanswered_.empty())
        all_answered();
}

void Dialogue::send(const Outgoing& command)
{
    unanswered_.insert(command.xid);
    run_.link().send_bytes(command.bytes);
}

void Dialogue::take(const XMLTree& message)
{
    const XMLTree& body = body_of(message);
    if (message.has_tag_z("reply"))
        take_reply(message, body);
    else if (!patience_.is_over())
        take_report(message, body);
}

void Dialogue::take_report(const XMLTree& message, const XMLTree& body)
{
    show_report(message, body);
    patience_.count();
    if (patience_.is_over() && unanswered_.empty() && sent_ == commands_.size())
        finish();
}

const Reply* Dialogue::row_of(const XMLTree& body)
{
    if (!body.has_tag(last_tag_)) {
        last_tag_ = body.get_tag();
        last_reply_ = find_row(catalogue().replies, last_tag_);
    }
    return last_reply_;
}

void Dialogue::take_reply(const XMLTree& message, const XMLTree& body)
{
    const Reply* const reply = row_of(body);
    const bool ends = !reply || reply->ends; // an unknown one too, so that nobody waits for what may not come
    if (!ends)
        return show_reply(message, body, reply);
    const AString xid = xid_of(message);
    const auto command = unanswered_.find(xid);
    // An error without xid is about what the server cannot read; it hangs up next.
    if (body.has_tag_z("error") && (command != unanswered_.end() || xid.empty())) {
        was_error_ = true;
        on_error_reply(message, body);
    } else {
        show_reply(message, body, reply);
    }
    if (command == unanswered_.end() || run_.is_over())
        return;
    unanswered_.erase(command);
    if (sent_ < commands_.size())
        send(commands_[sent_++]);
    else if (unanswered_.empty())
        all_answered();
}

void Dialogue::show_report(const XMLTree&, const XMLTree& body)
{
    print_report(run_, body);
}

void Dialogue::on_error_reply(const XMLTree&, const XMLTree& body)
{
    const QString said = body.get_subnode(AString::l1("ErrorMessage")).get_content();
    const QString step = in_steps_ && commands_.size() > 1
                             ? QStringLiteral("step %1 of %2, %3: ")
                                   .arg(QString::number(sent_), QString::number(commands_.size()),
                                        as_called(commands_[sent_ - 1]))
                             : QString();
    run_.fail({exit_server_error, step + QStringLiteral("the server answered: ") + said,
               body.get_subnode(AString::l1("ErrorCode")).get_content().despace()});
}

void Dialogue::all_answered()
{
    if (!stays() || patience_.is_over())
        return finish();
    run_.link().stop_waiting();
    patience_.begin();
}

void Dialogue::finish()
{
    run_.done(was_error_ ? exit_server_error : exit_ok);
}

void print_report(Run& run, const XMLTree& body)
{
    const QString name = body.get_tag();
    const Report* const report = find_row(catalogue().reports, name);
    static const Parts none;
    const Parts& parts = report ? report->parts : none;
    if (run.options().json)
        run.line({},
                 {{"kind", QStringLiteral("report")}, {"name", name}, {"values", values_of(body, parts)}});
    else
        run.line(line_of(body, parts), {});
}
