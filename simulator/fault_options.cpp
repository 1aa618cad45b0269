// One row for each field of Faults that a text can set.
#include <simulator/fault_options_p.h>

#include <QStringList>

#include <limits>
#include <type_traits>

namespace simulator {

namespace {

using std::chrono::milliseconds;

bool read(const QString& text, qint64 least, qint64& value)
{
    bool is_number = false;
    value = text.toLongLong(&is_number);
    return is_number && value >= least && value <= std::numeric_limits<int>::max();
}

// A field that is off when it is as in a fresh value.
template <class Field, class Take, class Show>
FaultOption option(const char* name, const char* value, const char* help, Field Faults::*field, Take take,
                   Show show)
{
    return {name,
            value,
            help,
            [=](const QString& text, Faults& faults) { return take(text, faults.*field); },
            [=](const Faults& faults) {
                return faults.*field == Faults().*field ? QString() : show(faults.*field);
            },
            [=](Faults& faults) { faults.*field = Faults().*field; }};
}

FaultOption on_or_off(const char* name, const char* help, bool Faults::*field)
{
    return option(
        name, nullptr, help, field, [](const QString&, bool& value) { return value = true; },
        [](bool) { return QStringLiteral("on"); });
}

template <class Number>
FaultOption number(const char* name, const char* value, const char* help, Number Faults::*field,
                   qint64 least = 0)
{
    return option(
        name, value, help, field,
        [least](const QString& text, Number& target) {
            qint64 read_value = 0;
            const bool is_good = read(text, least, read_value);
            if (is_good)
                target = static_cast<Number>(read_value);
            return is_good;
        },
        [](Number present) { return QString::number(present); });
}

FaultOption time(const char* name, const char* help, milliseconds Faults::*field)
{
    return option(
        name, "MS", help, field,
        [](const QString& text, milliseconds& target) {
            qint64 ms = 0;
            const bool is_good = read(text, 0, ms);
            if (is_good)
                target = milliseconds(ms);
            return is_good;
        },
        [](milliseconds present) { return QString::number(present.count()); });
}

bool take_chance(const QString& text, double& chance)
{
    bool is_number = false;
    const double value = text.toDouble(&is_number);
    if (!is_number || !(value >= 0 && value <= 1))
        return false;
    chance = value;
    return true;
}

bool take_cuts(const QString& text, std::vector<qint64>& cuts)
{
    std::vector<qint64> taken;
    for (const QString& position : text.split(QLatin1Char(','))) {
        qint64 value = 0;
        if (!read(position, 1, value) || (!taken.empty() && value <= taken.back()))
            return false;
        taken.push_back(value);
    }
    cuts = std::move(taken);
    return true;
}

QString show_cuts(const std::vector<qint64>& cuts)
{
    QStringList positions;
    for (const qint64 cut : cuts)
        positions += QString::number(cut);
    return positions.join(QLatin1Char(','));
}

// Two fields: that there is one, and how fast it is.
FaultOption flood()
{
    return {"flood",
            "N",
            "send N reports a second, unasked; 'max': as fast as the client reads",
            [](const QString& text, Faults& faults) {
                qint64 rate = 0;
                if (text != QLatin1String("max") && !read(text, 1, rate))
                    return false;
                faults.flood = true;
                faults.flood_rate = static_cast<unsigned>(rate);
                return true;
            },
            [](const Faults& faults) {
                if (!faults.flood)
                    return QString();
                return faults.flood_rate == 0 ? QStringLiteral("max") : QString::number(faults.flood_rate);
            },
            [](Faults& faults) {
                faults.flood = false;
                faults.flood_rate = 0;
            }};
}

} // namespace

const std::vector<FaultOption>& fault_options()
{
    static const std::vector<FaultOption> table = {
        on_or_off("refuse", "accept each connection and close it at once", &Faults::refuse),
        on_or_off("mute", "never answer", &Faults::mute),
        number("lose", "N", "lose every Nth answer", &Faults::drop_every, 1),
        time("delay", "let every answer wait", &Faults::delay),
        on_or_off("hold", "let answers wait until this is taken back", &Faults::hold),
        number("glue", "N", "let N answers leave in one write", &Faults::gather, 1),
        time("glue-wait", "... or what there is, when no more come for that long; 20 by default",
             &Faults::gather_wait),
        on_or_off("shuffle", "let glued answers (8 by default) leave in random order", &Faults::shuffle),
        number("garbage", "N", "send junk before every Nth answer", &Faults::garbage_every, 1),
        number("garbage-size", "BYTES", "the length of the junk; 64 by default", &Faults::garbage_size, 1),
        flood(),
        number("flood-count", "N", "... and stop after N", &Faults::flood_count, 1),
        number("split", "BYTES", "send in segments of that length", &Faults::split, 1),
        option("split-at", "N,N,..", "end a segment at these positions of the stream", &Faults::split_at,
               take_cuts, show_cuts),
        time("split-pause", "wait between segments", &Faults::split_pause),
        number("drop-after", "N", "close a connection after N answers", &Faults::close_after_answers),
        number("drop-after-bytes", "N", "close a connection after N bytes", &Faults::close_after_bytes),
        option("drop-chance", "P", "cut off each answer with this chance, 0 to 1, at a random byte",
               &Faults::close_chance, take_chance, [](double chance) { return QString::number(chance); }),
        on_or_off("half-close", "close only the sending side, and go on reading", &Faults::half_close),
        number("seed", "N", "where everything random starts; 1 by default", &Faults::seed),
    };
    return table;
}

} // namespace simulator
