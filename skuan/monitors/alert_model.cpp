// A thread of its own, and an item for each name.
#include <skuan/monitors/alert_model.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/monitors/alert_item_model.h>
#include <skuan/session/spark.h>

AlertModel::AlertModel(Spark* spark)
{
    thread_.setObjectName(QStringLiteral("AlertModel"));
    moveToThread(&thread_);
    thread_.start(QThread::InheritPriority);
    connect(spark, &Spark::report_alert, this, &AlertModel::report_alert, Qt::QueuedConnection);
}

AlertModel::~AlertModel()
{
    thread_.quit();
    thread_.wait();
    qDeleteAll(items_);
}

AlertItemModel* AlertModel::get(const QString& name)
{
    if (!SKUAN_CHECK(!name.isEmpty()))
        return nullptr;
    const PortableMutexLock lock(lock_);
    AlertItemModel*& item = items_[name];
    if (!item)
        item = new AlertItemModel(name, this);
    return item;
}

void AlertModel::report_alert(const KVRP3::Alert& alert)
{
    if (!alert.alert_name.empty())
        get(QString(alert.alert_name))->report_alert(alert);
}
