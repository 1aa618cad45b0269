// An item's two layers, and what it tells of them in what order.
#include <skuan/config/cf_item_model.h>

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

namespace {

KVRP3::ConfigurationItem record(const char* effective, const char* boot, const char* saved, bool reboot)
{
    KVRP3::ConfigurationItem result;
    result.configuration_item_name = AString::l1("X");
    result.configuration_item_effective_value = AString::l1(effective);
    result.configuration_item_boot_value = AString::l1(boot);
    result.configuration_item_saved_value = AString::l1(saved);
    result.configuration_item_allowed_values.vec[result.configuration_item_allowed_values.count++] =
        AString::l1(saved);
    result.configuration_item_requires_reboot = reboot;
    return result;
}

/// What it was and what it tells: f(etched) c(hanged) r(eboot) d(one), then the value.
std::string state(const CFItemModel& item)
{
    std::string flags;
    const std::pair<bool, char> all[] = {{item.have_cf(), 'f'},
                                         {item.have_changes(), 'c'},
                                         {item.need_reboot(), 'r'},
                                         {item.commit_done(), 'd'}};
    for (const auto& [holds, letter] : all)
        flags += holds ? std::string(1, letter) : "";
    return flags + '=' + item.get().toStdString();
}

TEST(CFItemModel, covers_the_servers_value_until_the_server_says_the_same)
{
    CFItemModel item("X");
    std::string told;
    const auto tell = [&](const std::string& what) { told += what + ' '; };
    QObject::connect(&item, QOverload<QString>::of(&CFItemModel::changed),
                     [&](const QString& value) { tell("t:" + value.toStdString()); });
    QObject::connect(
        &item, QOverload<QString, QString>::of(&CFItemModel::changed),
        [&](const QString& name, const QString& value) { tell((name + ':' + value).toStdString()); });
    QObject::connect(&item, QOverload<unsigned>::of(&CFItemModel::changed),
                     [&](unsigned value) { tell("u:" + std::to_string(value)); });
    QObject::connect(&item, QOverload<int>::of(&CFItemModel::changed),
                     [&](int value) { tell("i:" + std::to_string(value)); });
    QObject::connect(&item, &CFItemModel::hot_change, [&] { tell("hot"); });

    auto other = record("9", "9", "9", false);
    other.configuration_item_name = AString::l1("Y");
    const std::function<void()> nothing;
    const std::tuple<std::function<void()>, const char*, const char*> rows[] = {
        {[&] { item.set(""); }, "", "="},
        {[&] { item.set("1"); }, "t:1 X:1 u:1 i:1 ", "=1"}, // no changes: of what, is not known
        {[&] { item.config(other); }, "", "=1"},
        {[&] { item.config(record("1", "7", "7", false)); }, "t:1 X:1 u:1 i:1 ", "fd=1"}, // dissolved
        {[&] { item.config(record("1", "7", "7", false)); }, "", "fd=1"},
        {[&] { item.set(1); }, "", "fd=1"},
        {[&] { item.set(-2); }, "t:-2 X:-2 i:-2 ", "fc=-2"},
        {[&] { item.set(4000000000u); }, "t:4000000000 X:4000000000 u:4000000000 ", "fc=4000000000"},
        {[&] { item.config(record("3", "7", "7", false)); }, "t:4000000000 X:4000000000 u:4000000000 ",
         "fc=4000000000"},
        {[&] { item.revert_item(); }, "t:3 X:3 u:3 i:3 ", "fd=3"},
        {[&] { item.setHot(true); }, "", "fd=3"},
        {[&] { item.set("on"); }, "t:on X:on hot ", "fc=on"},
        {[&] { item.set("3"); }, "t:3 X:3 u:3 i:3 ", "fd=3"}, // back again: nothing to send
        // At the next start: from now on the boot value counts, and done is what has been saved.
        {[&] { item.config(record("3", "3", "7", true)); }, "t:3 X:3 u:3 i:3 ", "f=3"},
        {[&] { item.set("off"); }, "t:off X:off hot ", "fcr=off"},
        {[&] { item.config(record("3", "off", "off", true)); }, "t:off X:off ", "fd=off"},
    };
    for (const auto& [act, tells, becomes] : rows) {
        SCOPED_TRACE(std::string(tells) + "and becomes " + becomes);
        told.clear();
        act();
        EXPECT_EQ(told, tells);
        EXPECT_EQ(state(item), becomes);
    }
    EXPECT_TRUE(item.is_allowed("off") && !item.is_allowed("OFF") &&
                item.allowed_values() == QStringList{"off"});
}

TEST(CFItemModel, tells_the_newest_value_last_when_a_slot_edits_it)
{
    CFItemModel item("X");
    QObject::connect(&item, QOverload<QString>::of(&CFItemModel::changed), [&] { item.set("final"); });
    QString last;
    QObject::connect(&item, QOverload<QString, QString>::of(&CFItemModel::changed),
                     [&](const QString&, const QString& value) { last = value; });
    item.set("first");
    EXPECT_EQ(last, "final");
}

} // namespace
