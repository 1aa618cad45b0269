// The command line from end to end: what each verb prints, in both forms, and how every run ends.
#include <support/program.h>
#include <support/station.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <csignal>

using simulator::Faults;
using support::Ran;
using support::Station;
using testing::HasSubstr;

namespace {

const QString program = QStringLiteral(SKUANCTL);
const char* const ask_name = "<cmd><xid>1</xid><get_computer_name></get_computer_name></cmd>";

/// Every line of `text` as an object; a line that is none makes the test fail.
std::vector<QJsonObject> objects(const QByteArray& text)
{
    std::vector<QJsonObject> all;
    for (const QByteArray& line : text.split('\n')) {
        if (line.isEmpty())
            continue;
        QJsonParseError error;
        all.push_back(QJsonDocument::fromJson(line, &error).object());
        EXPECT_EQ(error.error, QJsonParseError::NoError) << line.constData();
    }
    return all;
}

using Skuanctl = support::CoreApplication;

QStringList to(const QHostAddress& address, const QStringList& rest)
{
    return QStringList{"--host", address.toString()} + rest;
}

Ran ask(const Station& station, const QStringList& rest, const QByteArray& input = {})
{
    return support::run(program, to(station.address(), rest), input);
}

TEST_F(Skuanctl, PrintsWhatTheServerAnswers)
{
    const Station station("STUDIO <é>");
    const QByteArray read_back =
        "<reply><xid>1</xid><computername><ComputerName>STUDIO &lt;é&gt;</ComputerName>"
        "</computername></reply>\n";
    const struct
    {
        QStringList arguments;
        QByteArray input, output;
    } rows[] = {
        {{"name"}, "", "STUDIO <é>\n"},
        {{"--json", "name"}, "", "{\"computer_name\":\"STUDIO <é>\"}\n"},
        {{"version", "--json"}, "", "{\"path\":\"trunk\",\"version\":\"4.12.0\"}\n"},
        {{"clips", "archive/1987"}, "", "archive/1987/opening_ceremony\narchive/1987/storm_footage_reel_3\n"},
        {{"raw", ask_name}, "", read_back},
        {{"raw"}, QByteArray("\r\n ") + ask_name + "\n" + ask_name, read_back + read_back},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(qPrintable(row.arguments.join(' ')));
        const Ran ran = ask(station, row.arguments, row.input);
        EXPECT_EQ(ran.code, 0);
        EXPECT_EQ(ran.out, row.output);
        EXPECT_EQ(ran.err, "");
    }
}

TEST_F(Skuanctl, RefusesBadUsageBeforeItConnects)
{
    const struct
    {
        QStringList arguments;
        QByteArray input, complaint;
    } rows[] = {
        {{}, "", "no verb is given"},
        {{"play"}, "", "there is no verb 'play'"},
        {{"name", "x"}, "", "what is 'x'?"},
        {{"--timeout", "nan", "name"}, "", "'nan' is no value for --timeout"},
        {{"--count", "3", "clips"}, "", "--count belongs to raw"},
        {{"raw"}, QByteArray(ask_name) + "<cmd><xid>2</xid><a b='1'/></cmd>", "message 2 is not well-formed"},
        {{"raw"}, "<cmd><xid>\xff</xid><sync></sync></cmd>", "message 1 is not well-formed"},
        {{"raw", "<reply><xid>1</xid></reply>"}, "", "message 1 is no <cmd>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.complaint.constData());
        const Ran people = support::run(program, row.arguments, row.input);
        EXPECT_EQ(people.code, 2);
        EXPECT_EQ(people.out, "");
        EXPECT_THAT(people.err.toStdString(), HasSubstr(row.complaint.toStdString()));

        const auto told =
            objects(support::run(program, QStringList{"--json"} + row.arguments, row.input).err);
        ASSERT_EQ(told.size(), 1u);
        EXPECT_EQ(told[0]["error"], "usage");
        EXPECT_THAT(told[0]["message"].toString().toStdString(), HasSubstr(row.complaint.toStdString()));
    }
}

TEST_F(Skuanctl, TellsWhyThereIsNoConnection)
{
    const std::string here = support::own_loopback_address();
    Ran ran = support::run(program, {"--host", here.c_str(), "--timeout", "7", "name"});
    EXPECT_EQ(ran.code, 3);
    EXPECT_EQ(ran.err, "skuanctl: cannot connect to " + QByteArray(here.c_str()) +
                           " port 8913 within 7 s: Connection refused\n");
    ran = support::run(program, {"--json", "--host", "no such host", "name"});
    EXPECT_EQ(ran.code, 3);
    EXPECT_EQ(objects(ran.err).at(0)["error"], "cannot_connect");
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("cannot find host no such host"));
}

TEST_F(Skuanctl, TellsHowAConversationFailed)
{
    const struct
    {
        Faults faults;
        QStringList arguments;
        int code;
        QString error;
        const char* message;
    } rows[] = {
        {{}, {"clips", "nowhere"}, 1, "server_error", "the server answered: no such directory"},
        {{}, {"raw", "<cmd><xid>1</xid><zap></zap></cmd>", ask_name}, 1, "", ""},
        {Faults{.mute = true}, {"name"}, 4, "timed_out", "gave no answer within 0.3 s"},
        {Faults{.mute = true}, {"raw", ask_name}, 4, "timed_out", "no answer"},
        {Faults{.refuse = true}, {"name"}, 5, "connection_lost", "lost the connection"},
        {Faults{.close_after_bytes = 20}, {"clips"}, 5, "connection_lost", "host closed"},
    };
    const Station station;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.code);
        station->set_faults(row.faults);
        const QStringList limit{"--json", "--timeout", row.code == 4 ? "0.3" : "20"};
        const Ran ran = ask(station, limit + row.arguments);
        EXPECT_EQ(ran.code, row.code);
        const auto told = objects(ran.err);
        if (row.error.isEmpty()) { // raw prints the server's error as what it is: a reply
            EXPECT_EQ(ran.err, "");
            EXPECT_EQ(objects(ran.out).size(), 2u);
            continue;
        }
        ASSERT_EQ(told.size(), 1u);
        EXPECT_EQ(told[0]["error"], row.error);
        EXPECT_EQ(told[0]["exit_code"], row.code);
        EXPECT_EQ(told[0].contains("code"), row.code == 1);
        EXPECT_THAT(told[0]["message"].toString().toStdString(), HasSubstr(row.message));
    }
}

TEST_F(Skuanctl, EndsAtBytesThatAreNoMessages)
{
    const Station station(Faults{.mute = true});
    simulator::Server* const server = station.operator->();
    QObject::connect(
        server, &simulator::Server::command, server,
        [server](quint64 client) { server->send_raw(client, "<reply><xid>1</oops></reply>"); },
        Qt::DirectConnection);
    const Ran ran = ask(station, {"--timeout", "20", "name"});
    EXPECT_EQ(ran.code, 5);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("it sent bytes that are no messages"));
}

TEST_F(Skuanctl, StaysForReports)
{
    const Station station(Faults{
        .flood = true, .flood_report = "<report><clip_created><ClipID>a b</ClipID></clip_created></report>"});
    Ran ran = ask(station, {"--json", "--count", "3", "raw"});
    EXPECT_EQ(ran.code, 0);
    ASSERT_EQ(objects(ran.out).size(), 3u);
    EXPECT_EQ(objects(ran.out)[0]["kind"], "report");
    EXPECT_EQ(objects(ran.out)[0]["name"], "clip_created");

    station->set_faults({});
    EXPECT_EQ(ask(station, {"--listen", "0.1", "raw", ask_name}).code, 0);
    ran = ask(station, {"--listen", "0.1", "--count", "3", "raw"});
    EXPECT_EQ(ran.code, 4);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("0 of 3 reports came within 0.1 s"));
}

TEST_F(Skuanctl, EndsQuietlyWithItsReaderAndLoudlyWithTheDisk)
{
    simulator::Settings settings;
    settings.clips = simulator::ClipStore::generated(20'000);
    const Station station(settings);
    const auto shell = [&](const char* command) {
        return support::run("/bin/sh", {"-c", command, program, station.address().toString()});
    };
    const Ran some = shell("\"$0\" --host \"$1\" clips | head -1");
    EXPECT_EQ(some.out, "load/clip_000000\n");
    EXPECT_EQ(some.err, "");
    const Ran full = shell("\"$0\" --host \"$1\" clips > /dev/full");
    EXPECT_EQ(full.code, 6);
    EXPECT_EQ(full.err, "skuanctl: cannot write the output: No space left on device\n");
}

TEST_F(Skuanctl, ShowsControlCharactersOnATerminalOnly)
{
    simulator::Settings settings;
    settings.clips = simulator::ClipStore();
    ASSERT_EQ(settings.clips.create_clip(QStringLiteral("a\\b\nc é")), simulator::ClipStore::Outcome::Done);
    const Station station(settings);
    EXPECT_EQ(ask(station, {"clips"}).out, "a\\b\nc é\n");

    const Ran none = support::run("script", {"-qec", "true", "/dev/null"});
    if (none.code != 0)
        GTEST_SKIP() << "this machine gives no terminals: " << none.err.constData();
    const QString clips = program + " " + to(station.address(), {"clips"}).join(' ');
    const Ran shown = support::run("script", {"-qec", clips, "/dev/null"});
    EXPECT_EQ(shown.out, "a\\\\b\\nc é\r\n1 clip\r\n");
}

TEST_F(Skuanctl, EndsAtCtrlC)
{
    const Station station;
    QProcess process;
    process.start(program, to(station.address(), {"--listen", "600", "raw", ask_name}));
    ASSERT_TRUE(process.waitForReadyRead()); // it listens now
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 130);
    EXPECT_EQ(process.readAllStandardError(), "");
}

} // namespace
