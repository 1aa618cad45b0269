// The words of the control language, a row for each.
#include <simulator/control_p.h>

#include <simulator/catalogue_p.h>
#include <simulator/control_line_p.h>
#include <simulator/fault_options_p.h>
#include <simulator/reading_p.h>
#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

using Answer = ControlAnswer;

constexpr quint64 most_fields = 1'000'000; // of a step: nothing else happens meanwhile
constexpr std::size_t most_steps = 1000;   // of a start
constexpr std::size_t most_items = 10'000; // melts and alerts of a tester, who forgets them

struct Word
{
    const char* name;
    const char* arguments; // how they are written; in brackets what may be left out
    const char* help;
    Answer (*run)(const ControlContext&, ControlLine& line);
};

Answer done()
{
    return {};
}
Answer told(const QStringList& lines)
{
    return {lines.join(QLatin1Char('\n')), {}};
}
Answer refused(const QString& why)
{
    return {{}, why};
}
Answer answer_of(const Refusal& refusal)
{
    return refused(refusal.text);
}

// What is not written as the word's row has it.
Answer misread()
{
    return refused(QStringLiteral("?"));
}

Answer clients(const ControlContext& context, ControlLine&)
{
    return told(context.clients());
}

Answer registrations(const ControlContext& context, ControlLine&)
{
    return told(context.registrations());
}

Answer counters(const ControlContext& context, ControlLine&)
{
    const Counters now = context.server.counters();
    const std::pair<const char*, quint64> rows[] = {
        {"accepted", now.accepted},       {"connected", now.connected}, {"overrun", now.overrun},
        {"malformed", now.malformed},     {"messages", now.messages},   {"answers", now.answers},
        {"received", now.bytes_received}, {"sent", now.bytes_sent},
    };
    QStringList lines;
    for (const auto& [name, count] : rows)
        lines += QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(count);
    return told(lines);
}

Answer drop(const ControlContext& context, ControlLine& line)
{
    if (line.is_at_end()) {
        context.server.drop_clients();
        return done();
    }
    const auto client = line.number();
    if (!client)
        return misread();
    context.server.drop_client(*client);
    return done();
}

// Faults.

// One that has no value is on or off.
Answer change(Faults& faults, const FaultOption& option, const QString& value)
{
    if (value == QLatin1String("off"))
        option.reset(faults);
    else if (!option.value && value != QLatin1String("on"))
        return refused(QStringLiteral("%1 is on or off").arg(QLatin1String(option.name)));
    else if (!option.take(value, faults))
        return refused(QStringLiteral("%1 is no value of %2").arg(quoted(value), QLatin1String(option.name)));
    return done();
}

const FaultOption* fault_option(const QString& name)
{
    const auto& options = fault_options();
    const auto at = std::find_if(options.begin(), options.end(), [&](const FaultOption& option) {
        return name == QLatin1String(option.name);
    });
    return at == options.end() ? nullptr : &*at;
}

Answer faults(const ControlContext& context, ControlLine& line)
{
    if (line.rest() == QLatin1String("off")) {
        context.server.set_faults({});
        return done();
    }
    QStringList lines;
    for (const FaultOption& option : fault_options()) {
        const QString value = option.show(context.server.faults());
        if (!value.isEmpty())
            lines += QStringLiteral("%1 %2").arg(QLatin1String(option.name), value);
    }
    return told(lines);
}

Answer client_fault(const ControlContext& context, ControlLine& line)
{
    const auto client = line.number();
    const FaultOption* option = fault_option(line.word());
    if (!client || !option || line.is_at_end())
        return misread();
    Faults faults = context.faults_of(*client);
    const Answer answer = change(faults, *option, line.rest());
    if (answer.error.isEmpty())
        context.server.set_client_faults(*client, faults);
    return answer;
}

// Messages.

Answer report(const ControlContext& context, ControlLine& line)
{
    const QString name = line.word();
    auto fields = line.elements();
    if (!fields)
        return misread();
    QString error;
    context.server.send_report(name, std::move(*fields), &error);
    return refused(error);
}

Answer raw(const ControlContext& context, ControlLine& line)
{
    context.server.send_raw(line.rest().toUtf8());
    return done();
}

// Time and starts.

Answer step(const ControlContext& context, ControlLine& line)
{
    const auto fields = line.is_at_end() ? 1 : line.number();
    if (!fields || *fields > most_fields)
        return misread();
    context.server.step(*fields);
    return done();
}

Answer restart(const ControlContext& context, ControlLine&)
{
    context.server.restart();
    return done();
}

Answer start(const ControlContext& context, ControlLine& line)
{
    std::vector<StartStep>& script = context.state.start_script;
    if (line.is_at_end()) {
        QStringList lines;
        for (const StartStep& step : script)
            lines += QStringLiteral("%1 %2 %3").arg(step.name).arg(step.fields).arg(step.description);
        return told(lines);
    }
    const QString name = line.word();
    if (name == QLatin1String("none") && line.is_at_end()) {
        script.clear();
        return done();
    }
    const auto fields = line.number();
    if (!fields || script.size() >= most_steps)
        return misread();
    script.push_back({name, line.rest(), *fields});
    return done();
}

Answer save(const ControlContext& context, ControlLine&)
{
    QString error;
    context.server.save(&error);
    return refused(error);
}

Answer state(const ControlContext& context, ControlLine&)
{
    return {QString::fromUtf8(context.server.state()).trimmed(), {}};
}

// The machine.

Answer temperature(const ControlContext& context, ControlLine& line)
{
    const auto tenths = line.number();
    if (!tenths || *tenths > 2000)
        return misread();
    set_temperature(context.state, context.audience, static_cast<quint32>(*tenths));
    return done();
}

Answer alert(const ControlContext& context, ControlLine& line)
{
    const auto& alerts = context.state.machine.alerts;
    if (line.is_at_end()) {
        QStringList lines;
        for (const auto& [name, fields] : alerts)
            lines += QStringLiteral("'%1' %2 %3").arg(name, fields[1].text, fields[4].text);
        return told(lines);
    }
    const QString name = line.word(), level = line.word();
    if (name.isEmpty() || Catalogue::get().value("AlertingLevel", level) < 0 || alerts.size() >= most_items)
        return misread();
    set_alert(context.state, context.audience, name, level, line.rest());
    return done();
}

Answer ltc(const ControlContext& context, ControlLine& line)
{
    const QString word = line.word();
    if (word == QLatin1String("on") || word == QLatin1String("off")) {
        context.state.machine.ltc.is_present = word == QLatin1String("on");
    } else if (const auto field = to_fields(word, context.state)) {
        context.state.machine.ltc.is_present = true;
        set_ltc_field(context.state, *field);
    } else if (is_timecode(word)) {
        return refused(QStringLiteral("%1 has no timecode %2")
                           .arg(context.state.configuration.effective("VideoStandard"), word));
    } else {
        return misread();
    }
    context.audience.report("ltc_timecode", {{"Timecode", input_timecode(context.state)}});
    for (const Deck deck : all_decks(context.state, context.audience))
        tell_changes(deck); // some may show their input
    return done();
}

// The disks become larger or smaller, as what they hold stays.
Answer disk(const ControlContext& context, ControlLine& line)
{
    const auto free = line.number();
    if (!free || *free > std::numeric_limits<quint64>::max() / 2)
        return misread();
    set_disk_size(context.state, context.audience, context.state.clips.field_count() * field_size + *free);
    return done();
}

Answer melt(const ControlContext& context, ControlLine& line)
{
    const auto client = line.number();
    if (!client || *client > std::numeric_limits<quint32>::max())
        return misread();
    const auto number = static_cast<quint32>(*client);
    if (line.is_at_end()) {
        clear_melts(context.state, context.audience, number);
        return done();
    }
    auto fields = line.elements();
    if (!fields)
        return misread();
    Element item(QStringLiteral("MeltItem"), std::move(*fields));
    item.set({"MeltClientID", decimal(number)});
    const Objection objection = read(*Catalogue::get().tag(item.tag)->record, item);
    if (!objection.text.isEmpty())
        return refused(objection.text);
    const auto& melts = context.state.machine.melts;
    const auto present = melts.find(number);
    if (melts.size() >= most_items || (present != melts.end() && present->second.items.size() >= most_items))
        return answer_of(no_room());
    add_melt(context.state, context.audience, number, item);
    return done();
}

Answer reference(const ControlContext& context, ControlLine& line)
{
    const QString word = line.word();
    if (word != QLatin1String("lost") && word != QLatin1String("found"))
        return misread();
    set_reference(context.state, context.audience, word == QLatin1String("found"));
    return done();
}

Answer config(const ControlContext& context, ControlLine& line)
{
    const QString name = line.word();
    if (!line.is_at_end())
        return answer_of(set_configuration(context.state, context.audience, name, line.word()));
    QStringList lines;
    for (const ConfigurationItem& item : context.state.configuration.items())
        if (name.isEmpty() || name == item.name)
            lines += item.effective == item.saved
                         ? QStringLiteral("%1 '%2'").arg(item.name, item.saved)
                         : QStringLiteral("%1 '%2', now '%3'").arg(item.name, item.saved, item.effective);
    return lines.isEmpty() ? misread() : told(lines);
}

Answer exports(const ControlContext& context, ControlLine&)
{
    const auto& lines = context.state.exports;
    return told(QStringList(lines.begin(), lines.end()));
}

Answer help(const ControlContext&, ControlLine&);

constexpr Word words[] = {
    {"help", "", "this text", help},
    {"clients", "", "the number and address of each client", clients},
    {"registrations", "", "the reports that each client gets, of the machine and of each channel",
     registrations},
    {"counters", "", "what the server has done since it was started", counters},
    {"drop", "[CLIENT]", "end all connections, or one", drop},
    {"faults", "[off]", "the faults that are on, or all of them off", faults},
    {"client", "CLIENT FAULT VALUE|off", "a fault of one client, from now on", client_fault},
    {"report", "NAME [TAG=TEXT..] [TAG(TAG=TEXT..)..]", "send a report to every client", report},
    {"raw", "TEXT", "send bytes to every client, with nothing added", raw},
    {"step", "[FIELDS]", "let fields pass; 1 by default", step},
    {"start", "[none | NAME FIELDS DESCRIPTION]",
     "the script of the next start, without it, or one more step", start},
    {"restart", "", "end all connections, and start again by the script", restart},
    {"save", "", "write the state file", save},
    {"state", "", "what a state file would hold", state},
    {"exports", "", "what was exported last", exports},
    {"config", "[NAME [VALUE]]", "items of the configuration, or a new value", config},
    {"temperature", "TENTHS", "the temperature, in tenths of a degree Celsius", temperature},
    {"alert", "[NAME na|ok|warning|error TEXT]", "all alerts, or a change of one", alert},
    {"ltc", "on|off|HH:MM:SS:FF", "the timecode at the LTC input", ltc},
    {"disk", "BYTES", "the room that is free on the disks", disk},
    {"melt", "CLIENT [TAG=TEXT..]", "one more melt item, or without it none any more", melt},
    {"reference", "lost|found", "the signal that the server is locked to", reference},
};

QString usage(const char* name, const char* arguments)
{
    return QStringLiteral("%1 %2").arg(QLatin1String(name), QLatin1String(arguments)).trimmed();
}

Answer help(const ControlContext&, ControlLine&)
{
    QStringList lines;
    const auto add = [&](const QString& usage, const char* text) {
        lines += QStringLiteral("%1  %2").arg(usage, -44).arg(QLatin1String(text));
    };
    for (const Word& word : words)
        add(usage(word.name, word.arguments), word.help);
    for (const FaultOption& option : fault_options())
        add(QStringLiteral("%1 %2|off")
                .arg(QLatin1String(option.name), QLatin1String(option.value ? option.value : "on")),
            option.help);
    return told(lines);
}

} // namespace

ControlAnswer run_control(const ControlContext& context, const QString& text)
{
    ControlLine line(text);
    const QString name = line.word();
    for (const Word& word : words) {
        if (name != QLatin1String(word.name))
            continue;
        const bool is_too_much = *word.arguments == '\0' && !line.is_at_end();
        Answer answer = is_too_much ? misread() : word.run(context, line);
        if (answer.error == misread().error)
            answer.error = QStringLiteral("usage: %1").arg(usage(word.name, word.arguments));
        return answer;
    }
    const FaultOption* option = fault_option(name);
    if (!option)
        return refused(QStringLiteral("unknown word %1; try help").arg(quoted(name)));
    Faults faults = context.server.faults();
    const Answer answer = change(faults, *option, line.rest());
    if (answer.error.isEmpty())
        context.server.set_faults(faults);
    return answer;
}

} // namespace simulator
