// Four words, and no other.
#include <skuan/monitors/tally_model.h>

#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>
#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/enum_string.h>

#include <iterator>
#include <utility>

namespace {

const EnumString& tally_names()
{
    static constexpr EnumString::ByLatin1 rows[] = {
        {TallyModel::tally_offline, "offline"},
        {TallyModel::tally_yellow, "yellow"},
        {TallyModel::tally_red, "red"},
        {TallyModel::tally_green, "green"},
    };
    static const EnumString table(rows, std::size(rows));
    return table;
}

} // namespace

TallyModel::TallyModel(USModel* dictionary, unsigned channel, QObject* parent) : QObject(parent)
{
    if (!SKUAN_CHECK(dictionary))
        return;
    item_ = dictionary->get_item(QStringLiteral("Tally%1").arg(channel));
    connect(item_, &USItemModel::changed, this, &TallyModel::update);
    update();
}

void TallyModel::update()
{
    const auto state = static_cast<TallyState>(tally_names().to_enumval(AString(item_->get())));
    if (std::exchange(state_, state) != state)
        Q_EMIT changed();
}
