// Two items of the configuration, read as a keyboard and a set of channels.
#include <skuan/config/cf_control_panel_item_p.h>

#include <skuan/config/cf_model.h>

CFControlPanelItem::CFControlPanelItem(CFModel* model, unsigned index, QObject* parent) : QObject(parent)
{
    const auto follow = [&](const QString& name, void (CFControlPanelItem::*slot)(const QString&)) {
        CFItemModel* const item = model->get_item(name.arg(index));
        connect(item, QOverload<QString>::of(&CFItemModel::changed), this, slot);
        if (item->have_cf())
            (this->*slot)(item->get());
    };
    follow(QStringLiteral("ControlPanel_ID%1"), &CFControlPanelItem::kbd_changed);
    follow(QStringLiteral("ControlPanel_Channels%1"), &CFControlPanelItem::ch_changed);
}

void CFControlPanelItem::kbd_changed(const QString& text)
{
    kbd_id_ = text;
}

void CFControlPanelItem::ch_changed(const QString& text)
{
    channels_.clear();
    for (const QChar letter : text) {
        if (letter >= QLatin1Char('A') && letter <= QLatin1Char('Z'))
            channels_.insert(letter.unicode() - unsigned{'A'});
    }
}
