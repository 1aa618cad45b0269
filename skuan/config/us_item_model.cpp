// What is written at once, what has to wait, and whose changes count.
#include <skuan/config/us_item_model.h>

#include <skuan/config/us_model.h>
#include <skuan/foundation/assertfail.h>
#include <skuan/session/spark.h>

USItemModel::USItemModel(const QString& key, USModel* model) : QObject(model), key_(key), model_(model) {}

QString USItemModel::get() const
{
    const PortableMutexLock lock(lock_);
    return value_;
}

// Written under the lock, so that what two threads write arrives in the order in which it is kept.
void USItemModel::set(const QString& value)
{
    {
        const PortableMutexLock lock(lock_);
        if (has_set_ && value_ == value)
            return;
        has_set_ = true;
        value_ = value;
        if (!SKUAN_CHECK(model_->spark()) || !model_->is_connected())
            return;
        model_->spark()->cmd_userdict_set(AString(key_), AString(value));
    }
    Q_EMIT changed(value);
}

void USItemModel::set(const QString& value, const QString& own_value)
{
    {
        const PortableMutexLock lock(lock_);
        if (!read_write_ && (!has_own_ || own_value_ != own_value)) {
            has_own_ = true;
            own_value_ = own_value;
            if (model_->is_connected())
                model_->spark()->cmd_userdict_own(AString(key_), AString(own_value));
        }
    }
    set(value);
}

void USItemModel::set_read_write(bool on)
{
    const PortableMutexLock lock(lock_);
    read_write_ = on;
}

void USItemModel::connected()
{
    const PortableMutexLock lock(lock_);
    // What reads and writes is not watched again: the quirk is meant.
    Spark& spark = *model_->spark();
    if (!has_set_) {
        spark.cmd_userdict_watch(AString(key_));
        return;
    }
    if (has_own_)
        spark.cmd_userdict_own(AString(key_), AString(own_value_));
    spark.cmd_userdict_set(AString(key_), AString(value_));
}

void USItemModel::changed_on_server(const QString& value)
{
    {
        const PortableMutexLock lock(lock_);
        if ((has_set_ && !read_write_) || value_ == value)
            return;
        value_ = value;
    }
    Q_EMIT changed(value);
}
