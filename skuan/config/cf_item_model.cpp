// The two layers of an item, and how the upper one dissolves.
#include <skuan/config/cf_item_model.h>

#include <skuan/foundation/assertfail.h>

#include <optional>

struct CFItemModel::Data
{
    std::optional<KVRP3::ConfigurationItem> cf; ///< what the server said last
    // The same as Qt's strings, so that getting one costs no more than a reference.
    QString effective, boot, saved;
    QStringList allowed;

    std::optional<QString> edit;

    bool requires_reboot() const { return cf && cf->configuration_item_requires_reboot; }
    const QString& cf_get() const { return requires_reboot() ? boot : effective; }
    const QString& get() const { return edit ? *edit : cf_get(); }

    /// Dissolves the edit if the server says the same, and gives the flags of what is then so. Behind
    /// each change, so that nothing that only asks has to change anything.
    unsigned fixup_set_value()
    {
        if (edit && *edit == cf_get())
            edit.reset();
        if (!cf)
            return 0;
        const bool restart = requires_reboot();
        const bool done = restart ? get() == saved : !edit;
        return fetched | (edit ? changes : 0u) | (edit && restart ? changes_at_restart : 0u) |
               (done ? committed : 0u);
    }

    void take(const KVRP3::ConfigurationItem& record)
    {
        effective = record.configuration_item_effective_value;
        boot = record.configuration_item_boot_value;
        saved = record.configuration_item_saved_value;
        // Up to 64 texts, which hardly ever change.
        if (!cf || cf->configuration_item_allowed_values != record.configuration_item_allowed_values) {
            allowed.clear();
            for (const AString& value : record.configuration_item_allowed_values)
                allowed += value;
        }
        cf = record;
    }
};

CFItemModel::CFItemModel(QString name, QObject* parent) : QObject(parent), name_(std::move(name)) {}

CFItemModel::~CFItemModel() = default;

QString CFItemModel::get() const
{
    return data_.lock()->get();
}

QStringList CFItemModel::allowed_values() const
{
    return data_.lock()->allowed;
}

bool CFItemModel::is_allowed(const QString& value) const
{
    return data_.lock()->allowed.contains(value);
}

void CFItemModel::config(const KVRP3::ConfigurationItem& cf)
{
    const auto d = data_.lock();
    if (d->cf && *d->cf == cf)
        return;
    if (QString(cf.configuration_item_name) != name_) {
        assertfail(__FILE__, __LINE__, "cf.name == name");
        return;
    }
    d->take(cf);
    signal_change();
}

void CFItemModel::set(const QString& value)
{
    const auto d = data_.lock();
    if (value == d->get())
        return;
    d->edit = value;
    signal_change();
}

void CFItemModel::set(int value)
{
    set(QString::number(value));
}

void CFItemModel::set(unsigned value)
{
    set(QString::number(value));
}

void CFItemModel::revert_item()
{
    const auto d = data_.lock();
    d->edit.reset();
    signal_change();
}

// A slot may edit the item, whose signals then come in the midst of these. Each signal therefore takes the
// value anew, so that whoever listens to any of them hears of the newest value last.
void CFItemModel::signal_change()
{
    const auto d = data_.lock();
    flags_ = d->fixup_set_value();
    Q_EMIT changed(QString(d->get()));
    Q_EMIT changed(name_, QString(d->get()));
    bool number = false;
    if (const unsigned value = d->get().toUInt(&number); number)
        Q_EMIT changed(value);
    if (const int value = d->get().toInt(&number); number)
        Q_EMIT changed(value);
    if (hot() && have_changes())
        Q_EMIT hot_change();
}
