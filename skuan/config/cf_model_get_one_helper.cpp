// Answers go out as they come in, with the number in front.
#include <skuan/config/cf_model_get_one_helper_p.h>

using KVRP3::CallbackGroup_set11;

CFModelGetOneHelper::CFModelGetOneHelper(unsigned number, QObject* parent) : QObject(parent), number_(number)
{
    connect(&group_, &CallbackGroup_set11::sig_one_configuration_item, this,
            &CFModelGetOneHelper::slot_one_configuration_item);
    connect(&group_, &CallbackGroup_set11::sig_error, this, &CFModelGetOneHelper::slot_error);
}

void CFModelGetOneHelper::slot_one_configuration_item(const KVRP3::ConfigurationItem& item)
{
    Q_EMIT sig_one_configuration_item(number_, item);
}

void CFModelGetOneHelper::slot_error(const KVRP3::ErrorMessage& message, KVRP3::ErrorCode code)
{
    Q_EMIT sig_error(number_, message, code);
}
