// Registration for reports. What can be told of at once is told at once, before the answer.
#include <simulator/commands/channels_p.h>
#include <simulator/commands/machine_p.h>

#include <simulator/catalogue_p.h>
#include <simulator/session_p.h>

namespace simulator {

namespace {

// The names of the classes, as a single one or as a set, each once.
QStringList named_classes(const Call& call, const char* single, const char* set)
{
    QStringList names;
    if (call.has(single))
        names.append(call.text(single));
    for (const Element& member : child(call.arguments, set).children)
        names.append(member.text);
    names.removeDuplicates();
    return names;
}

template <bool on>
Refusal reports(Call& call)
{
    for (const QString& name : named_classes(call, "ReportType", "ReportSet")) {
        const quint32 bit = 1u << Catalogue::get().value("ReportType", name);
        call.session.report_classes =
            on ? call.session.report_classes | bit : call.session.report_classes & ~bit;
        if (on)
            tell_machine(call, name);
    }
    return {};
}

template <bool on>
Refusal channel_reports(Call& call)
{
    for (const Deck deck : call.decks()) {
        quint16& classes = call.session.channel_classes[static_cast<std::size_t>(deck.number)];
        for (const QString& name : named_classes(call, "ChannelReportType", "ChannelReportSet")) {
            if (on)
                tell_state(call, deck, name); // before it is one of those who are told of changes
            const int bit = 1 << Catalogue::get().value("ChannelReportType", name);
            classes = static_cast<quint16>(on ? classes | bit : classes & ~bit);
        }
    }
    return {};
}

} // namespace

CommandRows registration_commands()
{
    return {
        {"report_register", reports<true>},
        {"report_unregister", reports<false>},
        {"reports_register", reports<true>},
        {"reports_unregister", reports<false>},
        {"channel_report_register", channel_reports<true>},
        {"channel_report_unregister", channel_reports<false>},
        {"channel_reports_register", channel_reports<true>},
        {"channel_reports_unregister", channel_reports<false>},
    };
}

} // namespace simulator
