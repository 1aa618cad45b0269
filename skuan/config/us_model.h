// The user dictionary of the server: texts under keys, where clients meet.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>

#include <QHash>
#include <QObject>
#include <QString>

#include <atomic>

class Spark;
class USItemModel;

/// Mirrors the keys that somebody has asked for. It has a session for all its life, once it has one; through
/// any number of lost connections what this client has written is written again, and what it reads is watched
/// again.
///
/// Threads: the model and its functions belong to the session's thread, but for `localhost()`; items are for
/// any thread.
class SKUAN_EXPORT USModel : public QObject
{
    Q_OBJECT

public:
    ~USModel() override;

    /// A model bound to that session, which then owns it: a new one, or the process-wide one if the server is
    /// on this machine. To bind that a second time, or to a session of another thread than its own, is
    /// reported, and leaves it as it is. With a null session it stays unbound; a new one is then the
    /// caller's.
    static USModel* create(bool localhost, Spark* spark);

    /// The model of the server on this machine, made on first use. Any thread, but it then lives on that one;
    /// never null. It ends with the session that it is bound to.
    static USModel* localhost();

    /// Never null; the same one for the same key. Owned by the model.
    USItemModel* get_item(const QString& key);
    static USItemModel* get_item_localhost(const QString& key) { return localhost()->get_item(key); }

private Q_SLOTS:
    void connected();
    void userdict_change(const AString& key, const AString& value);

private:
    friend class USItemModel;
    USModel() = default;

    void config(Spark* spark);
    Spark* spark() const { return spark_; }
    bool is_connected() const;

    std::atomic<Spark*> spark_{nullptr}; ///< the parent; items ask for it on any thread
    QHash<QString, USItemModel*> items_; // children
};
