// The items of the dictionary, and the session that feeds them.
#include <skuan/config/us_model.h>

#include <skuan/config/us_item_model.h>
#include <skuan/foundation/assertfail.h>
#include <skuan/session/spark.h>

#include <atomic>

namespace {
std::atomic<USModel*> local_model{nullptr};
}

USModel::~USModel()
{
    USModel* self = this;
    local_model.compare_exchange_strong(self, nullptr);
}

USModel* USModel::create(bool localhost, Spark* spark)
{
    USModel* const model = localhost ? USModel::localhost() : new USModel;
    model->config(spark);
    return model;
}

// Two threads may both make one; the second of them has made it in vain.
USModel* USModel::localhost()
{
    if (USModel* const present = local_model)
        return present;
    auto* const made = new USModel;
    USModel* present = nullptr;
    if (local_model.compare_exchange_strong(present, made))
        return made;
    delete made;
    return present;
}

void USModel::config(Spark* spark)
{
    if (!SKUAN_CHECK(spark_ == nullptr) || !spark || !SKUAN_CHECK(spark->thread() == thread()))
        return;
    spark_ = spark;
    setParent(spark);
    connect(spark, &Spark::connected, this, &USModel::connected);
    connect(spark, &Spark::report_userdict_change, this, &USModel::userdict_change);
    if (spark->is_connected())
        connected();
}

USItemModel* USModel::get_item(const QString& key)
{
    USItemModel*& item = items_[key];
    if (!item) {
        item = new USItemModel(key, this);
        if (is_connected())
            spark()->cmd_userdict_watch(AString(key));
    }
    return item;
}

void USModel::connected()
{
    for (USItemModel* const item : qAsConst(items_))
        item->connected();
}

void USModel::userdict_change(const AString& key, const AString& value)
{
    if (USItemModel* const item = items_.value(QString(key)))
        item->changed_on_server(QString(value));
}

bool USModel::is_connected() const
{
    return spark() && spark()->is_connected();
}
