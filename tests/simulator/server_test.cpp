// The server as its owner sees it: on a thread, in an event loop, and as a program.
#include "plain_client.h"

#include <QProcess>
#include <QTemporaryFile>

#include <csignal>
#include <thread>

namespace {

using namespace simulator;

class ServerTest : public SimulatorTest
{
protected:
    QString address = QString::fromStdString(support::own_loopback_address());
};

TEST_F(ServerTest, StartsAgainOnItsThreadAndSaysWhyItCannot)
{
    Settings settings;
    settings.address = QHostAddress(address);
    ServerThread first(settings), second(settings);
    ASSERT_TRUE(first.start());
    EXPECT_EQ(first->place(), address + QStringLiteral(":8913"));
    EXPECT_FALSE(second.start());
    EXPECT_TRUE(second.error_text().startsWith("cannot listen on " + address + ":8913: "))
        << qPrintable(second.error_text());
    EXPECT_EQ(second.server(), nullptr);

    PlainClient client(*first.server());
    first.stop();
    EXPECT_TRUE(client.is_closed());
    EXPECT_TRUE(second.start());
    EXPECT_EQ(PlainClient(*second.server()).ask(name_command("1")), name_reply("1"));
}

TEST_F(ServerTest, TellsWhatItReceives)
{
    Settings settings;
    settings.address = QHostAddress(address);
    settings.port = 0;
    Server server(settings);
    ASSERT_TRUE(server.listen());
    EXPECT_NE(server.port(), 0);

    std::vector<std::pair<quint64, Element>> received;
    std::vector<quint64> gone;
    QObject::connect(&server, &Server::command,
                     [&](quint64 client, const Element& message) { received.emplace_back(client, message); });
    QObject::connect(&server, &Server::client_gone, [&](quint64 client) { gone.push_back(client); });

    QTcpSocket socket;
    socket.connectToHost(address, server.port());
    socket.write(cmd("7", "<clip_exists>\r\n<ClipID> a </ClipID>\r\n</clip_exists>"));
    ASSERT_TRUE(wait_until([&] { return QCoreApplication::processEvents(), !received.empty(); }));
    EXPECT_EQ(received[0].first, 1u);
    const Element& message = received[0].second;
    EXPECT_EQ(message.tag, QString("cmd"));
    EXPECT_EQ(message.text, QString());
    EXPECT_EQ(message.child_text("xid"), QString("7"));
    ASSERT_NE(message.child("clip_exists"), nullptr);
    EXPECT_EQ(message.child("clip_exists")->child_text("ClipID"), QString(" a "));
    EXPECT_EQ(message.child("sync"), nullptr);

    // A listener may end the client whose message it is looking at.
    QObject::connect(&server, &Server::command, [&](quint64 client) { server.drop_client(client); });
    socket.write(name_command("8").repeated(3));
    ASSERT_TRUE(wait_until([&] { return QCoreApplication::processEvents(), !gone.empty(); }));
    EXPECT_EQ(gone, std::vector<quint64>({1}));
    EXPECT_EQ(server.counters().messages, 2u);
}

// Faults, reports and clients' comings and goings from several threads at once; mainly for the sanitizer.
TEST_F(ServerTest, IsSteeredFromAnyThread)
{
    Server& server = start();
    std::atomic<bool> stop{false};
    std::thread steering([&] {
        for (unsigned i = 0; !stop; ++i) {
            Faults faults;
            faults.split = i % 5;
            faults.gather = i % 3;
            faults.shuffle = i % 7 == 0;
            faults.gather_wait = std::chrono::milliseconds(1);
            server.set_faults(faults);
            server.set_client_faults(1 + i % 4, faults);
            server.send_report("<report><ping/></report>");
            if (i % 50 == 0)
                server.drop_client(server.counters().accepted);
            std::this_thread::yield();
        }
    });
    PlainClient steady(server);
    for (int i = 0; i < 30; ++i) {
        PlainClient passing(server);
        passing.send(name_command("1"));
        steady.send(name_command("2"));
        if (steady.socket.state() != QAbstractSocket::ConnectedState)
            break;
    }
    stop = true;
    steering.join();
    server.set_faults({});
    EXPECT_EQ(PlainClient(server).ask(name_command("3")).right(name_reply("3").size()), name_reply("3"));
}

class Program : public ServerTest
{
protected:
    int run(const QStringList& arguments)
    {
        process.start(skuan_sim(), arguments);
        EXPECT_TRUE(process.waitForFinished(patience_ms));
        return process.exitCode();
    }

    static QString skuan_sim() { return QCoreApplication::applicationDirPath() + "/../bin/skuan-sim"; }

    QProcess process;
};

TEST_F(Program, ServesUntilASignalEndsIt)
{
    QTemporaryFile clips;
    ASSERT_TRUE(clips.open());
    clips.write("# one\nnews/élan\n");
    clips.close();
    for (const int signal : {SIGTERM, SIGINT}) {
        process.start(skuan_sim(), {"--address", address, "--port", "0", "--name", "A&B", "--clips",
                                    clips.fileName(), "--split", "3"});
        ASSERT_TRUE(process.waitForReadyRead(patience_ms));
        const QString line = QString::fromUtf8(process.readAllStandardOutput());
        ASSERT_TRUE(line.startsWith("listening on " + address + ":") && line.endsWith("\n"))
            << qPrintable(line);

        QTcpSocket socket;
        socket.connectToHost(address, line.trimmed().section(QLatin1Char(':'), -1).toUShort());
        socket.write(name_command("1") + cmd("2", "<download_clipids />"));
        QByteArray got;
        while (got.count("</reply>") < 3 && socket.waitForReadyRead(patience_ms))
            got += socket.readAll();
        EXPECT_TRUE(got.contains("<ComputerName>A&amp;B<") && got.contains("<ClipID>news/élan<"))
            << got.toStdString();

        ::kill(static_cast<pid_t>(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(patience_ms));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_EQ(process.readAllStandardError(), QByteArray());
    }
}

TEST_F(Program, RefusesWhatItCannotDo)
{
    const struct
    {
        QStringList arguments;
        int code;
        const char* says;
    } rows[] = {
        {{"--split", "0"}, 2, "'0' is no value for --split"},
        {{"--drop-chance", "1.5"}, 2, "'1.5' is no value for --drop-chance"},
        {{"--split-at", "5,4"}, 2, "'5,4' is no value for --split-at"},
        {{"--port", "65536"}, 2, "'65536' is no value for --port"},
        {{"--address", "studio"}, 2, "'studio' is no value for --address"},
        {{"--seeds", "1"}, 2, "Unknown option 'seeds'"},
        {{"extra"}, 2, "what is 'extra'?"},
        {{"--clips", "/no/such/file"}, 2, "cannot read the clips from /no/such/file: "},
        {{"--address", "203.0.113.1"}, 1, "cannot listen on 203.0.113.1:8913: "},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(run(row.arguments), row.code) << row.says;
        EXPECT_TRUE(process.readAllStandardError().contains(row.says)) << row.says;
        EXPECT_EQ(process.readAllStandardOutput(), QByteArray());
    }
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_TRUE(process.readAllStandardOutput().contains("--drop-after"));
}

} // namespace
