// The verb raw: messages as they stand, and what they bring as it stands.
#include <skuanctl/dialogue.h>
#include <skuanctl/raw_input.h>
#include <skuanctl/run.h>

namespace {

class Raw : public Dialogue
{
public:
    using Dialogue::Dialogue;

    bool prepare() override;

private:
    void show_reply(const XMLTree& message, const XMLTree& body, const Reply*) override
    {
        show("reply", message, body);
    }
    void show_report(const XMLTree& message, const XMLTree& body) override { show("report", message, body); }
    // It is shown as the reply that it is, and the other commands go on.
    void on_error_reply(const XMLTree& message, const XMLTree& body) override
    {
        show("reply", message, body);
    }

    void show(const char* kind, const XMLTree& message, const XMLTree& body);
};

bool Raw::prepare()
{
    const QStringList& arguments = run_.options().arguments;
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
    if (!error.isEmpty())
        return refuse(error);
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
    run_.line(xml, object);
}

} // namespace

std::unique_ptr<Verb> make_raw(Run& run)
{
    return std::make_unique<Raw>(run);
}
