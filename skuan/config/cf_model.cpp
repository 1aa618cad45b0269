// Which items are fetched when, and what is sent back.
#include <skuan/config/cf_model.h>

#include <skuan/config/cf_model_get_one_helper_p.h>
#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/atimer.h>
#include <skuan/protocol/kvrp3_api_qt.h>

#include <QThread>

#include <algorithm>
#include <optional>
#include <set>
#include <utility>
#include <vector>

using KVRP3::APIQt;

namespace {

enum class Scan {
    none,    ///< no connection, or fetches of a former one still to end
    running, ///< everything is being fetched
    done,
};

std::atomic<CFModel*> the_localhost{nullptr};

} // namespace

struct CFModel::Data
{
    Scan scan = Scan::none;
    QHash<QString, CFItemModel*> items;
    std::set<QString> item_update_needed;
    std::array<std::optional<QString>, most_fetches> get_one_in_process; ///< the name; nothing: free

    bool fetching() const
    {
        return std::any_of(get_one_in_process.begin(), get_one_in_process.end(),
                           [](const auto& name) { return name.has_value(); });
    }
    /// Moves the first name that is needed to the first fetch that is free, and gives its number.
    std::optional<unsigned> begin_fetch()
    {
        const auto free = std::find(get_one_in_process.begin(), get_one_in_process.end(), std::nullopt);
        if (item_update_needed.empty() || free == get_one_in_process.end())
            return {};
        *free = std::move(item_update_needed.extract(item_update_needed.begin()).value());
        return static_cast<unsigned>(free - get_one_in_process.begin());
    }
};

CFModel* CFModel::create(bool localhost, APIQt* api)
{
    CFModel* const model = localhost ? CFModel::localhost() : new CFModel;
    model->config(api);
    return model;
}

CFModel* CFModel::localhost()
{
    CFModel* known = the_localhost;
    if (known)
        return known;
    auto* const fresh = new CFModel;
    if (the_localhost.compare_exchange_strong(known, fresh))
        return fresh;
    delete fresh; // another thread was first
    return known;
}

CFItemModel* CFModel::get_item_localhost(const QString& name)
{
    return localhost()->get_item(name);
}

CFModel::CFModel() : update_timer_(new ATimer(true, this))
{
    connect(update_timer_, &ATimer::timeout, this, &CFModel::update_action);
    for (unsigned number = 0; number != most_fetches; ++number) {
        helpers_[number] = new CFModelGetOneHelper(number, this);
        connect(helpers_[number], &CFModelGetOneHelper::sig_one_configuration_item, this,
                &CFModel::get_one_reply);
        connect(helpers_[number], &CFModelGetOneHelper::sig_error, this, &CFModel::get_one_error);
    }
}

CFModel::~CFModel()
{
    CFModel* self = this;
    the_localhost.compare_exchange_strong(self, nullptr);
    // Those too that have not become children yet. Whoever is told of their end finds none of them here.
    qDeleteAll(std::exchange(data_.lock()->items, {}));
}

void CFModel::config(APIQt* api)
{
    if (api_) {
        assertfail(__FILE__, __LINE__, "api == 0");
        return;
    }
    if (!api || !SKUAN_CHECK(api->thread() == thread()))
        return;
    api_ = api;
    setParent(api);
    connect(api, &APIQt::connected, this, &CFModel::connected);
    connect(api, &APIQt::disconnected, this, &CFModel::disconnected);
    connect(api, &APIQt::report_config_changed, this, &CFModel::config_changed_on_server);
    if (api->is_connected())
        connected();
}

CFItemModel* CFModel::get_item(const QString& name)
{
    const auto d = data_.lock();
    if (CFItemModel* const known = d->items.value(name))
        return known;
    CFItemModel* const item = make_item(name);
    d->items.insert(name, item);
    d->item_update_needed.insert(name);
    update();
    return item;
}

CFItemModel* CFModel::make_item(const QString& name)
{
    const bool here = QThread::currentThread() == thread();
    auto* const item = new CFItemModel(name, here ? this : nullptr);
    connect(item, &CFItemModel::hot_change, this, &CFModel::hot_change);
    const auto item_signal = QOverload<QString>::of(&CFItemModel::changed);
    connect(item, item_signal, this, &CFModel::cache_clear,
            Qt::DirectConnection); // whoever edits may ask then
    connect(item, item_signal, this, &CFModel::item_changed);
    if (!here) { // only this object's own thread can give it a child
        item->moveToThread(thread());
        QMetaObject::invokeMethod(
            item, [this, item] { item->setParent(this); }, Qt::QueuedConnection);
    }
    return item;
}

CFItemModel* CFModel::find(const QString& name) const
{
    return data_.lock()->items.value(name);
}

QHash<QString, CFItemModel*> CFModel::items() const
{
    return data_.lock()->items;
}

bool CFModel::is_fully_scanned() const
{
    const auto d = data_.lock();
    return d->scan == Scan::done && d->item_update_needed.empty();
}

bool CFModel::have_changes() const
{
    return any(&CFItemModel::have_changes, &have_changes_);
}

bool CFModel::need_reboot() const
{
    return any(&CFItemModel::need_reboot, &need_reboot_);
}

bool CFModel::any(bool (CFItemModel::*property)() const, std::atomic<std::uint64_t>* cache) const
{
    const std::uint64_t now = changes_;
    const std::uint64_t known = *cache;
    if (known >> 1 == now)
        return known & 1;
    const auto all = items();
    const bool answer =
        std::any_of(all.begin(), all.end(), [&](CFItemModel* item) { return (item->*property)(); });
    *cache = now << 1 | (answer ? 1 : 0);
    return answer;
}

void CFModel::cache_clear()
{
    ++changes_;
}

bool CFModel::commit_done() const
{
    const auto all = items();
    return std::all_of(all.begin(), all.end(), [](CFItemModel* item) { return item->commit_done(); });
}

void CFModel::commit_changes()
{
    send_changes(Which::all);
}

void CFModel::hot_change()
{
    send_changes(Which::hot);
}

void CFModel::send_changes(Which which)
{
    if (!api_ || !api_->is_connected())
        return;
    std::vector<std::pair<QString, QString>> edits; // first all, as sending may call anything
    for (CFItemModel* const item : items()) {
        if (item->have_changes() && (which == Which::all || item->hot()))
            edits.emplace_back(item->get_name(), item->get());
    }
    for (const auto& [name, value] : edits)
        api_->cmd_set_configuration(name, value);
}

void CFModel::commit(const std::list<QString>& names)
{
    if (!api_)
        return;
    for (const QString& name : names) {
        CFItemModel* const item = find(name);
        if (item && item->have_changes())
            api_->cmd_set_configuration(name, item->get());
    }
}

void CFModel::revert(const std::list<QString>& names)
{
    for (const QString& name : names) {
        if (CFItemModel* const item = find(name))
            item->revert_item();
    }
}

void CFModel::revert_all_items()
{
    for (CFItemModel* const item : items())
        item->revert_item();
}

void CFModel::item_changed()
{
    Q_EMIT changed();
}

// The scan.

void CFModel::connected()
{
    restart_scan();
    api_->cmd_report_register(KVRP3::ReportType_config_change);
}

void CFModel::disconnected()
{
    restart_scan();
}

void CFModel::restart_scan()
{
    data_.lock()->scan = Scan::none;
    update();
}

void CFModel::update()
{
    update_timer_->start();
}

void CFModel::update_action()
{
    if (!api_)
        return;
    if (next_scan_step())
        send_fetches();
}

/// Whether there may be something to fetch now.
bool CFModel::next_scan_step()
{
    {
        const auto d = data_.lock();
        if (!api_->is_connected()) {
            d->scan = Scan::none;
            return false;
        }
        switch (d->scan) {
        case Scan::none:
            if (d->fetching()) // what ends them starts the timer
                return false;
            for (auto item = d->items.cbegin(); item != d->items.cend(); ++item)
                d->item_update_needed.insert(item.key());
            d->scan = Scan::running;
            return true;
        case Scan::running:
            if (!d->item_update_needed.empty() || d->fetching())
                return true;
            d->scan = Scan::done;
            break;
        case Scan::done:
            if (d->item_update_needed.empty())
                return false;
            d->scan = Scan::running;
            return true;
        }
    }
    Q_EMIT fully_scanned();
    return false;
}

void CFModel::send_fetches()
{
    while (api_->is_connected()) {
        std::optional<unsigned> number;
        QString name;
        {
            const auto d = data_.lock();
            number = d->begin_fetch();
            if (!number)
                return;
            name = *d->get_one_in_process[*number];
        }
        api_->cmd_get_one_configuration(name, helpers_[*number]->group());
    }
}

/// False, with a report, for a number that nothing is fetched under.
bool CFModel::end_fetch(unsigned number)
{
    const auto d = data_.lock();
    if (number >= most_fetches) {
        assertfail(__FILE__, __LINE__, "d->get_one_in_process.contains (icb)");
        return false;
    }
    std::optional<QString>& name = d->get_one_in_process[number];
    if (!name) {
        assertfail(__FILE__, __LINE__, "!d->get_one_cb_freelist.contains (icb)");
        return false;
    }
    d->item_update_needed.erase(*name);
    name.reset();
    return true;
}

void CFModel::get_one_reply(unsigned number, const KVRP3::ConfigurationItem& item)
{
    if (!end_fetch(number))
        return;
    configuration_item(item);
    update();
}

void CFModel::get_one_error(unsigned number)
{
    if (end_fetch(number))
        update();
}

void CFModel::config_changed_on_server(const AOption<std::list<KVRP3::ConfigurationItem>>& change)
{
    for (const KVRP3::ConfigurationItem& item : change.value())
        configuration_item(item);
}

void CFModel::configuration_item(const KVRP3::ConfigurationItem& record)
{
    CFItemModel* const item = get_item(record.configuration_item_name);
    item->config(record);
    // Once more, in case that the server has not heard of the edit; also after a record that says nothing
    // new.
    if (item->hot() && item->have_changes())
        hot_change();
}
