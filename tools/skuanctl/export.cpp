// The verb export: clips, each with the file that it goes to, between a start and an end.
#include <skuanctl/arguments.h>
#include <skuanctl/recipe.h>
#include <skuanctl/run.h>

namespace {

class Export : public Dialogue
{
public:
    using Dialogue::Dialogue;

    bool prepare() override
    {
        const Options& options = run_.options();
        const Command& add = *commands_of(*options.verb).front();
        QString error;
        const QStringList piece = option_words(options, &error);
        std::vector<XMLTree> steps{XMLTree(AString::l1("export_start"))};
        for (const QString& word : options.arguments) {
            if (!word.contains('='))
                error = QStringLiteral("'%1' names no file; it takes CLIP=FILE").arg(word);
            const BuiltCommand built = build_command(
                add,
                QStringList{"ClipID=" + word.section('=', 0, 0), "Filename=" + word.section('=', 1)} + piece);
            error = error.isEmpty() ? built.error : error;
            steps.push_back(built.element);
        }
        if (!error.isEmpty())
            return refuse(error);
        steps.push_back(XMLTree(AString::l1("export_end")));
        set_steps(steps);
        return true;
    }

private:
    void show_reply(const XMLTree&, const XMLTree&, const Reply*) override {}
};

} // namespace

std::unique_ptr<Verb> make_export(Run& run)
{
    return std::make_unique<Export>(run);
}
