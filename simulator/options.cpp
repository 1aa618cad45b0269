// One table of options: its rows are the parser, the help and the effect.
#include <simulator/options_p.h>

#include <QCommandLineParser>
#include <QFile>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>

namespace simulator {

namespace {

using std::chrono::milliseconds;

// Takes an option's value into the settings; false if it is none of its kind.
using Take = std::function<bool(const QString& value, Settings& settings)>;

struct Row
{
    const char* name;
    const char* value; // null: the option has none
    const char* help;
    Take take;
};

template <class Number>
std::optional<Number> number(const QString& text, qlonglong least = 0)
{
    bool good = false;
    const qlonglong value = text.toLongLong(&good);
    const bool fits = value >= least && value <= static_cast<qlonglong>(std::numeric_limits<int>::max());
    return good && fits ? std::optional<Number>(static_cast<Number>(value)) : std::nullopt;
}

template <class Number>
Take to_number(Number Faults::*field, qlonglong least = 0)
{
    return [field, least](const QString& text, Settings& settings) {
        const auto value = number<Number>(text, least);
        settings.faults.*field = value.value_or(Number());
        return value.has_value();
    };
}

Take to_time(milliseconds Faults::*field)
{
    return [field](const QString& text, Settings& settings) {
        const auto value = number<int>(text);
        settings.faults.*field = milliseconds(value.value_or(0));
        return value.has_value();
    };
}

Take to_true(bool Faults::*field)
{
    return [field](const QString&, Settings& settings) { return settings.faults.*field = true; };
}

Take to_text(QString Settings::*field)
{
    return [field](const QString& text, Settings& settings) {
        settings.*field = text;
        return true;
    };
}

bool take_address(const QString& text, Settings& settings)
{
    return settings.address.setAddress(text);
}

bool take_port(const QString& text, Settings& settings)
{
    const auto port = number<int>(text);
    settings.port = static_cast<quint16>(port.value_or(0));
    return port && *port <= 65535;
}

bool take_clip_count(const QString& text, Settings& settings)
{
    const auto count = number<int>(text);
    settings.clips = ClipStore::generated(count.value_or(0));
    return count.has_value();
}

bool take_channels(const QString& text, Settings& settings)
{
    const auto count = number<int>(text, 1);
    settings.channels = count.value_or(1);
    return count && *count <= 12;
}

bool take_pace(const QString& text, Settings& settings)
{
    bool good = false;
    settings.pace = text.toDouble(&good);
    return good && settings.pace >= 0 && settings.pace <= 1000;
}

bool take_flood(const QString& text, Settings& settings)
{
    const bool unpaced = text == QLatin1String("max");
    const auto rate = number<unsigned>(text, 1);
    settings.faults.flood = true;
    settings.faults.flood_rate = rate.value_or(0);
    return unpaced || rate;
}

bool take_chance(const QString& text, Settings& settings)
{
    bool good = false;
    settings.faults.close_chance = text.toDouble(&good);
    return good && settings.faults.close_chance >= 0 && settings.faults.close_chance <= 1;
}

bool take_split_at(const QString& text, Settings& settings)
{
    for (const QString& position : text.split(QLatin1Char(','))) {
        const auto value = number<qint64>(position, 1);
        auto& cuts = settings.faults.split_at;
        if (!value || (!cuts.empty() && *value <= cuts.back()))
            return false;
        cuts.push_back(*value);
    }
    return true;
}

const std::vector<Row>& rows()
{
    static const std::vector<Row> table = {
        {"address", "A", "listen on this address; 127.0.0.1 by default", take_address},
        {"port", "P", "listen on this TCP port; 8913 by default, 0 lets the system choose", take_port},
        {"name", "NAME", "the server's computer name", to_text(&Settings::computer_name)},
        {"channels", "N", "the channels that it has, 12 by default", take_channels},
        {"pace", "X", "X times real time: 60 is a minute a second, 0 stands still", take_pace},
        {"clips", "FILE", "the clips: one id to a line, 'directory/name'; '#' starts a comment", nullptr},
        {"clip-count", "N", "N made-up clips in the directory 'load'", take_clip_count},

        {"refuse", nullptr, "accept each connection and close it at once", to_true(&Faults::refuse)},
        {"mute", nullptr, "never answer", to_true(&Faults::mute)},
        {"lose", "N", "lose every Nth answer", to_number(&Faults::drop_every, 1)},
        {"delay", "MS", "let every answer wait", to_time(&Faults::delay)},
        {"glue", "N", "let N answers leave in one write", to_number(&Faults::gather, 1)},
        {"glue-wait", "MS", "... or what there is, when no more come for that long; 20 by default",
         to_time(&Faults::gather_wait)},
        {"shuffle", nullptr, "let glued answers (8 by default) leave in random order",
         to_true(&Faults::shuffle)},
        {"garbage", "N", "send junk before every Nth answer", to_number(&Faults::garbage_every, 1)},
        {"garbage-size", "BYTES", "the length of the junk; 64 by default",
         to_number(&Faults::garbage_size, 1)},
        {"flood", "N", "send N reports a second, unasked; 'max': as fast as the client reads", take_flood},
        {"flood-count", "N", "... and stop after N", to_number(&Faults::flood_count, 1)},
        {"split", "BYTES", "send in segments of that length", to_number(&Faults::split, 1)},
        {"split-at", "N,N,..", "end a segment at these positions of the stream", take_split_at},
        {"split-pause", "MS", "wait between segments", to_time(&Faults::split_pause)},
        {"drop-after", "N", "close a connection after N answers", to_number(&Faults::close_after_answers)},
        {"drop-after-bytes", "N", "close a connection after N bytes", to_number(&Faults::close_after_bytes)},
        {"drop-chance", "P", "cut off each answer with this chance, 0 to 1, at a random byte", take_chance},
        {"half-close", nullptr, "close only the sending side, and go on reading",
         to_true(&Faults::half_close)},
        {"seed", "N", "where everything random starts; 1 by default", to_number(&Faults::seed)},
    };
    return table;
}

QString read_clips(const QString& path, ClipStore& clips)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot read the clips from %1: %2").arg(path, file.errorString());
    QString error;
    clips = ClipStore::from_text(file.readAll(), &error);
    return error.isEmpty() ? error : QStringLiteral("%1, %2").arg(path, error);
}

} // namespace

Options parse_options(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A simulated video disk server: it answers every command of the control protocol, keeps what it is\n"
        "told, and misbehaves as asked. Prints 'listening on ADDRESS:PORT' when it is ready.\n"
        "Exit codes: 0 stopped by a signal, 1 cannot listen, 2 bad usage."));
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("this text")});
    for (const Row& row : rows())
        parser.addOption({QLatin1String(row.name), QLatin1String(row.help), QLatin1String(row.value)});

    Options options;
    if (!parser.parse(arguments)) {
        options.error = parser.errorText();
        return options;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        options.help = parser.helpText();
        return options;
    }
    if (!parser.positionalArguments().isEmpty()) {
        options.error = QStringLiteral("what is '%1'?").arg(parser.positionalArguments().constFirst());
        return options;
    }
    for (const Row& row : rows()) {
        const QString name = QLatin1String(row.name);
        if (!parser.isSet(name))
            continue;
        const QString value = parser.value(name);
        if (!row.take)
            options.error = read_clips(value, options.settings.clips);
        else if (!row.take(value, options.settings))
            options.error = QStringLiteral("'%1' is no value for --%2").arg(value, name);
        if (!options.error.isEmpty())
            break;
    }
    return options;
}

} // namespace simulator
