// Counting LTC along with the server's fields.
#include <simulator/commands/ltc_p.h>

#include <simulator/call_p.h>
#include <simulator/commands/machine_p.h>
#include <simulator/server_state_p.h>

#include <QRegularExpression>
#include <QTime>

namespace simulator {

namespace {

constexpr quint64 ms_per_day = 86'400'000;

// Fields of the timecode's own second, minute and ten minutes. Dropping leaves four field numbers out of each
// minute but every tenth.
struct Count
{
    quint64 second = 50;
    quint64 dropped = 0;

    quint64 minute() const { return 60 * second - dropped; }
    quint64 ten_minutes() const { return 600 * second - 9 * dropped; }
    quint64 day() const { return 144 * ten_minutes(); }
};

Count count_of(const QString& standard)
{
    const QString rate = standard.section(QLatin1Char('_'), 1);
    if (rate.startsWith(QLatin1String("59_94")))
        return {60, 4};
    if (rate.startsWith(QLatin1String("60")))
        return {60, 0};
    return rate.startsWith(QLatin1String("4")) ? Count{48, 0} : Count();
}

QString standard_of(const ServerState& state)
{
    return state.configuration.effective("VideoStandard");
}

} // namespace

quint64 ltc_day(const ServerState& state)
{
    return count_of(standard_of(state)).day();
}

Element drop_frame_flag(const QString& standard)
{
    return {"DropFrameFlag", count_of(standard).dropped != 0 ? "df" : "ndf"};
}

quint64 ltc_field(const ServerState& state)
{
    return (state.machine.ltc.start + state.field) % ltc_day(state);
}

void set_ltc_field(ServerState& state, quint64 field)
{
    const quint64 day = ltc_day(state);
    state.machine.ltc.start = field % day + day - state.field % day;
}

void start_ltc(ServerState& state)
{
    const quint64 ms = state.settings.pace > 0
                           ? static_cast<quint64>(QTime::currentTime().msecsSinceStartOfDay())
                           : ms_per_day / 24 * 10;
    set_ltc_field(state, ltc_day(state) * ms / ms_per_day);
}

std::optional<quint64> to_fields(const QString& timecode, const ServerState& state)
{
    static const QRegularExpression form(QStringLiteral("^(\\d\\d):(\\d\\d):(\\d\\d)[:;.,](\\d\\d)$"));
    const QRegularExpressionMatch match = form.match(timecode);
    const auto part = [&](int i) { return match.captured(i).toULongLong(); };
    const Count count = count_of(standard_of(state));
    if (!match.hasMatch() || part(1) > 23 || part(2) > 59 || part(3) > 59 || part(4) >= count.second / 2)
        return std::nullopt;
    return (part(1) * 6 + part(2) / 10) * count.ten_minutes() + part(2) % 10 * count.minute() +
           part(3) * count.second + part(4) * 2;
}

std::vector<Element> input_timecode(const ServerState& state)
{
    if (!state.machine.ltc.is_present)
        return no_timecode();
    const QString standard = standard_of(state);
    return {{"Valid", truth(true)},
            {"VideoStandard", standard},
            {"FieldNumber", decimal(ltc_field(state))},
            drop_frame_flag(standard)};
}

bool run_ltc(ServerState& state, Audience& audience)
{
    const bool is_heard = state.machine.ltc.is_present && audience.listens_to("ltc_timecode");
    if (is_heard && ltc_field(state) % 2 == 0)
        audience.report("ltc_timecode", {{"Timecode", input_timecode(state)}});
    return is_heard;
}

} // namespace simulator
