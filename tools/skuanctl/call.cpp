// The verb call: one command by its name and the names of its tags.
#include <skuanctl/arguments.h>
#include <skuanctl/call_help.h>
#include <skuanctl/dialogue.h>
#include <skuanctl/message_text.h>
#include <skuanctl/run.h>

namespace {

class Call : public Dialogue
{
public:
    using Dialogue::Dialogue;

    bool prepare() override
    {
        const QStringList& words = run_.options().arguments;
        const Command* const command = find_row(catalogue().commands, words.constFirst());
        if (!command)
            return refuse(no_such_command(words.constFirst()));
        const BuiltCommand built = build_command(*command, words.mid(1));
        if (!built.error.isEmpty())
            return refuse(built.error);
        set_steps({built.element});
        return true;
    }

private:
    void show_reply(const XMLTree&, const XMLTree& body, const Reply* reply) override
    {
        static const Parts none;
        const Parts& parts = reply ? reply->parts : none;
        const QString name = body.get_tag();
        run_.lines(QStringList(name) + lines_of(body, parts, 1),
                   {{"kind", "reply"}, {"name", name}, {"values", values_of(body, parts)}});
    }
    void show_report(const XMLTree&, const XMLTree&) override {}
};

} // namespace

std::unique_ptr<Verb> make_call(Run& run)
{
    return std::make_unique<Call>(run);
}
