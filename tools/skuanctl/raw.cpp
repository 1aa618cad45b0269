// The verb raw: XML in, XML out, for trying commands and for watching reports.
#include <skuanctl/program.h>
#include <skuanctl/raw_input.h>

#include <algorithm>
#include <set>

namespace {

/// The replies of a stream; each other reply ends its command.
constexpr const char* stream_replies[] = {
    "clipid",  "directory_name", "configuration_item", "melt_item", "melt_flags",         "listid",
    "chaseid", "list_element",   "chase_element",      "metadata",  "volatile_file_info",
};

bool ends_command(const AString& reply)
{
    return std::none_of(std::begin(stream_replies), std::end(stream_replies),
                        [&](const char* name) { return reply.equal_z(name); });
}

/// The tag of what the message is about; empty if it holds nothing.
AString body_name(const XMLTree& message)
{
    for (const XMLTree& child : message.get_subnodes())
        if (!child.has_tag_z("xid"))
            return child.get_tag();
    return {};
}

class Raw : public Verb
{
public:
    explicit Raw(Program& program) : Verb(program)
    {
        listening_.setSingleShot(true);
        QObject::connect(&listening_, &QTimer::timeout, &program, [this] { listened_long_enough(); });
    }

    bool prepare() override;
    void start() override;
    bool take(const XMLTree& message) override;

private:
    bool stays() const { return program_.options().count || program_.options().listen; }
    bool has_all_reports() const
    {
        const auto& count = program_.options().count;
        return count && reports_ >= *count;
    }

    void show(const XMLTree& message, const QString& kind, const AString& xid, const AString& name);
    void take_reply(const AString& xid, const AString& name);
    void all_answered();
    void listened_long_enough();
    void end() { program_.done(was_error_ ? exit_server_error : exit_ok); }

    std::vector<RawCommand> commands_;
    std::multiset<AString> unanswered_; // xids; a script may well use one twice
    int reports_ = 0;
    bool was_error_ = false;
    QTimer listening_;
};

bool Raw::prepare()
{
    const QStringList& arguments = program_.options().arguments;
    RawInput input;
    QString error;
    const QByteArray text =
        arguments.isEmpty() ? read_standard_input(&error) : arguments.join(QLatin1Char('\n')).toUtf8();
    if (error.isEmpty()) {
        input = cut_commands(text);
        error = input.error;
    }
    if (error.isEmpty() && input.commands.empty() && !stays())
        error = QStringLiteral("there is no command in the input");
    if (!error.isEmpty()) {
        program_.fail({exit_usage, error, {}});
        return false;
    }
    commands_ = std::move(input.commands);
    return true;
}

void Raw::start()
{
    for (const RawCommand& command : commands_)
        unanswered_.insert(command.xid);
    for (const RawCommand& command : commands_)
        program_.link().send_bytes(command.bytes);
    if (unanswered_.empty())
        all_answered();
}

bool Raw::take(const XMLTree& message)
{
    const AString name = body_name(message);
    if (message.has_tag_z("reply")) {
        const AString xid = xid_of(message);
        show(message, QStringLiteral("reply"), xid, name);
        take_reply(xid, name);
    } else if (!has_all_reports()) {
        show(message, QStringLiteral("report"), {}, name);
        ++reports_;
        if (has_all_reports() && unanswered_.empty())
            end();
    }
    return true;
}

void Raw::show(const XMLTree& message, const QString& kind, const AString& xid, const AString& name)
{
    const QString xml = message.flatten(XMLTree::flatten_compact);
    QJsonObject object{{"kind", kind}, {"name", QString(name)}, {"xml", xml}};
    if (!xid.empty())
        object.insert("xid", QString(xid));
    program_.output().line(xml, object);
}

void Raw::take_reply(const AString& xid, const AString& name)
{
    const auto command = unanswered_.find(xid);
    if (command == unanswered_.end() || !ends_command(name))
        return;
    was_error_ = was_error_ || name.equal_z("error");
    unanswered_.erase(command);
    if (unanswered_.empty())
        all_answered();
}

void Raw::all_answered()
{
    if (!stays() || has_all_reports())
        return end();
    program_.link().stop_waiting();
    if (program_.options().listen)
        listening_.start(*program_.options().listen);
}

void Raw::listened_long_enough()
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

} // namespace

std::unique_ptr<Verb> make_raw(Program& program)
{
    return std::make_unique<Raw>(program);
}
