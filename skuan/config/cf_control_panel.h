// Which hardware control panels a server is configured for, and which channels each may drive.
#pragma once

#include <skuan/export.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>

class CFControlPanelItem;
class CFItemModel;
class CFModel;

/// Follows the configuration, edits included. Lives on the model's thread, all of it. Once the model has
/// ended there are no panels.
class SKUAN_EXPORT CFControlPanel : public QObject
{
    Q_OBJECT

public:
    /// A null model is reported; then there are no panels.
    explicit CFControlPanel(CFModel* model, QObject* parent = nullptr);

    bool empty() const { return size() == 0; }
    /// How many panels there may be, 0 to 4; 0 while that is not known.
    unsigned size() const;
    /// Panel `index`, from 0 to `size()` - 1, has a keyboard and at least one channel.
    bool exists(unsigned index) const;
    /// Empty if it does not exist.
    QString get_kbd_id(unsigned index) const;
    /// Channel A is 0. Empty if the panel does not exist.
    QSet<unsigned> get_channels(unsigned index) const;

Q_SIGNALS:
    void count_changed(); ///< `size` may have become another; of keyboards and channels nothing is told

private:
    QList<CFControlPanelItem*> items_; ///< children
    QPointer<CFItemModel> count_;
};
