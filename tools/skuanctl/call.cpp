// The verb call: one command by its name and the names of its tags.
#include <skuanctl/arguments.h>
#include <skuanctl/call_help.h>
#include <skuanctl/dialogue.h>
#include <skuanctl/program.h>

namespace {

class Call : public Dialogue
{
public:
    explicit Call(Program& program) : Dialogue(program, false) {}

    bool prepare() override
    {
        const BuiltCommand built = build(program_.options().arguments);
        if (!built.error.isEmpty()) {
            program_.fail({exit_usage, built.error, {}});
            return false;
        }
        set_commands({command_message(built.element, AString::l1("1"))});
        return true;
    }

private:
    static BuiltCommand build(const QStringList& words)
    {
        if (words.isEmpty())
            return {{}, QStringLiteral("no command is given; call --help lists them")};
        const Command* const command = find_row(catalogue().commands, words.constFirst());
        return command ? build_command(*command, words.mid(1))
                       : BuiltCommand{{}, no_such_command(words.constFirst())};
    }

    void show_reply(const XMLTree&, const XMLTree& body) override
    {
        if (!body.has_tag_z("error")) // which ends the run, and is told by its end
            print_typed(program_, "reply", body);
    }
    void show_report(const XMLTree&, const XMLTree&) override {}
};

} // namespace

std::unique_ptr<Verb> make_call(Program& program)
{
    return std::make_unique<Call>(program);
}
