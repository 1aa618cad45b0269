// The verbs dict get and dict watch: keys as the mirror of the user dictionary has them.
#include <skuanctl/mirror_verb.h>
#include <skuanctl/run.h>

#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>

namespace {

QJsonObject object_of(const QString& key, const QString& value)
{
    return {{"Key", key}, {"Value", value}};
}

/// A key without a text reads as an empty one.
class DictGet : public MirrorVerb
{
public:
    using MirrorVerb::MirrorVerb;

private:
    bool ask() override
    {
        item_ = session_.us_model()->get_item(key_);
        return true;
    }

    void know() override
    {
        const QString value = item_->get();
        if (value.isEmpty())
            return run_.fail(
                {exit_server_error, QStringLiteral("there is no text under the key '%1'").arg(key_), {}});
        run_.line(value, object_of(key_, value));
        run_.done();
    }

    const QString key_ = run_.options().arguments.constFirst();
    USItemModel* item_ = nullptr;
};

/// Begins with the texts that there are.
class DictWatch : public MirrorVerb
{
public:
    using MirrorVerb::MirrorVerb;

private:
    bool ask() override
    {
        for (const QString& key : run_.options().arguments)
            QObject::connect(
                session_.us_model()->get_item(key), &USItemModel::changed, &session_,
                [this, key](const QString& value) { report(key, value, object_of(key, value)); });
        return true;
    }
};

} // namespace

std::unique_ptr<Verb> make_dict_get(Run& run)
{
    return std::make_unique<DictGet>(run);
}

std::unique_ptr<Verb> make_dict_watch(Run& run)
{
    return std::make_unique<DictWatch>(run);
}
