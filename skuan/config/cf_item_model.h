// One configuration item of a server, with a user's edit of it lying on top.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/aprotect.h>
#include <skuan/protocol/kvrp3_types.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <atomic>

/// The server's value is what the server last said: the boot value for an item that takes effect only
/// after a restart, otherwise the effective value; empty before the server has said anything. An edit
/// covers it until the server says the same, by which it dissolves without a further word.
///
/// Threads: it lives on its model's thread; everything here may be called on any. Signals are emitted on
/// the thread of whoever caused them, and with the item locked: a slot that is connected directly may use
/// this item and ask its model, but must not wait for another thread that does, nor get or set other items
/// while other threads edit.
class SKUAN_EXPORT CFItemModel : public QObject
{
    Q_OBJECT

public:
    /// Items that are mirrored come from CFModel::get_item; one made here mirrors nothing.
    explicit CFItemModel(QString name, QObject* parent = nullptr);
    ~CFItemModel() override;

    QString get_name() const { return name_; }
    /// The edit if there is one, otherwise the server's value.
    QString get() const;
    /// The values that the server allows; none before it has said anything, or if any text is allowed.
    QStringList allowed_values() const;
    /// Whether it is one of these, case and all.
    bool is_allowed(const QString& value) const;

    /// The server has said what it has.
    bool have_cf() const { return flags_ & fetched; }
    /// The server has, and there is an edit that differs.
    bool have_changes() const { return flags_ & changes; }
    /// Has changes, which take effect only after a restart.
    bool need_reboot() const { return flags_ & changes_at_restart; }
    /// What is shown here is what the server keeps: for an item that requires a restart, `get` is the saved
    /// value; for any other, there are no changes. False before the server has said anything.
    bool commit_done() const { return flags_ & committed; }

    /// Hot: each edit is sent at once, and again when the server says something else.
    bool hot() const { return hot_; }

    /// Takes what the server says. A record of another name is reported and ignored; one that says nothing
    /// new changes nothing.
    void config(const KVRP3::ConfigurationItem& cf);

public Q_SLOTS:
    /// Edits. Nothing happens if it is the present value.
    void set(const QString& value);
    void set(int value);
    void set(unsigned value);
    /// Drops the edit; the signals come in any case.
    void revert_item();
    void setHot(bool hot) { hot_ = hot; }

Q_SIGNALS:
    // In this order, after each change of the edit or of the server's record, and with `get`'s value.

    void changed(QString value);
    void changed(QString name, QString value);
    void changed(unsigned value); ///< only if the text is such a number
    void changed(int value);      ///< only if the text is such a number
    void hot_change();            ///< only if the item is hot and has changes

private:
    struct Data;
    enum Flag : unsigned { fetched = 1, changes = 2, changes_at_restart = 4, committed = 8 };

    void signal_change();

    const QString name_;
    const AProtect<Data> data_;
    // Beside the lock, written only under it: a slot may have the model look at all items, on several
    // threads at once, each with another item locked.
    std::atomic<unsigned> flags_{0};
    std::atomic<bool> hot_{false};
};
