// Two tables of options, the server's and the faults': their rows are the parser, the help and the effect.
#include <simulator/options_p.h>

#include <simulator/fault_options_p.h>

#include <QCommandLineParser>
#include <QFile>

#include <functional>

namespace simulator {

namespace {

// Takes an option's value into the settings; false if it is none of its kind.
using Take = std::function<bool(const QString& value, Settings& settings)>;

struct Row
{
    const char* name;
    const char* value; // null: the option has none
    const char* help;
    Take take; // null: a file, which is read at the end
};

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

Take to_port(quint16 Settings::*field)
{
    return [field](const QString& text, Settings& settings) {
        bool is_number = false;
        settings.*field = text.toUShort(&is_number);
        return is_number;
    };
}

bool take_clip_count(const QString& text, Settings& settings)
{
    bool is_number = false;
    const int count = text.toInt(&is_number);
    settings.clips = ClipStore::generated(count);
    return is_number && count >= 0;
}

bool take_channels(const QString& text, Settings& settings)
{
    settings.channels = text.toInt();
    return settings.channels >= 1 && settings.channels <= 12;
}

// Up to a thousand times real time; much beyond, nothing is left to see.
bool take_pace(const QString& text, Settings& settings)
{
    bool is_number = false;
    settings.pace = text.toDouble(&is_number);
    return is_number && settings.pace >= 0 && settings.pace <= 1000;
}

// Those of the server itself; the faults have a table of their own.
const std::vector<Row>& rows()
{
    static const std::vector<Row> table = {
        {"address", "A", "listen on this address; 127.0.0.1 by default", take_address},
        {"port", "P", "listen on this TCP port; 8913 by default, 0 lets the system choose",
         to_port(&Settings::port)},
        {"status-port", "P", "tell of the start on this TCP port; 4272 by default, 0: do not",
         to_port(&Settings::start_status_port)},
        {"name", "NAME", "the server's computer name", to_text(&Settings::computer_name)},
        {"channels", "N", "the channels that it has, 12 by default", take_channels},
        {"pace", "X",
         "X times real time: 60 is a minute a second, 0 stands still but for the control word 'step'",
         take_pace},
        {"clips", "FILE", "the clips: one id to a line, 'directory/name'; '#' starts a comment", nullptr},
        {"clip-count", "N", "N made-up clips in the directory 'load'", take_clip_count},
        {"from", "FILE", "start with what this file says, and never write it", nullptr},
        {"state", "FILE", "start with what this file says, if it is there, and save to it at the end",
         to_text(&Settings::state_file)},
        {"export-folder", "DIR", "make the files of exports in this folder",
         to_text(&Settings::export_folder)},
    };
    return table;
}

QString read_file(const QString& path, QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot read %1: %2").arg(path, file.errorString());
    bytes = file.readAll();
    return {};
}

QString read_clips(const QString& path, ClipStore& clips)
{
    QByteArray bytes;
    QString error = read_file(path, bytes);
    if (!error.isEmpty())
        return error;
    clips = ClipStore::from_text(bytes, &error);
    return error.isEmpty() ? error : QStringLiteral("%1, %2").arg(path, error);
}

QString no_value(const char* option, const QString& value)
{
    return QStringLiteral("'%1' is no value for --%2").arg(value, QLatin1String(option));
}

// The first thing that is wrong.
QString take_all(const QCommandLineParser& parser, Settings& settings)
{
    for (const Row& row : rows()) {
        const QString name = QLatin1String(row.name), value = parser.value(name);
        if (parser.isSet(name) && row.take && !row.take(value, settings))
            return no_value(row.name, value);
    }
    for (const FaultOption& option : fault_options()) {
        const QString name = QLatin1String(option.name), value = parser.value(name);
        if (parser.isSet(name) && !option.take(value, settings.faults))
            return no_value(option.name, value);
    }
    if (parser.isSet(QStringLiteral("clips"))) {
        const QString error = read_clips(parser.value(QStringLiteral("clips")), settings.clips);
        if (!error.isEmpty())
            return error;
    }
    return parser.isSet(QStringLiteral("from"))
               ? read_file(parser.value(QStringLiteral("from")), settings.seed)
               : QString();
}

} // namespace

Options parse_options(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A simulated video disk server: it answers every command of the control protocol, keeps what it is\n"
        "told, and misbehaves as asked. Prints 'listening on ADDRESS:PORT' when it is ready.\n"
        "Exit codes: 0 stopped by a signal, or told; 1 cannot start, save or do it; 2 bad usage."));
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("this text")});
    for (const Row& row : rows())
        parser.addOption({QLatin1String(row.name), QLatin1String(row.help), QLatin1String(row.value)});
    parser.addOption(
        {QStringLiteral("control"), QStringLiteral("take orders under this name"), QStringLiteral("NAME")});
    parser.addOption(
        {QStringLiteral("tell"),
         QStringLiteral("have the simulator under this control name do what the other words say; "
                        "'help' lists what it can be told"),
         QStringLiteral("NAME")});
    for (const FaultOption& row : fault_options())
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
    options.control = parser.value(QStringLiteral("control"));
    options.tell = parser.value(QStringLiteral("tell"));
    options.line = parser.positionalArguments().join(QLatin1Char(' '));
    if (options.tell.isEmpty() && !options.line.isEmpty())
        options.error = QStringLiteral("what is '%1'?").arg(parser.positionalArguments().constFirst());
    else
        options.error = take_all(parser, options.settings);
    return options;
}

} // namespace simulator
