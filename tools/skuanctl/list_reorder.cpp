// The verbs list reorder and chase reorder: elements move before another one, in the order that they stand
// in.
#include <skuanctl/arguments.h>
#include <skuanctl/dialogue.h>
#include <skuanctl/run.h>

namespace {

class ListReorder : public Dialogue
{
public:
    using Dialogue::Dialogue;

    bool prepare() override
    {
        const QStringList& arguments = run_.options().arguments;
        const Command& item = *commands_of(*run_.options().verb).back();
        const QString index = item.parts.front().tag->name + '=';
        const QString stem = item.name.section('_', 0, -2); // of the three commands
        bool good = add(stem + "_start", QStringLiteral("Channel=") + arguments[0]);
        for (const QString& from : arguments.mid(2))
            good = good && add(item.name, index + from);
        if (!good || !add(stem + "_finish", index + arguments[1]))
            return refuse(error_);
        set_steps(steps_);
        return true;
    }

private:
    void show_reply(const XMLTree&, const XMLTree&, const Reply*) override {}

    bool add(const QString& command, const QString& word)
    {
        const BuiltCommand built = build_command(*find_row(catalogue().commands, command), {word});
        error_ = built.error;
        steps_.push_back(built.element);
        return error_.isEmpty();
    }

    std::vector<XMLTree> steps_;
    QString error_;
};

} // namespace

std::unique_ptr<Verb> make_list_reorder(Run& run)
{
    return std::make_unique<ListReorder>(run);
}
