// One key of the server's user dictionary, as this client sees it and writes it.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/portable_mutex.h>

#include <QObject>
#include <QString>

class USModel;

/// A reader until its first `set`, and a writer from then on: it ignores what others write to the key, its
/// own echo included, unless `set_read_write(true)` has it listen as well. What it has written is written
/// again on each new connection; a reader watches the key again, but no writer does, not even one that
/// listens: after a lost connection that hears of the key no more.
///
/// Made by `USModel::get_item`, and lives as long as the model. All functions may be called on any thread;
/// `changed` comes on the thread of whoever writes, or on the model's.
class SKUAN_EXPORT USItemModel : public QObject
{
    Q_OBJECT

public:
    /// What was seen last, or set; empty before.
    QString get() const;

    /// Writes the text, unless this client has written the same before. Without a connection it is written
    /// when there is one, and `changed` does not come. In a model without a session that is reported.
    void set(const QString& value);

    /// The same, with the text that the server is to put under the key when this client goes. An item that
    /// reads and writes has none: that text is ignored.
    void set(const QString& value, const QString& own_value);

    void set_read_write(bool on);

Q_SIGNALS:
    void changed(const QString& value); ///< the server's value is another, or this client has written

private:
    friend class USModel;
    USItemModel(const QString& key, USModel* model);

    void connected(); // the session has a new connection
    void changed_on_server(const QString& value);

    const QString key_;
    USModel* const model_;       // the parent
    mutable PortableMutex lock_; // for what follows
    QString value_;
    bool has_own_ = false;
    QString own_value_;
    bool has_set_ = false;
    bool read_write_ = false;
};
