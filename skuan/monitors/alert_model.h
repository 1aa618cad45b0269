// What the server warns of, by name.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/portable_mutex.h>
#include <skuan/protocol/kvrp3_meta_types.h>

#include <QMap>
#include <QObject>
#include <QString>
#include <QThread>

class AlertItemModel;
class Spark;

/// The alerts of a session's server. Made by `Spark::get_alert_model`, and lives as long as the session. An
/// alert outlives a lost connection: it stands until the server tells of it anew.
///
/// Threads: it handles reports on a thread of its own; `get` may be called on any.
class SKUAN_EXPORT AlertModel : public QObject
{
    Q_OBJECT

public:
    /// Waits for its thread, and with it for slots that run there.
    ~AlertModel() override;

    /// The same one for the same name, whether the server has told of it or not. Owned by the model. Null,
    /// and reported, for an empty name.
    AlertItemModel* get(const QString& name);

private Q_SLOTS:
    void report_alert(const KVRP3::Alert& alert);

private:
    friend class AlertItemModel;
    friend class Spark;
    explicit AlertModel(Spark* spark);

    QThread thread_;
    PortableMutex lock_; ///< for the map, and the values of all items
    QMap<QString, AlertItemModel*> items_;
};
