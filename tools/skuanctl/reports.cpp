// The verb reports, and those named watch: they register, and print what comes.
#include <skuanctl/dialogue.h>
#include <skuanctl/report_classes.h>
#include <skuanctl/run.h>

namespace {

class Reports : public Dialogue
{
public:
    Reports(Run& run, QStringList classes) : Dialogue(run), classes_(std::move(classes)) {}

    bool prepare() override
    {
        const Registration registration = registration_of(classes_);
        if (!registration.error.isEmpty())
            return refuse(registration.error);
        set_steps(registration.commands);
        return true;
    }

private:
    void show_reply(const XMLTree&, const XMLTree&, const Reply*) override {}

    const QStringList classes_;
};

} // namespace

std::unique_ptr<Verb> make_reports(Run& run)
{
    return std::make_unique<Reports>(run, run.options().arguments);
}

/// The classes are the row's; @ stands for the channels that are asked for, or else for all.
std::unique_ptr<Verb> make_watch(Run& run)
{
    const QStringList& channels = run.options().arguments;
    QString classes = QString::fromUtf8(run.options().verb->shows);
    classes.replace('@', channels.isEmpty() ? QStringLiteral("*") : channels.constFirst());
    return std::make_unique<Reports>(run, classes.split(' '));
}
