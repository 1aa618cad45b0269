// Configuration: asked for as a whole or by name, and changed one by one.
#include <simulator/commands/configuration_p.h>

#include <simulator/call_p.h>
#include <simulator/catalogue_p.h>
#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr int longest_value = 255; // characters of an item that takes any text

QStringList counts(std::initializer_list<int> numbers)
{
    QStringList texts;
    for (const int number : numbers)
        texts.append(QString::number(number));
    return texts;
}

QStringList names_of(const char* enumeration)
{
    return *Catalogue::get().tag(QLatin1String(enumeration))->names;
}

Element item_tag(const ConfigurationItem& item)
{
    std::vector<Element> allowed;
    for (const QString& value : item.allowed)
        allowed.push_back({"ConfigurationItemValue", value});
    std::vector<Element> fields = {{"ConfigurationItemName", item.name},
                                   {"ConfigurationItemAccess", item.access},
                                   {"ConfigurationItemEffectiveValue", item.effective},
                                   {"ConfigurationItemBootValue", item.boot},
                                   {"ConfigurationItemSavedValue", item.saved},
                                   {"ConfigurationItemAllowedValues", allowed}};
    if (item.requires_reboot)
        fields.push_back(Element("ConfigurationItemRequiresReboot"));
    return {"ConfigurationItem", fields};
}

Refusal no_such_item(const QString& name)
{
    return {QStringLiteral("no such configuration item %1").arg(quoted(name)), "configname_invalid"};
}

Refusal get_all(Call& call)
{
    for (const ConfigurationItem& item : call.state.configuration.items())
        call.reply("configuration_item", {item_tag(item)});
    return {};
}

Refusal get_one(Call& call)
{
    const ConfigurationItem* item = call.state.configuration.find(call.text("ConfigurationItemName"));
    if (!item)
        return no_such_item(call.text("ConfigurationItemName"));
    call.reply("one_configuration_item", {item_tag(*item)});
    return {};
}

// An item that requires a reboot keeps the value that the server works with: it never reboots.
Refusal set(Call& call)
{
    ConfigurationItem* item = call.state.configuration.find(call.text("ConfigurationItemName"));
    if (!item)
        return no_such_item(call.text("ConfigurationItemName"));
    const QString value = call.text("ConfigurationItemValue");
    if (item->allowed.isEmpty() ? value.size() > longest_value : !item->allowed.contains(value))
        return {QStringLiteral("%1 cannot be set to %2").arg(item->name, quoted(value)),
                "configvalue_invalid"};
    if (item->saved == value)
        return {};
    item->saved = value;
    if (!item->requires_reboot)
        item->effective = value;
    call.report("config_changed", {{"ConfigurationChange", {item_tag(*item)}}});
    return {};
}

} // namespace

Configuration::Configuration(const Settings& settings)
{
    const auto add = [this](const char* name, const char* access, const QString& value,
                            const QStringList& allowed, bool requires_reboot) {
        items_.push_back(
            {QLatin1String(name), QLatin1String(access), value, value, value, allowed, requires_reboot});
    };
    add("ComputerName", "eng", settings.computer_name, {}, true);
    add("VideoStandard", "eng", QStringLiteral("1080_50i"), names_of("VideoStandard"), true);
    add("ReferenceSource", "user", QStringLiteral("refin"), names_of("ReferenceSource"), false);
    add("AudioTrackCount", "eng", QStringLiteral("8"), counts({2, 4, 8, 16}), true);
    add("ControlPanelCount", "user", QStringLiteral("2"), counts({0, 1, 2, 3, 4}), false);
    add("StationName", "user", QStringLiteral("Studio"), {}, false);
}

ConfigurationItem* Configuration::find(const QString& name)
{
    const auto at = std::find_if(items_.begin(), items_.end(),
                                 [&](const ConfigurationItem& item) { return item.name == name; });
    return at == items_.end() ? nullptr : &*at;
}

QString Configuration::effective(const char* name)
{
    const ConfigurationItem* item = find(QLatin1String(name));
    return item ? item->effective : QString();
}

CommandRows configuration_commands()
{
    return {
        {"get_configuration", get_all},
        {"get_one_configuration", get_one},
        {"set_configuration", set},
    };
}

} // namespace simulator
