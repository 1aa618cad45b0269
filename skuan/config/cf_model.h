// A mirror of a server's configuration: of the items that somebody has asked for.
#pragma once

#include <skuan/config/cf_item_model.h>
#include <skuan/export.h>
#include <skuan/foundation/aoption.h>
#include <skuan/foundation/aprotect.h>
#include <skuan/protocol/kvrp3_meta_types.h>

#include <QHash>
#include <QObject>
#include <QString>

#include <array>
#include <atomic>
#include <cstdint>
#include <list>

class ATimer;
class CFModelGetOneHelper;

namespace KVRP3 {
class APIQt;
}

/// An item is mirrored from the moment somebody asks for it by name. Its value is fetched, kept up with the
/// server's reports, and fetched again after each new connection. Items are never removed, and keep their
/// edits while there is no connection. A fetch that the server refuses is not repeated before the next
/// connection: the item stays without a value.
///
/// Threads: it lives on the thread that makes it, and so has to its API; all that it does by itself happens
/// there, and commits and reverts belong there. What only asks (`get_item` too) may be called on any
/// thread, as may everything of the items.
class SKUAN_EXPORT CFModel : public QObject
{
    Q_OBJECT

public:
    /// A model bound to `api`, which becomes its parent and outlives it; a new one, or the one of
    /// `localhost()`. To bind that a second time, or to an API of another thread than its own, is reported,
    /// and leaves it as it is. With a null `api` it stays unbound; a new one is then the caller's.
    static CFModel* create(bool localhost, KVRP3::APIQt* api);
    /// The one model of this process for the server of this machine; made, unbound, when it is first asked
    /// for. Any thread, but it then lives on that one. It ends with the API that it is bound to.
    static CFModel* localhost();
    static CFItemModel* get_item_localhost(const QString& name);

    ~CFModel() override;

    /// The item of that name, at once; its value comes when the server has answered. Never null, and always
    /// the same for one name; it lives as long as the model.
    CFItemModel* get_item(const QString& name);

    /// Every item that was asked for has been fetched, or refused, since the connection began.
    bool is_fully_scanned() const;
    // Whether any item has changes, or has some that need a restart: from memory, until an item changes.
    bool have_changes() const;
    bool need_reboot() const;
    void cache_clear(); ///< has them looked up afresh
    /// `CFItemModel::commit_done` of all items.
    bool commit_done() const;

public Q_SLOTS:
    // Sends edits. An edit stays until the server reports its value, and so for good if the server refuses
    // it. Without a connection nothing is sent, now or later.

    void commit_changes();
    void commit(const std::list<QString>& names); ///< those items, in this order; unknown names are skipped

    // Drops edits, those of unknown names aside.

    void revert(const std::list<QString>& names);
    void revert_all_items();

Q_SIGNALS:
    void changed();       ///< an item changed
    void fully_scanned(); ///< `is_fully_scanned` has become true

private Q_SLOTS:
    void connected();
    void disconnected();
    void config_changed_on_server(const AOption<std::list<KVRP3::ConfigurationItem>>& change);
    void get_one_reply(unsigned number, const KVRP3::ConfigurationItem& item);
    void get_one_error(unsigned number);
    void item_changed();
    void hot_change();
    void update();
    void update_action();

private:
    struct Data;
    enum class Which { all, hot };

    CFModel();

    void config(KVRP3::APIQt* api);
    void restart_scan();
    bool next_scan_step();
    void send_fetches();
    bool end_fetch(unsigned number);
    void configuration_item(const KVRP3::ConfigurationItem& item);
    void send_changes(Which which);
    CFItemModel* make_item(const QString& name);
    CFItemModel* find(const QString& name) const;
    QHash<QString, CFItemModel*> items() const;
    bool any(bool (CFItemModel::*property)() const, std::atomic<std::uint64_t>* cache) const;

    static constexpr unsigned most_fetches = 6; ///< in flight at once

    // Nothing is called while this is locked: no item, no command, no signal. Items emit signals while
    // they are locked, and slots of those ask the model.
    const AProtect<Data> data_;

    KVRP3::APIQt* api_ = nullptr; ///< the parent
    ATimer* const update_timer_;  ///< a child
    std::array<CFModelGetOneHelper*, most_fetches> helpers_;

    // The number of changes so far; and the two answers, each shifted left behind the number that it was
    // found at. Outside the lock, since an item that changes is locked itself.
    std::atomic<std::uint64_t> changes_{1};
    mutable std::atomic<std::uint64_t> have_changes_{0};
    mutable std::atomic<std::uint64_t> need_reboot_{0};
};
