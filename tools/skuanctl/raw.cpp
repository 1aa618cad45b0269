// The verb raw: XML in, XML out, for trying commands and for watching reports.
#include <skuanctl/dialogue.h>
#include <skuanctl/program.h>
#include <skuanctl/raw_input.h>

namespace {

class Raw : public Dialogue
{
public:
    explicit Raw(Program& program) : Dialogue(program, false) {}

    bool prepare() override;

private:
    void show_reply(const XMLTree& message, const XMLTree& body) override { show("reply", message, body); }
    void show_report(const XMLTree& message, const XMLTree& body) override { show("report", message, body); }
    void on_error_reply(const XMLTree&) override {} // it is shown, and the other commands go on

    void show(const char* kind, const XMLTree& message, const XMLTree& body);
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
    set_commands(std::move(input.commands));
    return true;
}

void Raw::show(const char* kind, const XMLTree& message, const XMLTree& body)
{
    const QString xml = message.flatten(XMLTree::flatten_compact);
    const AString xid = xid_of(message);
    QJsonObject object{{"kind", QLatin1String(kind)}, {"name", QString(body.get_tag())}, {"xml", xml}};
    if (!xid.empty() && message.has_tag_z("reply"))
        object.insert("xid", QString(xid));
    program_.output().line(xml, object);
}

} // namespace

std::unique_ptr<Verb> make_raw(Program& program)
{
    return std::make_unique<Raw>(program);
}
