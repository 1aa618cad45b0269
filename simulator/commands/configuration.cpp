// Configuration: asked for as a whole or by name, and changed one by one.
#include <simulator/commands/configuration_p.h>

#include <simulator/call_p.h>
#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr int longest_value = 255; // characters of an item that takes any text

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

Refusal set(Call& call)
{
    return set_configuration(call.state, call.audience, call.text("ConfigurationItemName"),
                             call.text("ConfigurationItemValue"));
}

void tell(Audience& audience, const ConfigurationItem& item)
{
    audience.report("config_changed", {{"ConfigurationChange", {item_tag(item)}}});
}

} // namespace

bool ConfigurationItem::allows(const QString& value) const
{
    return allowed.isEmpty() ? value.size() <= longest_value : allowed.contains(value);
}

void ConfigurationItem::save(const QString& value)
{
    saved = boot = value;
    if (!requires_reboot)
        effective = value;
}

Configuration::Configuration(const Settings& settings) : items_(default_configuration())
{
    ConfigurationItem& name = *find(QStringLiteral("ComputerName"));
    name.save(settings.computer_name);
    name.effective = settings.computer_name;
}

ConfigurationItem* Configuration::find(const QString& name)
{
    const auto at = std::find_if(items_.begin(), items_.end(),
                                 [&](const ConfigurationItem& item) { return item.name == name; });
    return at == items_.end() ? nullptr : &*at;
}

QString Configuration::effective(const char* name) const
{
    const auto at = std::find_if(items_.begin(), items_.end(), [&](const ConfigurationItem& item) {
        return item.name == QLatin1String(name);
    });
    return at == items_.end() ? QString() : at->effective;
}

FieldRate Configuration::field_rate() const
{
    return simulator::field_rate(effective("VideoStandard"));
}

void Configuration::boot()
{
    for (ConfigurationItem& item : items_)
        item.effective = item.boot;
}

Refusal set_configuration(ServerState& state, Audience& audience, const QString& name, const QString& value)
{
    ConfigurationItem* item = state.configuration.find(name);
    if (!item)
        return no_such_item(name);
    if (!item->allows(value))
        return {QStringLiteral("%1 cannot be set to %2").arg(name, quoted(value)), "configvalue_invalid"};
    const ConfigurationItem before = *item;
    item->save(value);
    if (item->saved != before.saved || item->effective != before.effective)
        tell(audience, *item);
    return {};
}

void set_effective(ServerState& state, Audience& audience, const char* name, const QString& value)
{
    ConfigurationItem* item = state.configuration.find(QLatin1String(name));
    if (!item || item->effective == value)
        return;
    item->effective = value;
    tell(audience, *item);
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
