// The count, and what it lets through of the four panels.
#include <skuan/config/cf_control_panel.h>

#include <skuan/config/cf_control_panel_item_p.h>
#include <skuan/config/cf_model.h>
#include <skuan/foundation/assertfail.h>

#include <algorithm>

static constexpr unsigned most_panels = 4;

CFControlPanel::CFControlPanel(CFModel* model, QObject* parent) : QObject(parent)
{
    if (!SKUAN_CHECK(model))
        return;
    count_ = model->get_item(QStringLiteral("ControlPanelCount"));
    for (unsigned index = 0; index != most_panels; ++index)
        items_ += new CFControlPanelItem(model, index, this);
    connect(count_, QOverload<QString>::of(&CFItemModel::changed), this, &CFControlPanel::count_changed);
}

unsigned CFControlPanel::size() const
{
    return count_ && count_->have_cf() ? std::min(count_->get().toUInt(), most_panels) : 0;
}

bool CFControlPanel::exists(unsigned index) const
{
    if (index >= size())
        return false;
    const CFControlPanelItem* const item = items_[static_cast<int>(index)];
    return !item->kbd_id().isEmpty() && !item->channels().isEmpty();
}

QString CFControlPanel::get_kbd_id(unsigned index) const
{
    return exists(index) ? items_[static_cast<int>(index)]->kbd_id() : QString();
}

QSet<unsigned> CFControlPanel::get_channels(unsigned index) const
{
    return exists(index) ? items_[static_cast<int>(index)]->channels() : QSet<unsigned>();
}
