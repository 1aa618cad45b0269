// The machine changes: temperature, alerts, disks, melts. No client can do that, but whoever runs the server.
#include <simulator/commands/machine_p.h>

#include <simulator/call_p.h>
#include <simulator/server_state_p.h>

namespace simulator {

namespace {

constexpr quint32 warm = 500, hot = 600; // tenths of a degree Celsius

std::vector<Element> alert_fields(const char* priority, const QString& level, const QString& name,
                                  const QString& description, const QString& value)
{
    return {{"AlertingPriority", priority},
            {"AlertingLevel", level},
            {"AlertName", name},
            {"AlertNameDescription", description},
            {"AlertValueDescription", value}};
}

QString degrees(quint32 tenths)
{
    return QStringLiteral("%1 °C").arg(tenths / 10.0);
}

} // namespace

// Everything is fine, and somebody has left a melt of the first clips.
Machine::Machine(const ClipStore& clips)
{
    const struct
    {
        const char *name, *priority, *description;
        QString value;
    } rows[] = {
        {"Temperature", "malfunction", "Temperature of the main board", degrees(temperature)},
        {"Fans", "malfunction", "Fans", QStringLiteral("all turn")},
        {"PowerSupply", "malfunction", "Power supplies", QStringLiteral("both deliver")},
        {"Disks", "harmful", "Disks of the array", QStringLiteral("all work")},
        {"Reference", "malfunction", "Reference input", QStringLiteral("locked")},
    };
    for (const auto& row : rows)
        alerts[row.name] =
            alert_fields(row.priority, QStringLiteral("ok"), row.name, row.description, row.value);

    constexpr quint32 client = 1;
    Melts& made = melts[client];
    made.flags = {
        "MeltFlags",
        {{"MeltClientID", decimal(client)}, Element(QStringLiteral("MeltFlagInhibitPortNumbering"))}};
    for (const QString& clip : clips.clips(2)) {
        const quint64 number = made.items.size() + 1;
        made.items.push_back({"MeltItem",
                              {{"MeltClientID", decimal(client)},
                               {"MeltListID", decimal(1)},
                               {"MeltElementID", decimal(number)},
                               {"ClipID", clip},
                               {"MeltInPoint", decimal(0)},
                               {"MeltOutPoint", decimal(clips.clip(clip)->played_length())},
                               {"MeltLabel", QStringLiteral("M%1").arg(number)}}});
    }
}

void set_temperature(ServerState& state, Audience& audience, quint32 tenths)
{
    state.machine.temperature = tenths;
    audience.report("temperature", {{"Temperature10", decimal(tenths)}});
    set_alert(state, audience, QStringLiteral("Temperature"),
              QLatin1String(tenths >= hot    ? "error"
                            : tenths >= warm ? "warning"
                                             : "ok"),
              degrees(tenths));
}

// One that is new describes itself by its name.
void set_alert(ServerState& state, Audience& audience, const QString& name, const QString& level,
               const QString& text)
{
    std::vector<Element>& alert = state.machine.alerts[name];
    std::vector<Element> now = alert.empty() ? alert_fields("malfunction", level, name, name, text) : alert;
    now[1].text = level;
    now[4].text = text;
    if (now == alert)
        return;
    alert = std::move(now);
    audience.report("alert", {{"Alert", alert}});
}

void follow_reference(ServerState& state, Audience& audience)
{
    const QString wanted = state.configuration.find(QStringLiteral("ReferenceSource"))->saved;
    set_effective(state, audience, "ReferenceSource",
                  state.machine.has_reference ? wanted : QStringLiteral("freerun"));
}

void set_reference(ServerState& state, Audience& audience, bool is_there)
{
    state.machine.has_reference = is_there;
    follow_reference(state, audience);
    set_alert(state, audience, QStringLiteral("Reference"),
              is_there ? QStringLiteral("ok") : QStringLiteral("error"),
              is_there ? QStringLiteral("locked") : QStringLiteral("no signal"));
}

void set_disk_size(ServerState& state, Audience& audience, quint64 bytes)
{
    state.machine.disk_size = bytes;
    state.told_disk_space = available_space(state);
    audience.report("disk_space_changed", {disk_space(state)});
}

void add_melt(ServerState& state, Audience& audience, quint32 client, const Element& item)
{
    Melts& melts = state.machine.melts[client];
    if (melts.flags.tag.isEmpty())
        melts.flags = {"MeltFlags", {{"MeltClientID", decimal(client)}}};
    melts.items.push_back(item);
    audience.report("melt_available", {{"MeltClientID", decimal(client)}});
}

void clear_melts(ServerState& state, Audience& audience, quint32 client)
{
    if (state.machine.melts.erase(client) != 0)
        audience.report("melt_available", {{"MeltClientID", decimal(client)}});
}

} // namespace simulator
