// The command line as a value.
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

struct VerbRow;

struct Options
{
    QString host = QStringLiteral("127.0.0.1");
    std::chrono::milliseconds timeout{5000}; ///< for the connection, and for each further answer
    bool json = false;
    std::optional<int> count;                        ///< of `raw`: stay for so many reports
    std::optional<std::chrono::milliseconds> listen; ///< of `raw`: stay for so long
    bool help = false;

    const VerbRow* verb = nullptr; ///< set unless help is wanted or there is an error
    QStringList arguments;         ///< of the verb

    QString error; ///< what is wrong with the command line; empty if nothing is
};

/// Reads the arguments, of which the first is the program's own name.
Options parse_options(const QStringList& arguments);

QString help_text();

/// "5 s", "0.25 s".
QString in_seconds(std::chrono::milliseconds time);
