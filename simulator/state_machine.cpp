// What a server is, as entries of a state file: its configuration, its machine, and how it starts.
#include <simulator/state_forms_p.h>

#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

Layout record(const char* name)
{
    return *tag(name)->record;
}

// Configuration.

Refusal take_item(ServerState& state, const Element& entry)
{
    const QString name = text(entry, "ConfigurationItemName"), value = text(entry, "ConfigurationItemValue");
    ConfigurationItem* item = state.configuration.find(name);
    if (!item)
        return refuse(QStringLiteral("no such configuration item %1").arg(quoted(name)));
    if (!item->allows(value))
        return refuse(QStringLiteral("%1 cannot be set to %2").arg(name, quoted(value)));
    item->save(value);
    item->effective = value;
    return {};
}

// What nobody has changed is not the state's.
void give_items(const ServerState& state, const Put& put)
{
    const Configuration fresh(state.settings);
    const auto& items = state.configuration.items();
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i].saved != fresh.items()[i].saved)
            put({{"ConfigurationItemName", items[i].name}, {"ConfigurationItemValue", items[i].saved}});
}

// The machine.

Refusal take_temperature(ServerState& state, const Element& entry)
{
    state.machine.temperature = *number(entry, "Temperature10");
    return {};
}

void give_temperature(const ServerState& state, const Put& put)
{
    put({{"Temperature10", decimal(state.machine.temperature)}});
}

Refusal take_disk(ServerState& state, const Element& entry)
{
    state.machine.disk_size = text(entry, "TotalDiskSpace").toULongLong();
    return {};
}

void give_disk(const ServerState& state, const Put& put)
{
    put({{"TotalDiskSpace", decimal(state.machine.disk_size)}});
}

// The last stamp, which may have been that of a clip that is gone: none is given twice.
Refusal take_stamp(ServerState& state, const Element& entry)
{
    state.last_stamp = std::max(state.last_stamp, text(entry, "ContentEditStamp").toULongLong());
    return {};
}

void give_stamp(const ServerState& state, const Put& put)
{
    put({{"ContentEditStamp", decimal(state.last_stamp)}});
}

// The fields of a record come in the order in which the server keeps them.
Refusal take_alert(ServerState& state, const Element& entry)
{
    const QString name = text(entry, "AlertName");
    if (name.isEmpty())
        return no_name("an alert");
    return state.machine.alerts.emplace(name, entry.children).second ? Refusal() : twice(name);
}

void give_alerts(const ServerState& state, const Put& put)
{
    for (const auto& [name, alert] : state.machine.alerts)
        put(alert);
}

Melts& melts_of(ServerState& state, const Element& entry)
{
    const QString client = text(entry, "MeltClientID");
    Melts& melts = state.machine.melts[client.toUInt()];
    if (melts.flags.tag.isEmpty())
        melts.flags = {"MeltFlags", {{"MeltClientID", client}}};
    return melts;
}

Refusal take_melt_flags(ServerState& state, const Element& entry)
{
    melts_of(state, entry).flags = entry;
    return {};
}

void give_melt_flags(const ServerState& state, const Put& put)
{
    for (const auto& [client, melts] : state.machine.melts)
        put(melts.flags.children);
}

Refusal take_melt_item(ServerState& state, const Element& entry)
{
    melts_of(state, entry).items.push_back(entry);
    return {};
}

void give_melt_items(const ServerState& state, const Put& put)
{
    for (const auto& [client, melts] : state.machine.melts)
        for (const Element& item : melts.items)
            put(item.children);
}

Refusal take_step(ServerState& state, const Element& entry)
{
    state.start_script.push_back(
        {text(entry, "step"), text(entry, "step_desc"), text(entry, "fields").toULongLong()});
    return {};
}

void give_steps(const ServerState& state, const Put& put)
{
    for (const StartStep& step : state.start_script)
        put({{"step", step.name}, {"step_desc", step.description}, {"fields", decimal(step.fields)}});
}

} // namespace

const std::vector<StateGroup>& machine_groups()
{
    static const std::vector<StateGroup> groups = {
        {"configuration", {{"item", command("set_configuration"), take_item, give_items}}},
        {"machine",
         {{"stamp", {QStringLiteral("stamp"), {required("ContentEditStamp")}}, take_stamp, give_stamp},
          {"temperature",
           {QStringLiteral("temperature"), {required("Temperature10")}},
           take_temperature,
           give_temperature},
          {"disk", {QStringLiteral("disk"), {required("TotalDiskSpace")}}, take_disk, give_disk}}},
        {"alerts",
         {{"Alert", record("Alert"), take_alert, give_alerts}},
         [](ServerState& state) { state.machine.alerts.clear(); }},
        {"melts",
         {{"MeltFlags", record("MeltFlags"), take_melt_flags, give_melt_flags},
          {"MeltItem", record("MeltItem"), take_melt_item, give_melt_items}},
         [](ServerState& state) { state.machine.melts.clear(); }},
        {"start",
         {{"step",
           {QStringLiteral("step"),
            {{&own_tag("step", Kind::String), false},
             {&own_tag("step_desc", Kind::String), false},
             {&own_tag("fields", Kind::U64), false}}},
           take_step,
           give_steps}},
         [](ServerState& state) { state.start_script.clear(); }},
    };
    return groups;
}

} // namespace simulator
