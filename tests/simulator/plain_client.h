// A client of a few lines on a plain socket, so that nothing of ours stands between test and server.
#pragma once

#include "compact.h"

#include <support/program.h>
#include <support/station.h>

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QThread>

/// Longer than anything takes that a test waits for; only a failing test uses it up.
constexpr int patience_ms = 10000;

/// Waits for a condition that another thread brings about.
template <class Condition>
bool wait_until(Condition condition)
{
    QElapsedTimer clock;
    for (clock.start(); !condition(); QThread::msleep(1))
        if (clock.hasExpired(patience_ms))
            return false;
    return true;
}

/// A whole command, and a whole reply as the server writes it.
inline QByteArray cmd(const QByteArray& xid, const QByteArray& body)
{
    return "<cmd>\r\n<xid>" + xid + "</xid>\r\n" + body + "\r\n</cmd>";
}
inline QByteArray reply(const QByteArray& xid, const QByteArray& body)
{
    return "<reply>\r\n<xid>" + xid + "</xid>\r\n" + body + "\r\n</reply>\r\n";
}

class SimulatorTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { support::need_application(); }
};

class PlainClient
{
public:
    explicit PlainClient(const support::Station& station)
        : PlainClient(station.address().toString(), station->port())
    {
    }
    explicit PlainClient(const QString& address, quint16 port = 8913)
    {
        socket.connectToHost(address, port);
        EXPECT_TRUE(socket.waitForConnected(patience_ms)) << qPrintable(address);
        socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    }

    /// Sends the bytes in one segment.
    void send(const QByteArray& bytes)
    {
        socket.write(bytes);
        while (socket.bytesToWrite() > 0 && socket.waitForBytesWritten(patience_ms)) {
        }
    }

    /// What has come when `enough` says so of it, or when the server closes its side.
    template <class Enough>
    QByteArray read_until(Enough enough)
    {
        QByteArray bytes = socket.readAll();
        while (!enough(bytes) && socket.waitForReadyRead(patience_ms))
            bytes += socket.readAll();
        return bytes + (enough(bytes) ? QByteArray() : socket.readAll());
    }
    QByteArray read_bytes(int count)
    {
        return read_until([count](const QByteArray& bytes) { return bytes.size() >= count; });
    }
    QByteArray read_replies(int count)
    {
        return read_until([count](const QByteArray& bytes) { return bytes.count("</reply>\r\n") >= count; });
    }
    QByteArray read_all()
    {
        return read_until([](const QByteArray&) { return false; });
    }
    QByteArray ask(const QByteArray& message, int replies = 1)
    {
        send(message);
        return read_replies(replies);
    }
    /// All that comes until the server has done these commands.
    QByteArray hear(const QByteArray& commands = {})
    {
        const QByteArray end = reply("end", "<ok/>");
        send(commands + cmd("end", "<sync/>"));
        QByteArray heard = read_until([&](const QByteArray& bytes) { return bytes.endsWith(end); });
        heard.chop(end.size());
        return heard;
    }
    /// The same of one command, both in the short form of compact.h.
    std::string ask_short(const QString& command)
    {
        return compact::from_stream(hear(cmd("x", compact::to_command(command))));
    }
    bool is_closed()
    {
        return socket.state() == QAbstractSocket::UnconnectedState || socket.waitForDisconnected(patience_ms);
    }

    QTcpSocket socket;
};

/// Questions for the server's name, with the xids `from` to `to`, and the answers to them.
inline QByteArray names(int from, int to)
{
    const QByteArray first = cmd(QByteArray::number(from), "<get_computer_name />");
    return from < to ? first + names(from + 1, to) : first;
}
inline QByteArray name_replies(int from, int to)
{
    const QByteArray first =
        reply(QByteArray::number(from),
              "<computername>\r\n<ComputerName>STUDIO-1</ComputerName>\r\n</computername>");
    return from < to ? first + name_replies(from + 1, to) : first;
}
