// How a run can end, and what is said about it: to people, to scripts, and in the help.
#pragma once

#include <QString>

#include <chrono>
#include <vector>

enum ExitCode {
    exit_ok = 0,
    exit_server_error = 1,
    exit_usage = 2,
    exit_cannot_connect = 3,
    exit_timed_out = 4,
    exit_connection_lost = 5,
    exit_cannot_write = 6,
    exit_differs = 7,
    exit_interrupted = 130, // as shells say it of a program that Ctrl-C ended
};

/// Why a run ended badly.
struct Failure
{
    ExitCode code;
    QString message;
    QString server_code; ///< the code of the server's `error`; empty for every other failure
};

// Of a connection; `place` says who is meant.

Failure cannot_connect(const QString& place, const QString& why);
Failure cannot_find(const QString& host, const QString& why);
Failure no_answer(const QString& place, std::chrono::milliseconds within);
Failure connection_lost(const QString& place, const QString& why);

struct ExitRow
{
    ExitCode code;
    const char* name; ///< in JSON, as "error"
    const char* meaning;
};

const std::vector<ExitRow>& exit_rows();

/// The row's name; every code has a row.
QString name_of(ExitCode code);
