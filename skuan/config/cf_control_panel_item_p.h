// One control panel as it is configured.
#pragma once

#include <QObject>
#include <QSet>
#include <QString>

class CFModel;

/// Lives on the model's thread.
class CFControlPanelItem : public QObject
{
    Q_OBJECT

public:
    CFControlPanelItem(CFModel* model, unsigned index, QObject* parent);

    const QString& kbd_id() const { return kbd_id_; }
    const QSet<unsigned>& channels() const { return channels_; }

private Q_SLOTS:
    void kbd_changed(const QString& text);
    void ch_changed(const QString& text);

private:
    QString kbd_id_;
    QSet<unsigned> channels_;
};
