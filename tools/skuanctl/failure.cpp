// The table of exit codes, which the help prints and the JSON output names; and what is said of connections.
#include <skuanctl/failure.h>
#include <skuanctl/options.h>

#include <algorithm>

const std::vector<ExitRow>& exit_rows()
{
    static const std::vector<ExitRow> rows = {
        {exit_ok, "ok", "done"},
        {exit_server_error, "server_error", "the server answered with an error"},
        {exit_usage, "usage", "bad usage, or commands that are not well-formed; nothing was sent"},
        {exit_cannot_connect, "cannot_connect", "no connection to the server, or none can be listened for"},
        {exit_timed_out, "timed_out", "connected, but what was waited for did not come in time"},
        {exit_connection_lost, "connection_lost", "the connection ended before the work was done"},
        {exit_cannot_write, "cannot_write", "the output could not be written"},
        {exit_differs, "differs", "the other side did not say what the file has"},
        {exit_interrupted, "interrupted", "ended by Ctrl-C"},
    };
    return rows;
}

QString name_of(ExitCode code)
{
    const auto& rows = exit_rows();
    const auto row =
        std::find_if(rows.begin(), rows.end(), [code](const ExitRow& r) { return r.code == code; });
    return row == rows.end() ? QString() : QString::fromLatin1(row->name);
}

Failure cannot_connect(const QString& place, const QString& why)
{
    return {exit_cannot_connect,
            QStringLiteral("cannot connect to %1 port %2: %3").arg(place, QString::number(server_port), why),
            {}};
}

Failure cannot_find(const QString& host, const QString& why)
{
    return {exit_cannot_connect, QStringLiteral("cannot find host %1: %2").arg(host, why), {}};
}

Failure no_answer(const QString& place, std::chrono::milliseconds within)
{
    return {exit_timed_out, QStringLiteral("%1 gave no answer within %2").arg(place, in_seconds(within)), {}};
}

Failure connection_lost(const QString& place, const QString& why)
{
    return {exit_connection_lost, QStringLiteral("lost the connection to %1: %2").arg(place, why), {}};
}
