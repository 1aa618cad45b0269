// The verb dict get: no command asks for the text under a key, but who watches it is told at once.
#include <skuanctl/arguments.h>
#include <skuanctl/dialogue.h>
#include <skuanctl/run.h>

#include <optional>

namespace {

class DictGet : public Dialogue
{
public:
    using Dialogue::Dialogue;

    bool prepare() override
    {
        const QString key = QStringLiteral("Key=") + run_.options().arguments[0];
        const Command& watch = *find_row(catalogue().commands, QStringLiteral("userdict_watch"));
        // What comes before the answer to the second is the present state.
        set_steps({build_command(watch, {key}).element, XMLTree(AString::l1("sync"))});
        return true;
    }

private:
    void show_reply(const XMLTree&, const XMLTree&, const Reply*) override {}

    void show_report(const XMLTree&, const XMLTree& body) override
    {
        if (body.has_tag_z("userdict_change"))
            value_ = body.get_subnode(AString::l1("Value")).get_content();
    }

    void finish() override
    {
        const QString key = run_.options().arguments[0];
        if (!value_)
            return run_.fail(
                {exit_server_error, QStringLiteral("there is no text under the key '%1'").arg(key), {}});
        run_.line(*value_, {{"Key", key}, {"Value", *value_}});
        run_.done();
    }

    std::optional<QString> value_;
};

} // namespace

std::unique_ptr<Verb> make_dict_get(Run& run)
{
    return std::make_unique<DictGet>(run);
}
