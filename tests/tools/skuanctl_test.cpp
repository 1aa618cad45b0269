// The command line from end to end: what each verb prints, in both forms, and how every run ends.
#include "skuanctl.h"

#include <simulator/compact.h>
#include <support/ask_to_end.h>
#include <support/scale.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <future>
#include <mutex>
#include <set>
#include <utility>

using simulator::Faults;
using support::Ran;
using support::Station;
using testing::HasSubstr;

namespace {

#define ASK_NAME "<cmd><xid>1</xid><get_computer_name></get_computer_name></cmd>"

using Skuanctl = support::CoreApplication;

QStringList split(const QString& words)
{
    return words.split(' ', Qt::SkipEmptyParts);
}

/// Every line of `text` as an object; a line that is none makes the test fail.
std::vector<QJsonObject> objects(const QByteArray& text)
{
    std::vector<QJsonObject> all;
    for (const QByteArray& line : text.split('\n'))
        if (!line.isEmpty()) {
            all.push_back(QJsonDocument::fromJson(line).object());
            EXPECT_FALSE(all.back().isEmpty()) << line.constData();
        }
    return all;
}

/// Goes through a transcript, in which "$ " begins a command, "1$ " one that ends with that exit code, "< " a
/// line of its input, and "# " a remark: what `run` says of each command must be what stands there.
template <typename Run>
void follow(const char* name, Run run)
{
    QFile file(QStringLiteral(TRANSCRIPTS_FOLDER "/") + name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();
    QByteArray command, input, now;
    const auto end_command = [&] {
        if (command.isEmpty())
            return;
        const QByteArray words = command.left(command.indexOf('\n')).mid(2);
        const Ran ran = run(split(QString(words).replace("\\e", "\x1b")), std::exchange(input, {}));
        now +=
            (ran.code ? QByteArray::number(ran.code) : "") + std::exchange(command, {}) + ran.out + ran.err;
    };
    for (const QByteArray& line : before.split('\n')) {
        const int prompt = line.left(3).indexOf("$ ");
        if (prompt >= 0 || line.startsWith("# "))
            end_command();
        if (prompt >= 0)
            command = line.mid(prompt) + '\n';
        if (line.startsWith("< ")) {
            command += line + '\n';
            input += line.mid(2) + '\n';
        }
        if (line.startsWith("# "))
            now += line + '\n';
    }
    end_command();
    EXPECT_EQ(now.toStdString(), before.toStdString());
    if (qEnvironmentVariableIsSet("SKUAN_RENEW_DIALOGUES") && file.open(QIODevice::WriteOnly))
        file.write(now);
}

TEST_F(Skuanctl, PrintsWhatTheServerAnswers)
{
    const Station station("STUDIO <é>");
    follow("answers.txt",
           [&](const QStringList& words, const QByteArray& input) { return ask(station, words, input); });
    const Ran last = ask(station, {"raw", "<cmd><xid>1</xid><log><LogText>\x01</LogText></log></cmd>"});
    EXPECT_THAT(last.out.toStdString(), HasSubstr("its bytes are no messages")); // said before it hung up
    EXPECT_EQ(last.code, 5);
    const Ran refused = ask(station, {"raw"}, "<cmd><xid>\xff</xid><sync></sync></cmd>");
    EXPECT_THAT(refused.err.toStdString(), HasSubstr("message 1 is not well-formed"));
}

TEST_F(Skuanctl, TellsHowAConversationFailed)
{
    const struct
    {
        Faults faults;
        const char* words;
        int code;
        QString error;
        const char* message;
    } rows[] = {
        {{}, "layout --board oak", 2, "usage", "no board"},
        {{}, "clip list nowhere", 1, "server_error", "the server answered: no such directory"},
        {{}, "call download_clipids DirectoryName=nowhere", 1, "server_error", "no such directory"},
        {{}, "--host no..host info", 3, "cannot_connect", "cannot find host no..host"},
        {{}, "--host no..host config get X", 3, "cannot_connect", "cannot find host no..host"},
        {{.mute = true, .flood = true}, "info", 4, "timed_out", "gave no answer within 0.3 s"},
        {{.mute = true}, "raw " ASK_NAME, 4, "timed_out", "no answer"},
        {{.mute = true}, "config get X", 4, "timed_out", "no answer"},
        {{.refuse = true}, "info", 5, "connection_lost", "lost the connection"},
        {{.close_after_bytes = 20}, "clip list", 5, "connection_lost", "host closed"},
        {{.close_after_bytes = 0}, "config get X", 5, "connection_lost", "host closed"},
    };
    const Station station;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.words);
        station->set_faults(row.faults);
        const QStringList words =
            QStringList{"--json", "--timeout", row.code == 4 ? "0.3" : "10"} + split(row.words);
        Ran ran = ask(station, words);
        for (int more = 3; support::stood_in_for && row.code == 5 && ran.code == 4 && more > 0; --more)
            ran = ask(station, words); // wine may lose the end of a connection
        EXPECT_EQ(ran.code, row.code);
        const auto told = objects(ran.err);
        ASSERT_FALSE(told.empty());
        EXPECT_EQ(told.back()["error"], row.error);
        EXPECT_EQ(told.back()["exit_code"], row.code);
        EXPECT_EQ(told.back().contains("code"), row.code == 1);
        EXPECT_THAT(told.back()["message"].toString().toStdString(), HasSubstr(row.message));
    }
    station->set_faults({.refuse = true}); // each time that it is asked, and so for ever
    EXPECT_GE(ask(station, {"--timeout", "0.3", "config", "watch"}).code, 4);
}

/// A server that notes each command, and answers with the bodies that it is given, or `ok`.
class Scripted : public Station
{
public:
    explicit Scripted(std::vector<QByteArray> bodies = {"<ok/>"}, QByteArray then = {})
        : Station(Faults{.mute = true})
    {
        simulator::Server* const server = operator->();
        const auto answer = [this, server, bodies, then](quint64 client, const simulator::Element& message) {
            {
                const std::lock_guard lock(mutex_);
                commands_ += compact::from_message(message.children.at(1));
            }
            const QByteArray xid = message.child_text("xid").toUtf8();
            for (const QByteArray& body : bodies)
                server->send_raw(client, "<reply><xid>" + xid + "</xid>" + body + "</reply>");
            server->send_raw(client, then);
        };
        QObject::connect(server, &simulator::Server::command, server, answer, Qt::DirectConnection);
    }

    QStringList commands() const
    {
        const std::lock_guard lock(mutex_);
        return commands_;
    }

private:
    mutable std::mutex mutex_;
    QStringList commands_;
};

TEST_F(Skuanctl, SendsWhatItsVerbsStandFor)
{
    const Scripted station;
    int known = 0;
    follow("commands.txt", [&](const QStringList& words, const QByteArray& input) {
        Ran ran = ask(station, words, input);
        EXPECT_EQ(ran.out, words[0] == "call" ? "ok\n" : "");
        const QStringList sent = station.commands().mid(std::exchange(known, station.commands().size()));
        ran.out = sent.join('\n').toUtf8() + '\n';
        return ran;
    });
}

TEST_F(Skuanctl, AsksSeveralHosts)
{
    const Station one, two;
    const QString nobody = own_address();
    const QString first = one.address().toString(), second = two.address().toString();
    const QStringList hosts{"--host", QStringList{first, nobody, second}.join(',')};
    for (const QStringList& verb :
         {QStringList{"clip", "exists", "bars_and_tone"}, {"config", "get", "StopMode"}}) {
        const Ran ran = support::run(program, hosts + QStringList{"--json"} + verb);
        EXPECT_EQ(ran.code, 3);
        std::set<QString> answered;
        for (const QJsonObject& line : objects(ran.out))
            answered.insert(line["host"].toString());
        EXPECT_EQ(answered, (std::set<QString>{first, second}));
        EXPECT_EQ(objects(ran.err).at(0)["host"], nobody);
        EXPECT_EQ(objects(ran.err).at(0)["message"],
                  "cannot connect to " + nobody + " port 8913: Connection refused");
    }
    const int width = std::max({first.size(), nobody.size(), second.size()});
    EXPECT_THAT(support::run(program, hosts + split("clip exists bars_and_tone")).out.toStdString(),
                HasSubstr(first.leftJustified(width).toStdString() + "  true\n"));
}

TEST_F(Skuanctl, WritesAManualPageOfAllVerbs)
{
    const QString page = support::run(program, {"man"}).out;
    EXPECT_TRUE(page.contains("\n\\fBlist insert CHANNEL INDEX CLIP [OPTION...]\\fR\n"));
    // A word of a verb's row that its command does not know would be shown as it stands there.
    const auto stray = QRegularExpression("\\n(\\\\fB[a-z ]+ .*[A-Z][a-z]+.*)\\n").match(page);
    EXPECT_EQ(stray.captured(1), "");
}

TEST_F(Skuanctl, PrintsRepliesTyped)
{
    const QByteArray timecode =
        R"(<channel_current_timecode><Channel> A </Channel><DisplayTimecode><Valid>1</Valid>
<FieldNumber>-4</FieldNumber><New><x>1</x></New></DisplayTimecode><ClipLength>many</ClipLength></channel_current_timecode>)";
    const auto melt = [](const char* speed) {
        return "<melt_item><MeltItem><Speed>" + QByteArray(speed) + "</Speed></MeltItem></melt_item>";
    };
    const struct
    {
        std::vector<QByteArray> bodies;
        const char *words, *printed;
    } rows[] = {
        {{timecode}, "call get_current_timecode Channel=A", R"(channel_current_timecode
  Channel: A
  DisplayTimecode:
    Valid: 1
    FieldNumber: -4
    New: <New><x>1</x></New>
  ClipLength: many
)"},
        {{timecode},
         "--json call get_current_timecode Channel=A",
         R"({"kind":"reply","name":"channel_current_timecode","values":{"Channel":"A","ClipLength":"many","DisplayTimecode":{"FieldNumber":-4,"New":"<New><x>1</x></New>","Valid":true}}}
)"},
        {{"<disk_usage><TotalDiskSpace>9007199254740993</TotalDiskSpace>"
          "<AvailableDiskSpace>9007199254740992</AvailableDiskSpace></disk_usage>"},
         "--json call get_disk_usage",
         R"({"kind":"reply","name":"disk_usage","values":{"AvailableDiskSpace":9007199254740992,"TotalDiskSpace":"9007199254740993"}}
)"},
        {{"<melt_flags><MeltFlags><MeltFlagInhibitListNumbering>false</MeltFlagInhibitListNumbering></"
          "MeltFlags></melt_flags>",
          melt("-98304X"), melt("98304"), "<ok/>", "<melt_flags/>"},
         "--json call download_melts",
         R"({"kind":"reply","name":"melt_flags","values":{"MeltFlags":{"MeltFlagInhibitListNumbering":true}}}
{"kind":"reply","name":"melt_item","values":{"MeltItem":{"Speed":"-98304X"}}}
{"kind":"reply","name":"melt_item","values":{"MeltItem":{"Speed":1.5}}}
{"kind":"reply","name":"ok","values":{}}
)"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ask(Scripted(row.bodies), split(row.words)).out, row.printed);
}

TEST_F(Skuanctl, PrintsReportsOfTheClassesAsked)
{
    const QByteArray report = "<report><channel_speed><Channel>A</Channel><Speed>-1.5</Speed></channel_speed>"
                              "</report><report><config_changed/></report>";
    // The server tells on its own, too, how things stand.
    const auto ask_three = [&](const char* classes) {
        const Scripted station({"<ok/>"}, report);
        EXPECT_EQ(ask(station, split("--count 3 reports") + split(classes)).code, 0);
        return station.commands();
    };
    EXPECT_EQ(ask_three("melt A,B:speed,info clip_change userdict:a:b metadata:m"),
              QStringList({"reports_register ReportSet(ReportType=melt ReportType=clip_change)",
                           "channel_reports_register ChannelSet(Channel=A Channel=B) "
                           "ChannelReportSet(ChannelReportType=speed ChannelReportType=info)",
                           "userdict_watch Key=a:b", "watch_metadata_database MetadataDatabase=m"}));
    const QStringList everything = ask_three("");
    ASSERT_EQ(everything.size(), 2);
    EXPECT_EQ(everything[0].count("ReportType="), 12);
    EXPECT_EQ(everything[1].count("Channel="), 12);
    EXPECT_EQ(everything[1].count("ChannelReportType="), 8);

    const Scripted quiet({"<ok/>"}, report); // about clips there is nothing to tell on its own
    EXPECT_EQ(ask(quiet, split("--count 2 reports clip_change")).out,
              "channel_speed Channel=A Speed=-1.5\nconfig_changed\n");

    // With --timeout, a report that does not come ends the watch.
    const Ran late = ask(quiet, split("--timeout 0.3 clip watch"));
    EXPECT_EQ(late.code, 4);
    EXPECT_EQ(late.out.count('\n'), 2);
    EXPECT_EQ(late.err, "skuanctl: no report came within 0.3 s\n");

    const Scripted refusing({"<error><ErrorMessage>no</ErrorMessage><ErrorCode>general</ErrorCode></error>"});
    EXPECT_EQ(objects(ask(refusing, split("--json reports melt")).err).at(0)["code"], "general");
    for (const char* verb : {"info", "dict get k"}) {
        const Ran ran = ask(Scripted({"</oops>"}), split(verb));
        EXPECT_EQ(ran.code, 5);
        EXPECT_THAT(ran.err.toStdString(), HasSubstr("the server sent bytes that are no messages"));
    }
}

TEST_F(Skuanctl, StaysForReports)
{
    const Station station(Faults{
        .flood = true, .flood_report = "<report><clip_created><ClipID>a b</ClipID></clip_created></report>"});
    const auto told = objects(ask(station, split("--json --count 3 raw")).out);
    ASSERT_EQ(told.size(), 3u);
    EXPECT_EQ(told[0]["kind"], "report");
    EXPECT_EQ(told[0]["name"], "clip_created");

    station->set_faults({});
    EXPECT_EQ(ask(station, split("--listen 0.1 raw " ASK_NAME)).code, 0);
    EXPECT_EQ(ask(station, split("--timeout 0.1 --listen 0.3 dict own k v")).code, 0);
    const Ran ran = ask(station, split("--listen 0.1 --count 3 raw"));
    EXPECT_EQ(ran.code, 4);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("0 of 3 reports came within 0.1 s"));
}

TEST_F(Skuanctl, WatchesThroughLostConnections)
{
    const struct
    {
        const char *watch, *change, *shown, *then;
    } rows[] = {
        {"--count 2 config watch ReferenceSource", "config set ReferenceSource input1",
         "ReferenceSource=refin\n", "ReferenceSource=input1\n"},
        {"--count 2 dict watch show", "dict set show late", "show=evening\n", "show=late\n"},
        {"--count 3 monitor B,A --columns tally", "dict set Tally0 red", "CH  TALLY\nB   -\nA   -\n",
         "A   red\n"},
        {"--json --count 2 monitor B --columns=clip,speed", "cue B bars_and_tone",
         "{\"channel\":\"B\",\"clip\":null,\"speed\":0}\n",
         "{\"channel\":\"B\",\"clip\":\"bars_and_tone\",\"speed\":0}\n"},
    };
    const Station station;
    ask(station, split("dict set show evening"));
    for (const auto& row : rows) {
        QProcess watch;
        watch.start(program, to(station, split(row.watch)));
        ASSERT_TRUE(watch.waitForReadyRead());
        station->drop_clients();
        EXPECT_EQ(ask(station, split(row.change)).code, 0);
        ASSERT_TRUE(watch.waitForFinished());
        EXPECT_EQ(watch.exitCode(), 0);
        EXPECT_EQ(watch.readAllStandardOutput(), QByteArray(row.shown) + row.then);
        EXPECT_EQ(watch.readAllStandardError(), "");
    }
}

// Where no item is named, only what changes is told, and that from the listing on; which is lost at first.
TEST_F(Skuanctl, WatchesTheWholeConfiguration)
{
    const Station station;
    std::promise<void> listed;
    int listings = 0;
    QObject::connect(station.operator->(), &simulator::Server::command, station.operator->(),
                     [&](quint64, const simulator::Element& message) {
                         if (!message.child(QLatin1String("get_configuration")))
                             return;
                         if (++listings == 1)
                             station->drop_clients();
                         else
                             listed.set_value();
                     });
    QProcess watch;
    watch.start(program, to(station, split("--count 1 config watch")));
    listed.get_future().wait();
    EXPECT_EQ(ask(station, split("config set StopMode black")).code, 0);
    ASSERT_TRUE(watch.waitForFinished());
    EXPECT_EQ(watch.readAllStandardOutput(), "StopMode=black\n");
}

// Of a megabyte it hears nothing, and ends at once.
TEST_F(Skuanctl, EndsQuietlyWithItsReader)
{
    simulator::Settings settings;
    settings.clips = simulator::ClipStore::generated(100'000);
    const Station station(settings);
    QProcess writer, reader;
    writer.setStandardOutputProcess(&reader);
    writer.start(program, to(station, {"clip", "list"}));
    reader.start(program, {"--version"});
    ASSERT_TRUE(reader.waitForFinished());
    ASSERT_TRUE(writer.waitForFinished());
    EXPECT_EQ(writer.exitCode(), 6);
    EXPECT_EQ(writer.readAllStandardError(), "");
}

TEST_F(Skuanctl, EndsAtCtrlC)
{
    const Station station;
    for (const char* verb : {"--listen 600 raw " ASK_NAME, "config watch StopMode"}) {
        QProcess process;
        process.start(program, to(station, split(verb)));
        ASSERT_TRUE(process.waitForReadyRead()); // it listens now
        support::ask_to_end(process, support::Wish::interrupt);
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 130);
        EXPECT_EQ(process.readAllStandardError(), "");
    }
}

} // namespace
