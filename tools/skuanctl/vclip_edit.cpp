// The verbs that edit a virtual clip: one edit from the command line, or a set of them from lines. Edits
// stand between a start and an end, which makes them take effect.
#include <skuanctl/arguments.h>
#include <skuanctl/lines_input.h>
#include <skuanctl/recipe.h>
#include <skuanctl/run.h>

#include <QProcess>

#include <algorithm>

namespace {

class VclipEdit : public Dialogue
{
public:
    using Dialogue::Dialogue;

    bool prepare() override
    {
        const Options& options = run_.options();
        const QString vclip = QStringLiteral("VClipID=") + options.arguments[0];
        add("vclip_modification_start", vclip);
        if (*options.verb->command ? !add_edit(options) : !add_lines(options.arguments.value(1)))
            return refuse(error_);
        add("vclip_modification_end", vclip);
        set_steps(steps_);
        return true;
    }

private:
    void show_reply(const XMLTree&, const XMLTree&, const Reply*) override {}

    void add(const char* command, const QString& word)
    {
        steps_.push_back(build_command(*find_row(catalogue().commands, command), {word}).element);
    }

    bool add_edit(const Options& options)
    {
        const Recipe recipe = recipe_of(options);
        error_ = recipe.error;
        steps_.insert(steps_.end(), recipe.commands.begin(), recipe.commands.end());
        return error_.isEmpty();
    }

    /// Each line is a verb of the family without `vclip` and the name.
    bool add_lines(const QString& file)
    {
        const QStringList lines = read_lines(file, &error_);
        for (int i = 0; i < lines.size() && error_.isEmpty(); ++i)
            if (!lines[i].isEmpty() && !add_line(lines[i]))
                error_ = QStringLiteral("line %1: %2").arg(i + 1).arg(error_);
        return error_.isEmpty();
    }

    bool add_line(const QString& line)
    {
        QStringList words = QProcess::splitCommand(line); // quotes hold a name with blanks together
        words.insert(std::min(1, words.size()), QStringLiteral("VCLIP"));
        Options edit = parse_options(QStringList{"skuanctl", "vclip"} + words);
        const bool is_edit = edit.verb && edit.verb->make == make_vclip_edit && *edit.verb->command;
        error_ = edit.error;
        if (error_.isEmpty() && (!is_edit || edit.help))
            error_ = QStringLiteral("'%1' is no edit").arg(line);
        if (!error_.isEmpty())
            return false;
        edit.arguments[0] = run_.options().arguments[0]; // which may look like an option
        return add_edit(edit);
    }

    std::vector<XMLTree> steps_;
    QString error_;
};

} // namespace

std::unique_ptr<Verb> make_vclip_edit(Run& run)
{
    return std::make_unique<VclipEdit>(run);
}
