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

const QRegularExpression& timecode_form()
{
    static const QRegularExpression form(QStringLiteral("^(\\d\\d):(\\d\\d):(\\d\\d)[:;.,](\\d\\d)$"));
    return form;
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

bool is_timecode(const QString& text)
{
    return timecode_form().match(text).hasMatch();
}

std::optional<quint64> to_fields(const QString& timecode, const ServerState& state)
{
    const QRegularExpressionMatch match = timecode_form().match(timecode);
    const auto part = [&](int i) { return match.captured(i).toULongLong(); };
    const quint64 hour = part(1), minute = part(2), second = part(3), field = part(4) * 2;
    const Count count = count_of(standard_of(state));
    const bool is_dropped = minute % 10 != 0 && second == 0 && field < count.dropped;
    if (!match.hasMatch() || hour > 23 || minute > 59 || second > 59 || field >= count.second || is_dropped)
        return std::nullopt;
    return (hour * 6 + minute / 10) * count.ten_minutes() + minute % 10 * count.minute() +
           second * count.second + field;
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
