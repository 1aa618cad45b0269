// The program's own options: the rows are the parser, the help and the effect.
#include <skuanctl/options.h>
#include <skuanctl/verb.h>

#include <cmath>

using std::chrono::milliseconds;

namespace {

std::optional<milliseconds> seconds(const QString& text)
{
    constexpr double most = 1e6; // eleven days, which a timer can still count in milliseconds
    bool good = false;
    const double value = text.toDouble(&good);
    if (!good || !(value >= 0.001 && value <= most))
        return std::nullopt;
    return milliseconds(std::llround(value * 1000));
}

} // namespace

const std::vector<OptionRow>& option_rows()
{
    static const std::vector<OptionRow> table = {
        {{"host"},
         "HOST",
         false,
         "the server's name or address, 127.0.0.1 by default; with several, as in a,b,c, each is asked at "
         "once, and each line says whose it is",
         [](const QString& text, Options& options) {
             options.hosts = text.split(',');
             return !options.hosts.contains(QString());
         }},
        {{"timeout"},
         "SECONDS",
         false,
         "wait so long for the connection, and for each answer after the one before, 5 by default; given to "
         "a "
         "verb that stays, for each report too",
         [](const QString& text, Options& options) {
             const auto time = seconds(text);
             options.timeout = time.value_or(options.timeout);
             return options.has_timeout = time.has_value();
         }},
        {{"json"},
         nullptr,
         false,
         "write one JSON object a line; errors too, on standard error",
         [](const QString&, Options& options) { return options.json = true; }},
        {{"count"},
         "N",
         true,
         "stay until N reports have come; of capture: until N connections have closed",
         [](const QString& text, Options& options) {
             bool good = false;
             options.count = text.toInt(&good);
             return good && *options.count > 0;
         }},
        {{"listen"},
         "SECONDS",
         true,
         "stay so long after the last answer, for reports",
         [](const QString& text, Options& options) { return (options.listen = seconds(text)).has_value(); }},
        {{"h", "help"},
         nullptr,
         false,
         "this text; with a verb, all there is to say about it",
         [](const QString&, Options& options) { return options.help = true; }},
        {{"version"},
         nullptr,
         false,
         "tell which version of skuanctl this is",
         [](const QString&, Options& options) { return options.version = true; }},
    };
    return table;
}

bool belongs(const OptionRow& option, const VerbRow& verb)
{
    return !option.for_staying || verb.stay != Stay::never;
}

const OptionRow* find_option(const QString& name)
{
    for (const OptionRow& row : option_rows())
        if (row.names.contains(name))
            return &row;
    return nullptr;
}

QString dashed(const QString& option)
{
    return (option.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + option;
}

QString in_seconds(milliseconds time)
{
    return QStringLiteral("%1 s").arg(static_cast<double>(time.count()) / 1000);
}

bool Options::has(const char* option) const
{
    for (const auto& [name, text] : own)
        if (name == QLatin1String(option))
            return true;
    return false;
}

QString Options::value(const char* option) const
{
    QString last;
    for (const auto& [name, text] : own)
        if (name == QLatin1String(option))
            last = text;
    return last;
}
