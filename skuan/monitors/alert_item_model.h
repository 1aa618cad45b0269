// One thing that the server warns of.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/aoption.h>
#include <skuan/protocol/kvrp3_types.h>

#include <QObject>
#include <QString>

class AlertModel;

/// Made by `AlertModel::get`, and lives as long as the model, on its thread: receivers elsewhere are called
/// by queued connections.
class SKUAN_EXPORT AlertItemModel : public QObject
{
    Q_OBJECT

public:
    /// What the server told of it last; absent until then. Any thread.
    AOption<KVRP3::Alert> get() const;

Q_SIGNALS:
    /// Its state or its words differ from before. Comes while the model is locked: a slot that is connected
    /// directly may ask all models, but must not wait for another thread that does.
    void changed(const QString& name);

private:
    friend class AlertModel;
    AlertItemModel(const QString& name, AlertModel* model);

    void report_alert(const KVRP3::Alert& alert);

    AlertModel* const model_;
    const QString name_;
    AOption<KVRP3::Alert> alert_;
};
