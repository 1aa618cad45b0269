// One of the few fetches that a mirror has in flight: an answer does not say what it was asked, so each
// fetch has answers of its own, which this numbers.
#pragma once

#include <skuan/protocol/kvrp3_callback_groups.h>

#include <QObject>

/// Lives on its model's thread.
class CFModelGetOneHelper : public QObject
{
    Q_OBJECT

public:
    CFModelGetOneHelper(unsigned number, QObject* parent);

    const KVRP3::CallbackGroup_set11& group() const { return group_; }

Q_SIGNALS:
    void sig_one_configuration_item(unsigned number, KVRP3::ConfigurationItem item);
    void sig_error(unsigned number, KVRP3::ErrorMessage message, KVRP3::ErrorCode code);

private Q_SLOTS:
    void slot_one_configuration_item(const KVRP3::ConfigurationItem& item);
    void slot_error(const KVRP3::ErrorMessage& message, KVRP3::ErrorCode code);

private:
    const unsigned number_;
    KVRP3::CallbackGroup_set11 group_;
};
