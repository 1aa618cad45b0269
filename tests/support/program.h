// Runs a program as a shell would, and keeps what it said.
#pragma once

#include <support/core_application.h>

#include <QByteArray>
#include <QProcess>
#include <QStringList>

namespace support {

struct Ran
{
    int code = -1; ///< -1: it did not start, crashed or did not end within a minute
    QByteArray out;
    QByteArray err;
};

/// Gives the program its input and waits until it ends.
inline Ran run(const QString& program, const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    Ran ran;
    if (process.waitForFinished(60'000) && process.exitStatus() == QProcess::NormalExit)
        ran.code = process.exitCode();
    else
        ADD_FAILURE() << qPrintable(program) << ": " << qPrintable(process.errorString());
    ran.out = process.readAllStandardOutput();
    ran.err = process.readAllStandardError();
    return ran;
}

} // namespace support
