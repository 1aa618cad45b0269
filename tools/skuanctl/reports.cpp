// The verb reports: registers, and prints what comes.
#include <skuanctl/dialogue.h>
#include <skuanctl/program.h>
#include <skuanctl/report_classes.h>

namespace {

class Reports : public Dialogue
{
public:
    explicit Reports(Program& program) : Dialogue(program, true) {}

    bool prepare() override
    {
        const Registration registration = registration_of(program_.options().arguments);
        if (!registration.error.isEmpty()) {
            program_.fail({exit_usage, registration.error, {}});
            return false;
        }
        std::vector<Outgoing> commands;
        for (const XMLTree& command : registration.commands)
            commands.push_back(command_message(command, AString::from_unsigned(++last_xid_)));
        set_commands(std::move(commands));
        return true;
    }

private:
    void show_reply(const XMLTree&, const XMLTree&) override {}
    void show_report(const XMLTree&, const XMLTree& body) override { print_typed(program_, "report", body); }

    unsigned last_xid_ = 0;
};

} // namespace

std::unique_ptr<Verb> make_reports(Program& program)
{
    return std::make_unique<Reports>(program);
}
