// The verbs config get and config watch: items as the mirror of the configuration has them.
#include <skuanctl/mirror_verb.h>
#include <skuanctl/run.h>

#include <skuan/config/cf_model.h>

#include <QJsonArray>

#include <map>
#include <utility>

namespace {

QJsonObject object_of(const CFItemModel& item)
{
    return {{"ConfigurationItemName", item.get_name()}, {"ConfigurationItemValue", item.get()}};
}

class Config : public MirrorVerb
{
public:
    using MirrorVerb::MirrorVerb;

protected:
    bool ask() override
    {
        for (const QString& name : run_.options().arguments)
            items_.push_back(session_.cf_model()->get_item(name));
        return true;
    }

    /// False, and the run is over, if the server does not have them all.
    bool has_all()
    {
        for (const CFItemModel* item : items_)
            if (!item->have_cf()) {
                run_.fail({exit_server_error,
                           QStringLiteral("there is no configuration item '%1'").arg(item->get_name()),
                           {}});
                return false;
            }
        return true;
    }

    std::vector<CFItemModel*> items_;
};

class ConfigGet : public Config
{
public:
    using Config::Config;

private:
    void know() override
    {
        if (!has_all())
            return;
        for (const CFItemModel* item : items_) {
            QJsonObject object = object_of(*item);
            object["ConfigurationItemAllowedValues"] = QJsonArray::fromStringList(item->allowed_values());
            run_.line(item->get(), object);
        }
        run_.done();
    }
};

/// Named items begin with how they stand. If none is named, all are watched, but only changes are told.
class ConfigWatch : public Config
{
public:
    using Config::Config;

private:
    void know() override
    {
        if (items_.empty())
            session_.cmd_get_configuration(
                AFunction::member<&ConfigWatch::stay>(this),
                AFunction1<KVRP3::ConfigurationItem>::member<&ConfigWatch::take_listed>(this),
                AFunction2<KVRP3::ErrorMessage, KVRP3::ErrorCode>::member<&ConfigWatch::take_error>(this));
        else if (has_all()) {
            for (CFItemModel* item : items_)
                if (watch(item))
                    show(item);
            stay();
        }
    }

    void take_listed(KVRP3::ConfigurationItem listed)
    {
        CFItemModel* const item = session_.cf_model()->get_item(QString(listed.configuration_item_name));
        item->config(listed); // a change from here on is told, even before the mirror has fetched it
        watch(item);
    }

    /// False if it is watched already.
    bool watch(CFItemModel* item)
    {
        if (!shown_.emplace(item, item->get()).second)
            return false;
        QObject::connect(item, qOverload<QString>(&CFItemModel::changed), &session_,
                         [this, item](const QString& value) {
                             // Not everything that changes about an item is its value.
                             if (std::exchange(shown_[item], value) != value)
                                 show(item);
                         });
        return true;
    }

    void show(const CFItemModel* item) { report(item->get_name(), item->get(), object_of(*item)); }

    std::map<CFItemModel*, QString> shown_;
};

} // namespace

std::unique_ptr<Verb> make_config_get(Run& run)
{
    return std::make_unique<ConfigGet>(run);
}

std::unique_ptr<Verb> make_config_watch(Run& run)
{
    return std::make_unique<ConfigWatch>(run);
}
