// A client of a few lines on a plain socket, so that nothing of ours stands between test and server.
#pragma once

#include <simulator/server_thread.h>
#include <support/loopback_address.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTcpSocket>
#include <QThread>

#include <gtest/gtest.h>

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

class PlainClient
{
public:
    explicit PlainClient(const simulator::Server& server)
    {
        const QString place = server.place();
        socket.connectToHost(place.left(place.lastIndexOf(QLatin1Char(':'))), server.port());
        EXPECT_TRUE(socket.waitForConnected(patience_ms)) << qPrintable(place);
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

    /// Everything until the server closes.
    QByteArray read_all()
    {
        return read_until([](const QByteArray&) { return false; });
    }

    QByteArray ask(const QByteArray& message, int replies = 1)
    {
        send(message);
        return read_replies(replies);
    }

    bool is_closed()
    {
        return socket.state() == QAbstractSocket::UnconnectedState || socket.waitForDisconnected(patience_ms);
    }

    QTcpSocket socket;
};

/// A server of the test's own, started with the faults.
class SimulatorTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static int argc = 1;
        static char name[] = "simulator_test";
        static char* argv[] = {name, nullptr};
        static QCoreApplication application(argc, argv);
    }

    simulator::Server& start(simulator::Settings settings = {})
    {
        settings.address = QHostAddress(QString::fromStdString(support::own_loopback_address()));
        thread = std::make_unique<simulator::ServerThread>(settings);
        EXPECT_TRUE(thread->start()) << qPrintable(thread->error_text());
        return *thread->server();
    }

    simulator::Server& start(const simulator::Faults& faults)
    {
        simulator::Settings settings;
        settings.faults = faults;
        return start(settings);
    }

    std::unique_ptr<simulator::ServerThread> thread;
};

/// A whole command.
inline QByteArray cmd(const char* xid, const QByteArray& body)
{
    return QByteArray("<cmd>\r\n<xid>") + xid + "</xid>\r\n" + body + "\r\n</cmd>";
}

/// A whole reply, as the server writes it.
inline QByteArray reply(const char* xid, const QByteArray& body)
{
    return QByteArray("<reply>\r\n<xid>") + xid + "</xid>\r\n" + body + "\r\n</reply>\r\n";
}

inline QByteArray name_command(const char* xid)
{
    return cmd(xid, "<get_computer_name />");
}

inline QByteArray name_reply(const char* xid)
{
    return reply(xid, "<computername>\r\n<ComputerName>STUDIO-1</ComputerName>\r\n</computername>");
}
