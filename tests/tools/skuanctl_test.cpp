// The command line from end to end: what each verb prints, in both forms, and how every run ends.
#include <support/program.h>
#include <support/station.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <csignal>
#include <future>
#include <mutex>
#include <set>

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
    for (const QByteArray& line : text.split('\n'))
        if (!line.isEmpty()) {
            all.push_back(QJsonDocument::fromJson(line).object());
            EXPECT_FALSE(all.back().isEmpty()) << line.constData();
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
        {{"clip", "exists", "bars_and_tone"}, "", "true\n"},
        {{"--json", "clip", "list", "archive/1987"},
         "",
         "{\"ClipID\":\"archive/1987/opening_ceremony\"}\n{\"ClipID\":\"archive/1987/"
         "storm_footage_reel_3\"}\n"},
        {{"clip", "list", "archive/1987"},
         "",
         "archive/1987/opening_ceremony\narchive/1987/storm_footage_reel_3\n"},
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
        const char* words;
        std::string complaint;
        QByteArray input = {};
    } rows[] = {
        {"", "no verb is given"},
        {"plai", "there is no verb 'plai'; did you mean play?"},
        {"info x", "info takes no 'x'; see info --help"},
        {"--timeout nan info", "'nan' is no value for --timeout, which takes SECONDS; see --help"},
        {"clip delete -x", "a value that looks like one stands behind --"},
        {"clip create \x1b", "no control characters"},
        {"--count 3 clip list", "--count belongs to verbs that stay"},
        {"raw", "message 2 is not well-formed", QByteArray(ask_name) + "<cmd><xid>2</xid><a b='1'/></cmd>"},
        {"raw", "message 1 is not well-formed", "<cmd><xid>\xff</xid><sync></sync></cmd>"},
        {"raw <reply><xid>1</xid></reply>", "message 1 is no <cmd>"},
        {"call", "call needs COMMAND"},
        {"call cue_clp", "there is no command 'cue_clp'; did you mean cue_clip?"},
        {"call cue_clp --help", "did you mean cue_clip?"},
        {"call sync ClipID=x", "sync takes no arguments"},
        {"call play Chanel=A", "play has no 'Chanel'; did you mean Channel?"},
        {"call cue_clip ClipID=x", "cue_clip needs Channel: one of A, B, C"},
        {"call cue_clip ClipID=x ClipID=x", "ClipID is given twice"},
        {"call iso_angle Angle=256", "'256' is no value for Angle, which takes a whole number from 0 to 255"},
        {"call jog JogDistance=0x10", "from -2147483648 to 2147483647"},
        {"call play Speed=32768", "a multiple of normal speed"},
        {"call ee AutoEE=1", "true or false"},
        {"call stop Channel", "Channel needs a value"},
        {"call stop Channel.x=A", "Channel has no parts"},
        {"call gang_stop ChannelSet=A,,B", "'' is no value for ChannelSet"},
        {"call list_bed Channel=A ListElement=x", "ListElement takes no value but its parts ContentID,"},
        {"call list_bed Channel=A ListElement.Angle=1", "ListElement needs ContentID"},
        {"call metadata_set MetadataList.Metadata[1].Key=a", "Metadata[1] needs Metadata[0] before it"},
        {"call metadata_set MetadataDatabase=d MetadataList.Metadata.Key=a MetadataList.Metadata.Key=b"
         " MetadataList.Metadata[0].Key=?",
         "is given twice"},
        {"layout --board oak", "'oak' is no board, which is one of sorrel,"},
        {"reports clip_changes", "did you mean clip_change?"},
        {"reports A,Z:status", "'Z' is no value for ChannelSet"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.words);
        const QStringList words = QString(row.words).split(' ', Qt::SkipEmptyParts);
        const Ran people = support::run(program, words, row.input);
        EXPECT_EQ(people.code, 2);
        EXPECT_EQ(people.out, "");
        EXPECT_THAT(people.err.toStdString(), HasSubstr(row.complaint));

        const auto told = objects(support::run(program, QStringList{"--json"} + words, row.input).err);
        ASSERT_EQ(told.size(), 1u);
        EXPECT_EQ(told[0]["error"], "usage");
        EXPECT_THAT(told[0]["message"].toString().toStdString(), HasSubstr(row.complaint));
    }
}

TEST_F(Skuanctl, TellsWhyThereIsNoConnection)
{
    const std::string here = support::own_loopback_address();
    Ran ran = support::run(program, {"--host", here.c_str(), "--timeout", "7", "info"});
    EXPECT_EQ(ran.code, 3);
    EXPECT_EQ(ran.err,
              "skuanctl: cannot connect to " + QByteArray(here.c_str()) + " port 8913: Connection refused\n");
    ran = support::run(program, {"--json", "--host", "no such host", "info"});
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
        {{}, {"clip", "list", "nowhere"}, 1, "server_error", "the server answered: no such directory"},
        {{}, {"call", "download_clipids", "DirectoryName=nowhere"}, 1, "server_error", "no such directory"},
        {{}, {"raw", "<cmd><xid>1</xid><zap></zap></cmd>", ask_name}, 1, "", ""},
        {Faults{.mute = true, .flood = true}, {"info"}, 4, "timed_out", "gave no answer within 0.3 s"},
        {Faults{.mute = true}, {"raw", ask_name}, 4, "timed_out", "no answer"},
        {Faults{.refuse = true}, {"info"}, 5, "connection_lost", "lost the connection"},
        {Faults{.close_after_bytes = 20}, {"clip", "list"}, 5, "connection_lost", "host closed"},
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

/// An element in short, as in `gang_stop(ChannelSet(Channel=B Channel=A))`.
QString written(const simulator::Element& element)
{
    QStringList children;
    for (const simulator::Element& child : element.children)
        children += written(child);
    if (!children.isEmpty())
        return element.tag + "(" + children.join(' ') + ")";
    return element.text.isEmpty() ? element.tag : element.tag + "=" + element.text;
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
                commands_ += written(message.children.at(1));
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

TEST_F(Skuanctl, EndsAtBytesThatAreNoMessages)
{
    const Ran ran = ask(Scripted({"</oops>"}), {"--timeout", "20", "info"});
    EXPECT_EQ(ran.code, 5);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("it sent bytes that are no messages"));
}

TEST_F(Skuanctl, CallsInTheOrderOfTheWire)
{
    const std::pair<QStringList, QString> rows[] = {
        {{"cue_clip", "BlackOnCue", "Speed=-0.5", "ClipID= a=b.c<", "Loop=loopto", "Channel=C"},
         "cue_clip(Channel=C ClipID= a=b.c< Loop=loopto Speed=-0.5 BlackOnCue)"},
        {{"gang_stop", "MinLatency=false", "ChannelSet=B,A,B", "ChannelSet=L"},
         "gang_stop(ChannelSet(Channel=B Channel=A Channel=L))"},
        {{"list_bed", "ListElement.Transition.TransitionType=cut", "Channel=A", "ListElement.Angle=255",
          "ListElement.ContentID.VClipID=v"},
         "list_bed(Channel=A ListElement(ContentID(VClipID=v) Angle=255 Transition(TransitionType=cut)))"},
        {{"metadata_set", "MetadataList.Metadata.Value=1", "MetadataList.Metadata.Key=a",
          "MetadataList.Metadata.Key=b", "MetadataList.Metadata[1].Value=2", "MetadataDatabase=d"},
         "metadata_set(MetadataDatabase=d MetadataList(Metadata(Key=a Value=1) Metadata(Key=b Value=2)))"},
        {{"metadata_erase", "MetadataDatabase=", "KeyList=a,b", "KeyList="},
         "metadata_erase(MetadataDatabase KeyList(Key=a,b Key))"},
        {{"modify_clip_attributes", "ClipAttrChange.KeyList", "ClipID=x"},
         "modify_clip_attributes(ClipID=x ClipAttrChange(KeyList))"},
    };
    for (const auto& [words, sent] : rows) {
        const Scripted station;
        const Ran ran = ask(station, QStringList("call") + words);
        EXPECT_EQ(ran.code, 0) << ran.err.constData();
        EXPECT_EQ(ran.out, "ok\n");
        EXPECT_EQ(station.commands(), QStringList(sent));
    }
}

TEST_F(Skuanctl, SendsWhatItsVerbsStandFor)
{
    const struct
    {
        const char* words;
        QStringList sent;
        QByteArray input = {};
    } rows[] = {
        {"cue A x --at 5 --out 9 --vclip --black",
         {"cue_clip(Channel=A ClipID=x GotoPosition=5 ClipPosition=9 ClipScope=vclip BlackOnCue)"}},
        {"play A --speed -0.5", {"play(Channel=A Speed=-0.5)"}},
        {"gang play A,B --at 7", {"gang_go_at(ChannelSet(Channel=A Channel=B) GotoPosition=7)"}},
        {"jog A -10", {"jog(Channel=A JogDistance=-10)"}},
        {"loop in A 0", {"set_loop_in(Channel=A LoopIn=0)"}},
        {"loop in A off", {"clear_loop_in(Channel=A)"}},
        {"ee A 3 --auto", {"ee(Channel=A SonyEditMask=3 AutoEE=true)"}},
        {"gang ee A 3", {"gang_ee(ChannelSet(Channel=A) SonyEditMask=3 AutoEE=false)"}},
        {"precue activate B", {"precue_activate(Channel=B)"}},
        {"record A x --length 9",
         {"create_clip(ClipID=x TrackSet(TrackType=video TrackType=audio TrackType=timecode) ClipLength=9 "
          "Channel=A)"}},
        {"clip create x --tracks key", {"create_clip(ClipID=x TrackSet(TrackType=key))"}},
        {"clip set x --title= --trim-start 4 --metadata a=b=c --metadata d= --remove e --frame0 8 "
         "--track-trim video=2",
         {"modify_clip_attributes(ClipID=x ClipAttrChange(Title MetadataList(Metadata(Key=a Value=b=c) "
          "Metadata(Key=d Value)) KeyList(Key=e) TrimStart=4 TrackAttrVector(TrackAttr(TrackType=video "
          "TrimStart=2)) Frame0Timecode(FieldNumber=8)))"}},
        {"clip delete x y", {"delete_clip(ClipID=x)", "delete_clip(ClipID=y)"}},
        {"clip delete -- -x", {"delete_clip(ClipID=-x)"}},
        {"list insert A 2 v --vclip --end pause --transition cut",
         {"list_insert(Channel=A ListIndex=2 ListElement(ContentID(VClipID=v) ListElementAtEnd=pause "
          "Transition(TransitionType=cut)))"}},
        {"list next A 3", {"list_play_next(Channel=A ListIndex=3 Roll=roll)"}},
        {"list reorder A 0 4 5",
         {"list_play_reorder_start(Channel=A)", "list_play_reorder_item(ListIndex=4)",
          "list_play_reorder_item(ListIndex=5)", "list_play_reorder_finish(ListIndex=0)"}},
        {"chase save c",
         {"chase_save_start(ChaseID=c)",
          "chase_save_element(ChaseElement(ContentID(ClipID=x y) Speed=0.0000152587890625 "
          "TcStartTrigger=90))",
          "chase_save_end"},
         "{\"ContentID\":{\"ClipID\":\"x "
         "y\"},\"Speed\":0.0000152587890625,\"TcStartTrigger\":90,\"host\":\"h\"}\n"},
        {"vclip edit -- -v",
         {"vclip_modification_start(VClipID=-v)",
          "vclip_add_segment(VClipID=-v ClipID=x y ClipPosition=0 TrackSet(TrackType=video) VClipPosition=10 "
          "ClipLength=25 Speed=2)",
          "vclip_ripple(VClipID=-v TrackSet(TrackType=audio) VClipPosition=10 VClipDistance=-5)",
          "vclip_modification_end(VClipID=-v)"},
         "add \"x y\" 0 video 10 25 --speed 2\n\nripple audio 10 -5\n"},
        {"dict set k =", {"userdict_set(Key=k Value==)"}},
        {"meta set d a=1 b=2 --prefix p",
         {"metadata_set(MetadataDatabase=d MetadataList(Metadata(Key=a Value=1) Metadata(Key=b Value=2)) "
          "MetadataPrefix=p)"}},
        {"meta erase d a b", {"metadata_erase(MetadataDatabase=d KeyList(Key=a Key=b))"}},
        {"export x=x.mxf y=y.mxf --at 5",
         {"export_start", "export_add(ClipID=x Filename=x.mxf ClipPosition=5)",
          "export_add(ClipID=y Filename=y.mxf ClipPosition=5)", "export_end"}},
        {"log write t --error",
         {"log(LogFilename=skuanctl LogLine=0 LogClient=skuanctl LogText=t LogError)"}},
    };
    const Scripted station;
    int known = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.words);
        const Ran ran = ask(station, QString(row.words).split(' '), row.input);
        EXPECT_EQ(ran.code, 0) << ran.err.constData();
        EXPECT_EQ(ran.out, "");
        EXPECT_EQ(station.commands().mid(known), row.sent);
        known = station.commands().size();
    }
}

TEST_F(Skuanctl, TellsAtWhichStepAnEditEnded)
{
    const Station station;
    const auto failure = [&](const char* words, const QByteArray& input = {}) {
        return ask(station, QString(words).split(' '), input).err.toStdString();
    };
    EXPECT_EQ(
        failure("clip delete news/weather_tonight nothing archive/1987/opening_ceremony"),
        "skuanctl: step 2 of 3, delete_clip ClipID=nothing: the server answered: no such clip \"nothing\"\n");
    EXPECT_EQ(ask(station, {"clip", "exists", "archive/1987/opening_ceremony"}).out, "true\n");
    EXPECT_THAT(failure("list save l", "{\"ContentID\":{\"ClipID\":\"a\"}}\n\n{\"ContentID\":1}\n"),
                HasSubstr("line 3: ContentID takes no value but its parts"));
    EXPECT_THAT(failure("list save l", "{\"ContentID\":{\"ClipID\":null}}"),
                HasSubstr("is neither a text nor"));
    EXPECT_THAT(failure("vclip edit v", "enable video\nfree\n"), HasSubstr("line 2: 'free' is no edit"));
}

TEST_F(Skuanctl, ShowsAListAsItCanBeSaved)
{
    const Station station;
    const QByteArray lines =
        "{\"ContentID\":{\"ClipID\":\"bars_and_tone\"},\"GotoPosition\":5,\"Speed\":-0.5}\n"
        "{\"ContentID\":{\"VClipID\":\"v\"},\"Transition\":{\"TransitionDuration\":9,"
        "\"TransitionType\":\"dissolve\"}}\n";
    EXPECT_EQ(ask(station, {"list", "save", "l"}, lines).err, "");
    EXPECT_EQ(ask(station, {"list", "show", "l", "--json"}).out, lines);
    EXPECT_EQ(ask(station, {"list", "show", "l"}).out,
              "CLIP           AT  OUT  SPEED  ANGLE  START  END  TRANSITION  DURATION\n"
              "bars_and_tone  5   -    -0.5   -      -      -    -           -\n"
              "v              -   -    -      -      -      -    dissolve    9\n");
}

TEST_F(Skuanctl, AsksSeveralHosts)
{
    const Station one, two;
    const QString nobody = QString::fromStdString(support::own_loopback_address());
    const QString first = one.address().toString(), second = two.address().toString();
    const QStringList hosts{"--host", QStringList{first, nobody, second}.join(',')};
    const Ran ran = support::run(program, hosts + QStringList{"--json", "clip", "exists", "bars_and_tone"});
    EXPECT_EQ(ran.code, 3);
    std::set<QString> answered;
    for (const QJsonObject& line : objects(ran.out))
        answered.insert(line["host"].toString());
    EXPECT_EQ(answered, (std::set<QString>{first, second}));
    EXPECT_EQ(objects(ran.err).at(0)["host"], nobody);
    const int width = std::max({first.size(), nobody.size(), second.size()});
    EXPECT_THAT(
        support::run(program, hosts + QStringList{"clip", "exists", "bars_and_tone"}).out.toStdString(),
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
        "<channel_current_timecode><Channel> A </Channel><DisplayTimecode><Valid>1</Valid><FieldNumber>-4"
        "</FieldNumber><New><x>1</x></New></DisplayTimecode><ClipLength>many</ClipLength>"
        "</channel_current_timecode>";
    const struct
    {
        std::vector<QByteArray> bodies;
        QStringList words;
        QByteArray printed;
    } rows[] = {
        {{timecode},
         {"call", "get_current_timecode", "Channel=A"},
         "channel_current_timecode\n  Channel: A\n  DisplayTimecode:\n    Valid: 1\n    FieldNumber: -4\n"
         "    New: <New><x>1</x></New>\n  ClipLength: many\n"},
        {{timecode},
         {"--json", "call", "get_current_timecode", "Channel=A"},
         R"({"kind":"reply","name":"channel_current_timecode","values":{"Channel":"A","ClipLength":"many",)"
         R"("DisplayTimecode":{"FieldNumber":-4,"New":"<New><x>1</x></New>","Valid":true}}})"
         "\n"},
        {{"<disk_usage><TotalDiskSpace>9007199254740993</TotalDiskSpace>"
          "<AvailableDiskSpace>9007199254740992</AvailableDiskSpace></disk_usage>"},
         {"--json", "call", "get_disk_usage"},
         R"({"kind":"reply","name":"disk_usage","values":{"AvailableDiskSpace":9007199254740992,)"
         R"("TotalDiskSpace":"9007199254740993"}})"
         "\n"},
        {{"<melt_flags><MeltFlags><MeltFlagInhibitListNumbering>false</MeltFlagInhibitListNumbering>"
          "</MeltFlags></melt_flags>",
          "<melt_item><MeltItem><Speed>-98304X</Speed></MeltItem></melt_item>",
          "<melt_item><MeltItem><Speed>98304</Speed></MeltItem></melt_item>", "<ok/>", "<melt_flags/>"},
         {"--json", "call", "download_melts"},
         R"({"kind":"reply","name":"melt_flags","values":{"MeltFlags":{"MeltFlagInhibitListNumbering":true}}}
{"kind":"reply","name":"melt_item","values":{"MeltItem":{"Speed":"-98304X"}}}
{"kind":"reply","name":"melt_item","values":{"MeltItem":{"Speed":1.5}}}
{"kind":"reply","name":"ok","values":{}}
)"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ask(Scripted(row.bodies), row.words).out, row.printed);
}

TEST_F(Skuanctl, PrintsReportsOfTheClassesAsked)
{
    const QByteArray report = "<report><channel_speed><Channel>A</Channel><Speed>-1.5</Speed></channel_speed>"
                              "</report><report><config_changed/></report>";
    // The server tells on its own, too, how things stand.
    const auto ask_three = [&](const QStringList& words) {
        const Scripted station({"<ok/>"}, report);
        const Ran ran = ask(station, QStringList{"--count", "3", "reports"} + words);
        EXPECT_EQ(ran.code, 0) << ran.err.constData();
        return station.commands();
    };
    EXPECT_EQ(ask_three({"melt", "A,B:speed,info", "clip_change", "userdict:a:b", "metadata:m"}),
              QStringList({"reports_register(ReportSet(ReportType=melt ReportType=clip_change))",
                           "channel_reports_register(ChannelSet(Channel=A Channel=B) "
                           "ChannelReportSet(ChannelReportType=speed ChannelReportType=info))",
                           "userdict_watch(Key=a:b)", "watch_metadata_database(MetadataDatabase=m)"}));
    const QStringList everything = ask_three({});
    ASSERT_EQ(everything.size(), 2);
    EXPECT_EQ(everything[0].count("ReportType="), 12);
    EXPECT_EQ(everything[1].count("Channel="), 12);
    EXPECT_EQ(everything[1].count("ChannelReportType="), 8);

    const Scripted quiet({"<ok/>"}, report); // about clips there is nothing to tell on its own
    EXPECT_EQ(ask(quiet, {"--count", "2", "reports", "clip_change"}).out,
              "channel_speed Channel=A Speed=-1.5\nconfig_changed\n");

    // With --timeout, a report that does not come ends the watch.
    const Ran late = ask(quiet, {"--timeout", "0.3", "clip", "watch"});
    EXPECT_EQ(late.code, 4);
    EXPECT_EQ(late.out.count('\n'), 2);
    EXPECT_EQ(late.err, "skuanctl: no report came within 0.3 s\n");

    const Scripted station({"<error><ErrorMessage>no</ErrorMessage><ErrorCode>general</ErrorCode></error>"});
    const Ran ran = ask(station, {"--json", "reports", "melt"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(objects(ran.err).at(0)["code"], "general");
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
    EXPECT_EQ(ask(station, {"--timeout", "0.1", "--listen", "0.3", "dict", "own", "k", "v"}).code, 0);
    ran = ask(station, {"--listen", "0.1", "--count", "3", "raw"});
    EXPECT_EQ(ran.code, 4);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("0 of 3 reports came within 0.1 s"));
}

TEST_F(Skuanctl, LooksIntoMirrors)
{
    const Station station;
    const struct
    {
        const char* words;
        int code;
        std::string printed;
    } rows[] = {
        {"config get ReferenceSource StationName", 0, "refin\nStudio\n"},
        {"--json config get AudioBitDepth", 0,
         R"({"ConfigurationItemAllowedValues":["16","24"],"ConfigurationItemName":"AudioBitDepth",)"
         R"("ConfigurationItemValue":"24"})"
         "\n"},
        {"config get ReferenceSource Nothing", 1, "skuanctl: there is no configuration item 'Nothing'\n"},
        {"dict get show", 1, "skuanctl: there is no text under the key 'show'\n"},
        {"dict set show evening", 0, ""},
        {"dict get show", 0, "evening\n"},
        {"layout", 1,
         "skuanctl: the server does not tell which board it has; say it with --board, one of sorrel, tansy1, "
         "tansy2, tansy3\n"},
        {"dict set cf.herbae.0.channel_count 3", 0, ""},
        {"layout", 0,
         "user channel  0 ─┬─ output  0  video\n"
         "                 └─ output  1  key\n"
         "user channel  2 ─┬─ output  2  video\n"
         "                 └─ output  3  key\n"}, // user channels have gaps
        {"config set ChannelConfigurationSet0 ISO2", 0, ""},
        {"config set ChannelConfigurationSet1 absent", 0, ""},
        {"config set ChannelConfigurationSet2 absent", 0, ""},
        {"layout --board sorrel", 0,
         "user channel  0 ─┬─ output  0  angle 0 video\n"
         "                 └─ output  1  angle 1 video\n"
         "user channel  2 ─── output  2  video\n"
         "user channel  3 ─── output  3  video\n"},
        {"--json layout --board tansy1", 0,
         R"({"board":"tansy1","sets":["ISO2","absent","absent"],"user_channels":)"
         R"([{"4K":false,"angles":1,"key":[1],"user_channel":0,"video":[0]}]})"
         "\n"},
    };
    for (const auto& row : rows) {
        const Ran ran = ask(station, QString(row.words).split(' '));
        EXPECT_EQ(ran.code, row.code) << row.words;
        EXPECT_EQ((ran.out + ran.err).toStdString(), row.printed) << row.words;
    }
    station->set_faults(Faults{.mute = true});
    EXPECT_EQ(ask(station, {"--timeout", "0.1", "config", "get", "X"}).code, 4);
    station->set_faults(Faults{.close_after_bytes = 100});
    EXPECT_EQ(ask(station, {"config", "get", "X"}).code, 5);
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
    };
    const Station station;
    ask(station, {"dict", "set", "show", "evening"});
    for (const auto& row : rows) {
        QProcess watch;
        watch.start(program, to(station.address(), QString(row.watch).split(' ')));
        ASSERT_TRUE(watch.waitForReadyRead());
        station->drop_clients();
        EXPECT_EQ(ask(station, QString(row.change).split(' ')).code, 0);
        ASSERT_TRUE(watch.waitForFinished());
        EXPECT_EQ(watch.exitCode(), 0);
        EXPECT_EQ(watch.readAllStandardOutput(), QByteArray(row.shown) + row.then);
        EXPECT_EQ(watch.readAllStandardError(), "");
    }
}

// Where no item is named, only what changes is told, and that from the listing on.
TEST_F(Skuanctl, WatchesTheWholeConfiguration)
{
    const Station station;
    std::promise<void> listed;
    QObject::connect(station.operator->(), &simulator::Server::command, station.operator->(),
                     [&](quint64, const simulator::Element& message) {
                         if (message.child(QLatin1String("get_configuration")))
                             listed.set_value();
                     });
    QProcess watch;
    watch.start(program, to(station.address(), {"--count", "1", "config", "watch"}));
    listed.get_future().wait();
    EXPECT_EQ(ask(station, {"config", "set", "StopMode", "black"}).code, 0);
    ASSERT_TRUE(watch.waitForFinished());
    EXPECT_EQ(watch.readAllStandardOutput(), "StopMode=black\n");
}

TEST_F(Skuanctl, TellsWhatTheServerSaidBeforeItHungUp)
{
    const Ran ran = ask(Station(), {"raw", "<cmd><xid>1</xid><log><LogText>\x01</LogText></log></cmd>"});
    EXPECT_THAT(ran.out.toStdString(), HasSubstr("its bytes are no messages"));
    EXPECT_EQ(ran.code, 5);
}

TEST_F(Skuanctl, EndsQuietlyWithItsReaderAndLoudlyWithTheDisk)
{
    simulator::Settings settings;
    settings.clips = simulator::ClipStore::generated(20'000);
    const Station station(settings);
    const auto shell = [&](const char* command) {
        return support::run("/bin/sh", {"-c", command, program, station.address().toString()});
    };
    const Ran some = shell("\"$0\" --host \"$1\" clip list | head -1");
    EXPECT_EQ(some.out, "load/clip_000000\n");
    EXPECT_EQ(some.err, "");
    const Ran full = shell("\"$0\" --host \"$1\" clip list > /dev/full");
    EXPECT_EQ(full.code, 6);
    EXPECT_EQ(full.err, "skuanctl: cannot write the output: No space left on device\n");
}

TEST_F(Skuanctl, ShowsControlCharactersOnATerminalOnly)
{
    simulator::Settings settings;
    settings.clips = simulator::ClipStore();
    ASSERT_EQ(settings.clips.create_clip(QStringLiteral("a\\b\nc é")), simulator::ClipStore::Outcome::Done);
    const Station station(settings);
    EXPECT_EQ(ask(station, {"clip", "list"}).out, "a\\b\nc é\n");

    const Ran none = support::run("script", {"-qec", "true", "/dev/null"});
    if (none.code != 0)
        GTEST_SKIP() << "this machine gives no terminals: " << none.err.constData();
    const QString clips = program + " " + to(station.address(), {"clip", "list"}).join(' ');
    const Ran shown = support::run("script", {"-qec", clips, "/dev/null"});
    EXPECT_EQ(shown.out, "a\\\\b\\nc é\r\n");
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

TEST_F(Skuanctl, CompletesInBash)
{
    const struct
    {
        const char* line; // up to the cursor
        const char* candidates;
    } rows[] = {
        {"c", "channel cue clip chase config call capture complete "},
        {"clip re", "rename "},
        {"--json --host h inf", "info "},
        {"--timeout ", ""},
        {"clip list --", "--host --timeout --json --help --version "},
        {"clip create x --t", "--tracks --timeout "},
        {"clip create x --tracks video,t", "video,timecode "},
        {"gang play A,", "A,B A,C A,D A,E A,F A,G A,H A,I A,J A,K A,L "},
        {"precue ", "A B C D E F G H I J K L activate clear "},
        {"call list_play_reorder_",
         "list_play_reorder_start list_play_reorder_item list_play_reorder_finish "},
        {"call play Channel=A ", "Speed= MinLatency "},
        {"call --json cue_clip Loop=loop", "loop loopto "},
        {"call gang_stop ChannelSet=K,L,A", "K,L,A "},
        {"call list_bed ListElement.Transition.", "ListElement.Transition.TransitionType= "
                                                  "ListElement.Transition.TransitionDuration= "},
        {"call metadata_set MetadataList.Metadata[1].K", "MetadataList.Metadata[1].Key= "},
        {"call nothing C", ""},
        {"reports clip", "clip_change "},
        {"reports A:speed,t", "speed,timecode "},
    };
    QStringList lines;
    QByteArray expected;
    for (const auto& row : rows) {
        lines += QStringLiteral("skuanctl ") + row.line;
        expected += QByteArray(row.line) + "|" + row.candidates + "\n";
    }
    const Ran ran = support::run(
        "bash", QStringList{"-c",
                            "source \"$0\"; program=$1; shift\n"
                            "for COMP_LINE; do COMP_POINT=${#COMP_LINE}; _skuanctl \"$program\"\n"
                            "printf '%s|' \"${COMP_LINE#skuanctl }\"\n"
                            "[[ ${#COMPREPLY[@]} = 0 ]] || printf '%s ' \"${COMPREPLY[@]}\"; echo; done",
                            SKUANCTL_COMPLETION, program} +
                    lines);
    EXPECT_EQ(ran.out, expected) << ran.err.constData();
}

} // namespace
