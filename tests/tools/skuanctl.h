// The command line as a program, told of a host; and a run of it that listens at an address of its own.
#pragma once

#include <support/program.h>
#include <support/station.h>

const QString program = QStringLiteral(SKUANCTL);

inline QStringList to(const QString& host, const QStringList& rest)
{
    return QStringList{"--host", host} + rest;
}
inline QStringList to(const support::Station& station, const QStringList& rest)
{
    return to(station.address().toString(), rest);
}

template <class Host>
support::Ran ask(const Host& host, const QStringList& rest, const QByteArray& input = {})
{
    return support::run(program, to(host, rest), input);
}

inline QString own_address()
{
    return QString::fromStdString(support::own_loopback_address());
}

class Listening
{
public:
    explicit Listening(const QStringList& words)
    {
        process_.start(program, words + QStringList{"--bind", address});
        EXPECT_TRUE(process_.waitForReadyRead()) << process_.readAllStandardError().constData();
        process_.readLine();
    }

    support::Ran end()
    {
        EXPECT_TRUE(process_.waitForFinished());
        return {process_.exitCode(), process_.readAllStandardOutput(), process_.readAllStandardError()};
    }
    void expect_success()
    {
        const support::Ran ran = end();
        EXPECT_EQ(ran.code, 0) << ran.out.constData() << ran.err.constData();
    }

    const QString address = own_address();

private:
    QProcess process_;
};
