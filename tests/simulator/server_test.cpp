// What the server answers, what it refuses, and how its owner starts, steers and ends it.
#include "plain_client.h"

#include <support/ask_to_end.h>

#include <QTemporaryFile>

namespace {

using simulator::ClipStore;
using simulator::Settings;
using support::Station;

using ServerTest = SimulatorTest;

TEST_F(ServerTest, WhatIsNoCommandIsAnsweredToo)
{
    const std::pair<QByteArray, QByteArray> rows[] = {
        {cmd("a &amp; b", "<make_coffee />"),
         reply("a &amp; b", "<error>\r\n<ErrorMessage>unknown command &quot;make_coffee&quot;</ErrorMessage>"
                            "\r\n<ErrorCode>general</ErrorCode>\r\n</error>")},
        {"<cmd><sync /></cmd>", reply("", "<error>\r\n<ErrorMessage>the command has no xid</ErrorMessage>"
                                          "\r\n<ErrorCode>general</ErrorCode>\r\n</error>")},
    };
    const Station station;
    for (const auto& [command, answer] : rows)
        EXPECT_EQ(PlainClient(station).ask(command).toStdString(), answer.toStdString());
}

// Cut inside of tags, names, entities and multi-byte characters.
TEST_F(ServerTest, AMessageCutAnywhereIsOneMessage)
{
    const Station station;
    PlainClient client(station);
    const QByteArray command = cmd("1", "<clip_exists><ClipID>é&lt;🏆&#x416;</ClipID></clip_exists>");
    const QByteArray answer =
        reply("1", "<clipexists>\r\n<ClipID>é&lt;🏆Ж</ClipID>\r\n<Exists>false</Exists>\r\n</clipexists>");
    for (const char byte : command) {
        const auto before = station->counters().bytes_received;
        client.send(QByteArray(1, byte));
        ASSERT_TRUE(wait_until([&] { return station->counters().bytes_received > before; }));
    }
    EXPECT_EQ(client.read_replies(1), answer);
    EXPECT_EQ(client.ask(command.repeated(500) + command.left(20), 500), answer.repeated(500));
    EXPECT_EQ(client.ask(command.mid(20)), answer);
}

// Each of these ends the connection after an `error` that says why, and no other connection.
TEST_F(ServerTest, BytesThatAreNoMessagesEndTheConnection)
{
    const QByteArray rows[] = {
        "GET / HTTP/1.1\r\n\r\n",
        "</cmd>",
        "<cmd><xid>1</xid><a>&unknown;</a></cmd>",
        "<cmd>\xff\xfe</cmd>",
        "<?xml version=\"1.0\"?>",
        "<!DOCTYPE cmd [<!ENTITY a \"aaaa\">]>",
        QByteArray("<a>").repeated(1000),
        "</stream>",
        "<" + QByteArray(10000, 'x'),
    };
    const Station station;
    PlainClient steady(station);
    quint64 malformed = 0;
    for (const QByteArray& row : rows) {
        PlainClient client(station);
        ASSERT_EQ(client.ask(names(1, 1)), name_replies(1, 1));
        client.send(row);
        EXPECT_TRUE(client.is_closed()) << row.left(40).toStdString();
        EXPECT_EQ(client.socket.readAll().count("<ErrorMessage>the connection ends"), 1)
            << row.left(40).toStdString();
        EXPECT_EQ(station->counters().malformed, ++malformed) << row.left(40).toStdString();
    }
    EXPECT_EQ(steady.ask(names(1, 1)), name_replies(1, 1));
}

TEST_F(ServerTest, AMessageWithoutEndIsCutOff)
{
    Settings settings;
    settings.max_message = 100 * 1024;
    const Station station(settings);
    PlainClient client(station);
    const QByteArray start = "<cmd><xid>1</xid><clip_exists><ClipID>";
    const QByteArray end = "</ClipID></clip_exists></cmd>";
    EXPECT_EQ(client.ask(start + QByteArray(90 * 1024, 'x') + end).count("<Exists>false"), 1);
    client.send(start);
    for (int i = 0; i < 100 && client.socket.state() == QAbstractSocket::ConnectedState; ++i)
        client.send(QByteArray(64 * 1024, 'x'));
    EXPECT_TRUE(client.is_closed());
    EXPECT_LT(station->counters().bytes_received, 1024 * 1024u);
}

TEST_F(ServerTest, AClientThatNeverReadsIsDropped)
{
    Settings settings;
    settings.clips = ClipStore::generated(20000);
    settings.max_backlog = 8 * 1024 * 1024;
    const Station station(settings);
    PlainClient deaf(station), other(station);
    deaf.socket.setReadBufferSize(1);
    deaf.send(cmd("1", "<download_clipids />").repeated(50));
    EXPECT_TRUE(wait_until([&] { return station->counters().overrun == 1; }));
    EXPECT_EQ(other.ask(names(2, 2)), name_replies(2, 2));
    EXPECT_EQ(station->counters().connected, 1u);
}

TEST_F(ServerTest, ClientsThatNeverReadShareOneBound)
{
    Settings settings;
    settings.clips = ClipStore::generated(20000); // an answer of some 2 MB
    settings.max_total_backlog = 8 * 1024 * 1024;
    settings.faults.hold = true;
    const Station station(settings);
    std::vector<std::unique_ptr<PlainClient>> deaf;
    for (int i = 0; i < 8; ++i) {
        deaf.push_back(std::make_unique<PlainClient>(station));
        deaf.back()->send(cmd("1", "<download_clipids />"));
    }
    EXPECT_TRUE(wait_until([&] { return station->counters().messages == deaf.size(); }));
    EXPECT_TRUE(wait_until([&] { return station->counters().overrun > 0; }));
    EXPECT_LT(station->counters().overrun, deaf.size());
    deaf.clear(); // gives back what waited
    EXPECT_TRUE(wait_until([&] { return station->counters().connected == 0; }));
    station->set_faults({});
    PlainClient other(station);
    EXPECT_GT(other.ask(cmd("1", "<download_clipids />"), 20001).size(), 1024 * 1024);
}

const auto skuan_sim = [] { return QCoreApplication::applicationDirPath() + "/../bin/skuan-sim"; };

TEST_F(ServerTest, TheProgramServesUntilItIsAskedToEnd)
{
    QTemporaryFile clips;
    ASSERT_TRUE(clips.open());
    clips.write("# one\nnews/élan\n");
    clips.close();
    const QString address = QString::fromStdString(support::own_loopback_address());
    for (const support::Wish wish : {support::Wish::end, support::Wish::interrupt}) {
        QProcess process;
        process.start(skuan_sim(), {"--address", address, "--port", "0", "--name", "A&B", "--clips",
                                    clips.fileName(), "--split", "3"});
        ASSERT_TRUE(process.waitForReadyRead(patience_ms));
        const QString line = QString::fromUtf8(process.readAllStandardOutput());
        ASSERT_TRUE(line.startsWith("listening on " + address + ":") && line.endsWith("\n"))
            << qPrintable(line);

        PlainClient client(address, line.trimmed().section(QLatin1Char(':'), -1).toUShort());
        const QByteArray got = client.ask(names(1, 1) + cmd("2", "<download_clipids />"), 3);
        EXPECT_TRUE(got.contains("<ComputerName>A&amp;B<") && got.contains("<ClipID>news/élan<"));

        support::ask_to_end(process, wish);
        ASSERT_TRUE(process.waitForFinished(patience_ms));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_EQ(process.readAllStandardError(), QByteArray());
    }
}

TEST_F(ServerTest, TheProgramRefusesWhatItCannotDo)
{
    const Station other;
    const QString taken = other.address().toString();
    const struct
    {
        QStringList arguments;
        int code;
        const char* says;
    } rows[] = {
        {{"--drop-chance", "1.5"}, 2, "'1.5' is no value for --drop-chance"},
        {{"--split-at", "5,4"}, 2, "'5,4' is no value for --split-at"},
        {{"extra"}, 2, "what is 'extra'?"},
        {{"--clips", "/no/such/file"}, 2, "cannot read /no/such/file: "},
        {{"--address", "203.0.113.1"}, 1, "cannot listen on 203.0.113.1:8913: "},
        {{"--address", taken, "--port", "0"}, 1, "; --status-port 0 does without it\n"},
    };
    for (const auto& row : rows) {
        const support::Ran ran = support::run(skuan_sim(), row.arguments);
        EXPECT_EQ(ran.code, row.code) << row.says;
        EXPECT_TRUE(ran.err.contains(row.says)) << row.says;
        EXPECT_EQ(ran.out, QByteArray());
    }
}

} // namespace
