// The verb record: a clip that is made with a channel is recorded at once.
#include <skuanctl/message_text.h>
#include <skuanctl/recipe.h>
#include <skuanctl/report_classes.h>
#include <skuanctl/run.h>

namespace {

/// With --wait it watches the channel, too, and ends when the channel does not record any more.
class Record : public RecipeVerb
{
public:
    using RecipeVerb::RecipeVerb;

    bool prepare() override
    {
        if (!run_.options().has("wait"))
            return RecipeVerb::prepare();
        Recipe recipe = recipe_of(run_.options());
        if (!recipe.error.isEmpty())
            return refuse(recipe.error);
        // Registering first brings the state before the recording, too, which does not count.
        const QString channel = run_.options().arguments[0];
        const Registration registration = registration_of({channel + ":status,timecode"});
        if (!registration.error.isEmpty())
            return refuse(registration.error);
        recipe.commands.insert(recipe.commands.begin(), registration.commands.begin(),
                               registration.commands.end());
        set_steps(recipe.commands);
        return true;
    }

private:
    void show_report(const XMLTree&, const XMLTree& body) override
    {
        if (body.has_tag_z("channel_timecode"))
            run_.progress(QStringLiteral("recorded %1 fields")
                              .arg(QString(body.get_subnode(AString::l1("ClipPosition")).get_content())));
        if (!body.has_tag_z("channel_status"))
            return;
        const bool records =
            body.get_subnode(AString::l1("ChannelStatus")).get_content().despace().equal_z("record");
        if (has_recorded_ && !records)
            run_.done();
        has_recorded_ = has_recorded_ || records;
    }

    void finish() override
    {
        if (run_.options().has("wait"))
            run_.link().stop_waiting();
        else
            run_.done();
    }

    bool has_recorded_ = false;
};

} // namespace

std::unique_ptr<Verb> make_record(Run& run)
{
    return std::make_unique<Record>(run);
}
