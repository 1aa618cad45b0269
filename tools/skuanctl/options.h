// The command line as a value.
#pragma once

#include <QHostAddress>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <vector>

struct VerbRow;

struct Options
{
    QString host = QStringLiteral("127.0.0.1");
    std::chrono::milliseconds timeout{5000}; ///< for the connection, and for each further answer
    bool json = false;
    std::optional<int> count;                        ///< stay for so many reports
    std::optional<std::chrono::milliseconds> listen; ///< stay for so long
    std::optional<QHostAddress> bind;                ///< where to listen
    std::optional<int> connection;                   ///< which one of a file; none: all
    bool paced = false;
    bool help = false;

    const VerbRow* verb = nullptr; ///< null only if there is an error, or help on no verb is wanted
    QStringList arguments;         ///< of the verb

    QString error; ///< what is wrong with the command line; empty if nothing is
};

/// Reads the arguments, of which the first is the program's own name.
Options parse_options(const QStringList& arguments);

struct OptionRow
{
    QStringList names;
    const char* value; // null: the option has none
    QStringList verbs; // empty: the option is for every verb
    const char* help;
    bool (*take)(const QString& value, Options& options); // false: no such value
};

const std::vector<OptionRow>& option_rows();

/// "--name", or "-n" for a name of one letter.
QString dashed(const QString& option);

/// "5 s", "0.25 s".
QString in_seconds(std::chrono::milliseconds time);
