// The value of an alert, under the lock of its model.
#include <skuan/monitors/alert_item_model.h>

#include <skuan/monitors/alert_model.h>

AlertItemModel::AlertItemModel(const QString& name, AlertModel* model) : model_(model), name_(name)
{
    moveToThread(model->thread());
}

AOption<KVRP3::Alert> AlertItemModel::get() const
{
    const PortableMutexLock lock(model_->lock_);
    return alert_;
}

void AlertItemModel::report_alert(const KVRP3::Alert& alert)
{
    const PortableMutexLock lock(model_->lock_);
    if (alert_ == AOption<KVRP3::Alert>(alert))
        return;
    alert_.set(alert);
    Q_EMIT changed(name_);
}
