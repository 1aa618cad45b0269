// What the server answers to commands, to messages that are none, and who gets reports of changes.
#include "plain_client.h"

namespace {

using simulator::ClipStore;
using simulator::Settings;

QByteArray error(const char* xid, const QByteArray& message, const QByteArray& code = "general")
{
    return reply(xid, "<error>\r\n<ErrorMessage>" + message + "</ErrorMessage>\r\n<ErrorCode>" + code +
                          "</ErrorCode>\r\n</error>");
}

QByteArray ok(const char* xid)
{
    return reply(xid, "<ok/>");
}

QByteArray value(const char* xid, const QByteArray& name, const QByteArray& tag, const QByteArray& text)
{
    return reply(xid, "<" + name + ">\r\n<" + tag + ">" + text + "</" + tag + ">\r\n</" + name + ">");
}

Settings small_station()
{
    Settings settings;
    settings.clips = ClipStore();
    for (const char* clip : {"ident", "news/a & b", "news/élections", "sports/derby \"live\""})
        settings.clips.create_clip(QString::fromUtf8(clip));
    settings.computer_name = QStringLiteral("STUDIO <3>");
    return settings;
}

class Answers : public SimulatorTest
{
};

// In this order on one connection: later rows see what earlier rows changed.
TEST_F(Answers, EachCommandGetsItsAnswer)
{
    const struct
    {
        QByteArray command, answer;
    } rows[] = {
        {cmd("1", "<get_computer_name />"), value("1", "computername", "ComputerName", "STUDIO &lt;3&gt;")},
        {cmd("2", "<get_version_info></get_version_info>"),
         reply("2", "<version_info>\r\n<SVNVersion>4.12.0</SVNVersion>\r\n<SVNPath>trunk</SVNPath>\r\n</"
                    "version_info>")},
        {cmd("none3", "<download_clipids />"),
         value("none3", "clipid", "ClipID", "ident") + value("none3", "clipid", "ClipID", "news/a &amp; b") +
             value("none3", "clipid", "ClipID", "news/élections") +
             value("none3", "clipid", "ClipID", "sports/derby &quot;live&quot;") + ok("none3")},
        {cmd("4", "<download_clipids><DirectoryName>sports</DirectoryName></download_clipids>"),
         value("4", "clipid", "ClipID", "sports/derby &quot;live&quot;") + ok("4")},
        {cmd("5", "<download_clipids><DirectoryName /></download_clipids>"),
         value("5", "clipid", "ClipID", "ident") + ok("5")},
        {cmd("6", "<download_clipids><DirectoryName>no</DirectoryName></download_clipids>"),
         error("6", "no such directory &quot;no&quot;")},
        {cmd("7", "<download_directory_names />"),
         value("7", "directory_name", "DirectoryName", "news") +
             value("7", "directory_name", "DirectoryName", "sports") + ok("7")},
        {cmd("8", "<clip_exists><ClipID>news/&#233;lections</ClipID></clip_exists>"),
         reply("8",
               "<clipexists>\r\n<ClipID>news/élections</ClipID>\r\n<Exists>true</Exists>\r\n</clipexists>")},
        {cmd("9", "<clip_exists><ClipID> ident</ClipID></clip_exists>"),
         reply("9", "<clipexists>\r\n<ClipID> ident</ClipID>\r\n<Exists>false</Exists>\r\n</clipexists>")},
        {cmd("10", "<clip_exists />"), error("10", "clip_exists needs a ClipID")},
        {cmd("11", "<delete_clip><ClipID>gone</ClipID></delete_clip>"),
         error("11", "no such clip &quot;gone&quot;", "clipnotfound")},
        {cmd("12", "<delete_clip><ClipID>ident</ClipID></delete_clip>"), ok("12")},
        {cmd("13", "<rename_clip><FromID>news/a &amp; b</FromID><ToID>archive/1987/a</ToID></rename_clip>"),
         ok("13")},
        {cmd("14", "<rename_clip><FromID>news/élections</FromID><ToID>archive/1987/a</ToID></rename_clip>"),
         error("14", "the clip &quot;archive/1987/a&quot; exists already")},
        {cmd("15", "<rename_clip><FromID>news/élections</FromID><ToID>/a</ToID></rename_clip>"),
         error("15", "&quot;/a&quot; cannot be the name of this clip")},
        {cmd("16", "<create_directory><DirectoryName>graphics</DirectoryName></create_directory>"), ok("16")},
        {cmd("17", "<create_directory><DirectoryName>graphics</DirectoryName></create_directory>"),
         error("17", "the directory &quot;graphics&quot; exists already")},
        {cmd("18", "<rename_dir><FromDir>archive</FromDir><ToDir>archive/old</ToDir></rename_dir>"),
         error("18", "&quot;archive/old&quot; cannot be the name of this directory")},
        {cmd("19", "<rename_dir><FromDir>archive</FromDir><ToDir>vault/deep</ToDir></rename_dir>"), ok("19")},
        {cmd("20", "<download_clipids />"),
         value("20", "clipid", "ClipID", "news/élections") +
             value("20", "clipid", "ClipID", "sports/derby &quot;live&quot;") +
             value("20", "clipid", "ClipID", "vault/deep/1987/a") + ok("20")},
        {cmd("21",
             "<download_directory_names><DirectoryName>vault</DirectoryName></download_directory_names>"),
         value("21", "directory_name", "DirectoryName", "vault/deep") + ok("21")},
        {cmd("22", "<report_register><ReportType>rumours</ReportType></report_register>"),
         error("22", "unknown report type &quot;rumours&quot;")},
        {cmd("a &amp; b", "<make_coffee />"), error("a &amp; b", "unknown command &quot;make_coffee&quot;")},

        {"<cmd><sync /></cmd>", error("", "the command has no xid")},
        {cmd("23", ""), error("23", "the message holds no command")},
        {cmd("24", "<sync /><sync />"),
         error("24", "the message holds more than one command, or more than one xid")},
        {"<report><xid>25</xid><sync /></report>",
         error("25", "the message is &lt;report&gt;, not &lt;cmd&gt;")},
        {"\r\n\t <cmd ><xid\n>26</xid><get_computer_name/></cmd >\r\n",
         value("26", "computername", "ComputerName", "STUDIO &lt;3&gt;")},
    };
    PlainClient client(start(small_station()));
    for (const auto& row : rows)
        EXPECT_EQ(client.ask(row.command, row.answer.count("</reply>")).toStdString(),
                  row.answer.toStdString())
            << row.command.toStdString();
}

// A cut inside of tags, names, entities and multi-byte characters; and at every one of them at once.
TEST_F(Answers, AMessageCutAnywhereIsOneMessage)
{
    PlainClient client(start());
    const QByteArray name = "é&lt;🏆&#x416;";
    const QByteArray command = cmd("1", "<clip_exists><ClipID>" + name + "</ClipID></clip_exists>");
    const QByteArray answer =
        reply("1", "<clipexists>\r\n<ClipID>é&lt;🏆Ж</ClipID>\r\n<Exists>false</Exists>\r\n</clipexists>");
    for (int cut = 0; cut <= command.size(); ++cut) {
        const auto before = thread->server()->counters().bytes_received;
        client.send(command.left(cut));
        ASSERT_TRUE(wait_until([&] {
            return thread->server()->counters().bytes_received == before + static_cast<quint64>(cut);
        }));
        ASSERT_EQ(client.ask(command.mid(cut)), answer) << "cut at " << cut;
    }
    for (const char byte : command)
        client.send(QByteArray(1, byte));
    EXPECT_EQ(client.read_replies(1), answer);

    client.send(command.repeated(500) + command.left(20));
    EXPECT_EQ(client.read_replies(500), answer.repeated(500));
    EXPECT_EQ(client.ask(command.mid(20)), answer);
}

TEST_F(Answers, ClientsDoNotDisturbEachOther)
{
    start();
    PlainClient first(*thread->server()), second(*thread->server());
    first.send("<cmd><xid>1</xid><get_comp");
    EXPECT_EQ(second.ask(name_command("2")), name_reply("2"));
    second.send("</junk>");
    EXPECT_TRUE(second.is_closed());
    EXPECT_EQ(first.ask("uter_name /></cmd>"), name_reply("1"));
}

TEST_F(Answers, ChangesAreReportedToThoseWhoRegistered)
{
    start(small_station());
    PlainClient listener(*thread->server()), actor(*thread->server());
    const QByteArray register_clips =
        "<report_register><ReportType>clip_change</ReportType></report_register>";
    ASSERT_EQ(listener.ask(cmd("1", register_clips)), ok("1"));
    EXPECT_EQ(actor.ask(cmd("2", "<create_directory><DirectoryName>d</DirectoryName></create_directory>")),
              ok("2"));
    EXPECT_EQ(actor.ask(cmd("3", "<rename_clip><FromID>ident</FromID><ToID>d/x</ToID></rename_clip>")),
              ok("3"));
    const QByteArray reports =
        "<report>\r\n<clip_deleted>\r\n<ClipID>ident</ClipID>\r\n</clip_deleted>\r\n</report>\r\n"
        "<report>\r\n<clip_created>\r\n<ClipID>d/x</ClipID>\r\n</clip_created>\r\n</report>\r\n";
    EXPECT_EQ(listener.read_bytes(reports.size()), reports);
}

// Each of these ends the connection after an `error` that says why, and no other.
TEST_F(Answers, BytesThatAreNoMessagesEndTheConnection)
{
    const QByteArray rows[] = {
        "GET / HTTP/1.1\r\n\r\n",
        "</cmd>",
        "<cmd></reply>",
        "<cmd><xid>1</xid><a>&unknown;</a></cmd>",
        "<cmd><a>1 < 2</a></cmd>",
        "<cmd>\xff\xfe</cmd>",
        "<cmd><!-- x --></cmd>",
        "<?xml version=\"1.0\"?>",
        "<!DOCTYPE cmd [<!ENTITY a \"aaaa\">]>",
        "<cmd><![CDATA[x]]></cmd>",
        QByteArray("<a>").repeated(1000),
        QByteArray(3, '\0'),
        "</stream>",
        "<" + QByteArray(10000, 'x'),
    };
    simulator::Server& server = start();
    quint64 malformed = 0;
    for (const QByteArray& row : rows) {
        PlainClient client(server);
        client.send(name_command("1"));
        ASSERT_EQ(client.read_replies(1), name_reply("1"));
        client.send(row);
        EXPECT_TRUE(client.is_closed()) << row.left(40).toStdString();
        EXPECT_EQ(client.socket.readAll().count("<ErrorMessage>the connection ends"), 1)
            << row.left(40).toStdString();
        EXPECT_EQ(server.counters().malformed, ++malformed) << row.left(40).toStdString();
    }
}

TEST_F(Answers, AMessageWithoutEndIsCutOff)
{
    Settings settings;
    settings.max_message = 100 * 1024;
    simulator::Server& server = start(settings);
    PlainClient client(server);
    client.send("<cmd><xid>1</xid><clip_exists><ClipID>" + QByteArray(90 * 1024, 'x') +
                "</ClipID></clip_exists></cmd>");
    EXPECT_EQ(client.read_replies(1).count("<Exists>false"), 1);
    client.socket.write("<cmd><xid>1</xid><clip_exists><ClipID>");
    for (int i = 0; i < 100 && client.socket.state() == QAbstractSocket::ConnectedState; ++i)
        client.send(QByteArray(64 * 1024, 'x'));
    EXPECT_TRUE(client.is_closed());
    EXPECT_LT(server.counters().bytes_received, 1024 * 1024u);
}

TEST_F(Answers, AClientThatNeverReadsIsDropped)
{
    Settings settings;
    settings.clips = ClipStore::generated(20000);
    settings.max_backlog = 8 * 1024 * 1024;
    simulator::Server& server = start(settings);
    PlainClient deaf(server), other(server);
    deaf.socket.setReadBufferSize(1);
    deaf.send(cmd("1", "<download_clipids />").repeated(50));
    EXPECT_TRUE(wait_until([&] { return server.counters().overrun == 1; }));
    EXPECT_EQ(other.ask(name_command("2")), name_reply("2"));
    EXPECT_EQ(server.counters().connected, 1u);
}

TEST(ClipList, IsReadLineByLine)
{
    QString error;
    const ClipStore store =
        ClipStore::from_text("# evening\n\nnews/one\r\n  two words \nempty/\nempty/\nnews/é", &error);
    EXPECT_EQ(error, QString());
    EXPECT_EQ(store.clips(), QStringList({"two words", "news/one", QString::fromUtf8("news/é")}));
    EXPECT_EQ(store.directories(), QStringList({"empty", "news"}));

    EXPECT_EQ(ClipStore::from_text("a\nb\na\n", &error).clip_count(), 0);
    EXPECT_EQ(error, QString("line 3: \"a\" is there twice"));
    ClipStore::from_text("a//b", &error);
    EXPECT_EQ(error, QString("line 1: \"a//b\" is not a name"));
}

} // namespace
