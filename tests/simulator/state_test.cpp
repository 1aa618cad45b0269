// What outlasts a connection, a restart and the process: state files, the start and its status, the control
// name.
#include "plain_client.h"

#include <support/ask_to_end.h>

#include <QDir>
#include <QLocalSocket>
#include <QTemporaryDir>

namespace {

using simulator::Settings;
using support::Station;

using StateTest = SimulatorTest;

Settings still(const QByteArray& seed = {})
{
    Settings settings;
    settings.pace = 0;
    settings.seed = seed;
    return settings;
}

const QByteArray everything = R"(<?xml version="1.0"?>
<state>
 <clips>
  <directory><DirectoryName>empty/one</DirectoryName></directory>
  <clip><ClipID>a/b &amp; c</ClipID><ClipLength>900</ClipLength><TrimStart>100</TrimStart><Title> t&#13;
 </Title><MetaEditStamp>41</MetaEditStamp>
   <MetadataList><Metadata><Key>k</Key><Value>v</Value></Metadata></MetadataList></clip>
  <clip><ClipID>short</ClipID></clip>
 </clips>
 <play_lists><play_list><ListID>l</ListID><ListElements>
  <ListElement><ContentID><ClipID>short</ClipID></ContentID><Speed>0.5</Speed></ListElement>
 </ListElements></play_list></play_lists>
 <chase_lists><chase_list><ChaseID>c</ChaseID><ChaseElements/></chase_list></chase_lists>
 <vclips><vclip><VClipID>v</VClipID><ClipLength>50</ClipLength><ClipID>short</ClipID>
  <TrackSet><TrackType>video</TrackType></TrackSet><EnabledTracks/><Segments><Segment><ClipID>short</ClipID>
  <ClipPosition>5</ClipPosition><TrackSet><TrackType>audio</TrackType></TrackSet><VClipPosition>0</VClipPosition>
  <ClipLength>50</ClipLength><Speed>-1</Speed></Segment></Segments></vclip></vclips>
 <metadata><database><MetadataDatabase>d</MetadataDatabase><MetadataPrefix>p.</MetadataPrefix><MetadataList>
  <Metadata><Key>k</Key><Value/></Metadata></MetadataList></database></metadata>
 <userdict><entry><Key>u</Key><Value>w</Value></entry></userdict>
 <configuration><item><ConfigurationItemName>VideoStandard</ConfigurationItemName>
  <ConfigurationItemValue>1080_59_94i</ConfigurationItemValue></item></configuration>
 <machine><temperature><Temperature10>401</Temperature10></temperature></machine>
 <alerts/>
 <melts><MeltFlags><MeltClientID>9</MeltClientID><MeltFlagInhibitListNumbering/></MeltFlags></melts>
</state>)";

TEST_F(StateTest, WhatASeedSaysIsThereAndIsSavedAsItIs)
{
    QTemporaryDir folder;
    Settings settings = still(everything);
    settings.state_file = folder.filePath("state.xml");
    QByteArray saved;
    {
        const Station station(settings);
        PlainClient client(station);
        const std::pair<const char*, std::string> rows[] = {
            {"download_directory_names",
             "< directory_name DirectoryName=a\n< directory_name DirectoryName=empty\n"
             "< directory_name DirectoryName=empty/one\n< ok\n"},
            {"download_list ListID=l",
             "< list_element ListElement(ContentID(ClipID=short) Speed=0.5)\n< ok\n"},
            {"download_chase ChaseID=c", "< ok\n"},
            {"cue_clip Channel=A ClipID=v ClipScope=vclip", "< ok\n"},
            {"download_metadata MetadataDatabase=d",
             "< metadata MetadataDatabase=d MetadataPrefix MetadataList(Metadata(Key=p.k Value))\n< ok\n"},
            {"userdict_watch Key=u", "* userdict_change Key=u Value=w\n< ok\n"},
            {"get_video_standard",
             "< video_standard VideoStandard=1080_59_94i VideoRate=59_94 VideoResolution=1080i\n"},
            {"reports_register ReportSet(ReportType=alerts ReportType=temperature ReportType=ltc_input)",
             "* temperature Temperature10=401\n* ltc_timecode Timecode(Valid=true VideoStandard=1080_59_94i "
             "FieldNumber=2157840 DropFrameFlag=df)\n< ok\n"},
            {"download_melts", "< melt_flags MeltFlags(MeltClientID=9 MeltFlagInhibitListNumbering)\n< ok\n"},
            {"modify_clip_attributes ClipID=short ClipAttrChange(Title=x)", "< ok\n"}, // the stamp 42
        };
        for (const auto& [command, answer] : rows)
            EXPECT_EQ(client.ask_short(command), answer);
        const std::string info = client.ask_short("get_clip_info ClipID='a/b & c'");
        for (const char* part : {"Title=' t\r\n '", "ClipLength=800", "ClipLengthUntrimmed=900", "Key=k"})
            EXPECT_NE(info.find(part), std::string::npos) << part << info;
        EXPECT_TRUE(station->save());
        saved = station->state();
        EXPECT_TRUE(saved.contains("<MetaEditStamp>42<"));
    }
    settings.seed = "never looked at";
    const Station again(settings);
    EXPECT_EQ(again->state().toStdString(), saved.toStdString());
}

TEST_F(StateTest, WhatCannotBeTakenIsNamedWithItsLine)
{
    const auto clip = [](const QByteArray& fields) {
        return "<state><clips><clip><ClipID>a</ClipID>" + fields + "</clip></clips></state>";
    };
    const std::pair<QByteArray, QString> rows[] = {
        {"<cmd/>", "line 1: the file is <cmd>, not <state>"},
        {"<state>\n<films/></state>", "line 2: a state has no <films>"},
        {"<state><clips/>\n<clips/></state>", "line 2: <clips> stands more than once"},
        {"<state><clips>\n\n<film/></clips></state>", "line 3: <clips> has no <film>"},
        {clip("</clip>\n<clip><ClipID>a</ClipID>"), "line 2: \"a\" is there twice"},
        {clip("</clip><clip><ClipID>/</ClipID>"), "line 1: \"/\" is not a name"},
        {clip("\n<Titel/>"), "line 1: a clip has no Titel"},
        {clip("<TrimEnd>1501</TrimEnd>"), "line 1: the trims are longer than the clip"},
        {clip("<TrackInfoVector><TrackInfo><TrackType>video</TrackType><Odd/></TrackInfo></TrackInfoVector>"),
         "line 1: a clip has no Odd"},
        {"<state><configuration><item><ConfigurationItemName>AspectRatio</ConfigurationItemName>"
         "<ConfigurationItemValue>1:1</ConfigurationItemValue></item></configuration></state>",
         "line 1: AspectRatio cannot be set to \"1:1\""},
        {clip(QByteArray("<a>").repeated(100)), "line 1: elements are nested too deeply"},
    };
    for (const auto& [seed, error] : rows) {
        simulator::Server server(still(seed));
        EXPECT_FALSE(server.listen());
        EXPECT_EQ(server.error_text(), "the seed, " + error) << seed.constData();
    }
    simulator::Server cut(still(everything.left(everything.size() / 2)));
    EXPECT_FALSE(cut.listen());
    Settings lost = still();
    lost.state_file = QStringLiteral("/nowhere/state.xml"); // or a day's work would be, at its end
    EXPECT_FALSE(simulator::Server(lost).listen());
}

QByteArray status(const char* state, const char* step, const char* text, int complete)
{
    return QByteArray("<status>\r\n<state>") + state + "</state>\r\n" + step + text +
           "<step_count>2</step_count>\r\n<steps_complete>" + QByteArray::number(complete) +
           "</steps_complete>\r\n</status>\r\n";
}

TEST_F(StateTest, ARestartGoesThroughItsScriptAndBootsTheConfiguration)
{
    const Station station(still());
    PlainClient client(station);
    const quint16 port = station->port();
    client.ask_short("steal_channel Channel=A PlayOrRecord=play");
    client.ask_short("cue_clip Channel=A ClipID=bars_and_tone");
    client.ask_short(
        "set_configuration ConfigurationItemName=VideoStandard ConfigurationItemValue=1080_59_94i");
    client.ask_short("create_clip ClipID=growing TrackSet Channel=B");
    station->step(3);
    QString error;
    for (const char* line : {"start disks 2 Disks & all", "start net 1"})
        EXPECT_EQ(station->control(line, &error) + error, "");
    station->restart();
    EXPECT_TRUE(client.is_closed());

    QTcpSocket control, watch, late;
    control.connectToHost(station.address(), port);
    EXPECT_FALSE(control.waitForConnected(patience_ms));
    const auto all_of = [&](QTcpSocket& socket) {
        while (socket.state() != QAbstractSocket::UnconnectedState && socket.waitForReadyRead(patience_ms)) {
        }
        return socket.readAll().toStdString();
    };
    watch.connectToHost(station.address(), 4272);
    ASSERT_TRUE(watch.waitForReadyRead(patience_ms));
    station->step(5);
    const QByteArray none = "<step/>\r\n", no_text = "<step_desc/>\r\n",
                     end = status("done", none, no_text, 2);
    EXPECT_EQ(all_of(watch),
              (status("not_started", none, no_text, 0) +
               status("running", "<step>disks</step>\r\n", "<step_desc>Disks &amp; all</step_desc>\r\n", 0) +
               status("running", "<step>net</step>\r\n", no_text, 1) + end)
                  .toStdString());
    late.connectToHost(station.address(), 4272);
    EXPECT_EQ(all_of(late), end.toStdString());

    PlainClient after(station);
    EXPECT_EQ(station->port(), port);
    EXPECT_EQ(after.ask_short("get_video_standard"),
              "< video_standard VideoStandard=1080_59_94i VideoRate=59_94 VideoResolution=1080i\n");
    EXPECT_EQ(after.ask_short("channel_report_register Channel=A ChannelReportType=status"),
              "* channel_status Channel=A ChannelStatus=idle\n< ok\n");
    EXPECT_EQ(after.ask_short("cue_clip Channel=A ClipID=bars_and_tone").substr(0, 1), "*");
    const std::string recorded = after.ask_short("get_clip_info ClipID=growing"); // made with the stamp 2
    for (const char* part : {" ClipLength=3 ", " ContentEditStamp=4 "})
        EXPECT_NE(recorded.find(part), std::string::npos) << part << recorded;

    const std::pair<const char*, const char*> timecodes[] = {
        {"10:01:00:00", "1080_59_94i has no timecode 10:01:00:00"}, // it drops frames
        {"10:01:00:02", ""},
        {"10:10:00:00", ""},
        {"10:10:00:30", "1080_59_94i has no timecode 10:10:00:30"},
        {"soon", "usage: ltc on|off|HH:MM:SS:FF"},
    };
    for (const auto& [timecode, answer] : timecodes) {
        error.clear();
        station->control(QStringLiteral("ltc ") + timecode, &error);
        EXPECT_EQ(error, answer);
    }
}

TEST_F(StateTest, ExportedFilesStayInTheirFolderAndReplaceNothing)
{
    QTemporaryDir outside, folder;
    ASSERT_TRUE(QFile::link(outside.filePath("made"), folder.filePath("link")));
    Settings settings = still();
    settings.export_folder = folder.path();
    const Station station(settings);
    PlainClient client(station);
    const auto exported = [&](const QString& filename) {
        for (const QString& command :
             {QString("export_start"), "export_add ClipID=bars_and_tone Filename=" + filename})
            EXPECT_EQ(client.ask_short(command), "< ok\n");
        return client.ask_short("export_end") == "< ok\n";
    };
    for (const char* name : {"/etc/a.mxf", "..\\b:c", "../..", "'x/'", "Nul.mxf"})
        EXPECT_TRUE(exported(name)) << name;
    for (const char* name : {"a.mxf", "link"})
        EXPECT_FALSE(exported(name)) << name;
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System),
              QStringList({"_", "_._", "_Nul.mxf", "a.mxf", "b_c", "link"}));
    EXPECT_TRUE(QDir(outside.path()).isEmpty());
    QFile file(folder.filePath("a.mxf"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "clip bars_and_tone\nin 0\nlength 3000\nangle 0\n");
}

TEST_F(StateTest, TheProgramIsToldWhatToDoAndSavesWhenItEnds)
{
    const QString program = QCoreApplication::applicationDirPath() + "/../bin/skuan-sim";
    const QTemporaryDir folder;
    const QString name = folder.filePath("control"), file = folder.filePath("state.xml");
    const auto tell = [&](QStringList words) {
        return support::run(program, QStringList{"--tell", name} + words);
    };
    EXPECT_EQ(tell({"help"}).code, 1);
    for (const bool first : {true, false, false}) {
        QProcess server;
        server.start(program, {"--address", QString::fromStdString(support::own_loopback_address()), "--port",
                               "0", "--control", name, "--state", file});
        ASSERT_TRUE(server.waitForReadyRead(patience_ms)); // over the name that the killed one has left
        if (!first && !QFile::exists(file)) {
            EXPECT_EQ(tell({"config", "StationName", "'North & South'"}).code, 0);
            const support::Ran refused = tell({"alert", "Fans"});
            EXPECT_EQ(refused.code, 1);
            EXPECT_EQ(refused.err, "skuan-sim: usage: alert [NAME na|ok|warning|error TEXT]\n");
            QLocalSocket rude, other;
            rude.connectToServer(name);
            rude.write(QByteArray("\xff\x00junk\n\n", 8));
            while (rude.peek(1000).count("error ") < 2 && rude.waitForReadyRead(patience_ms)) {
            }
            EXPECT_EQ(rude.readAll().count("error "), 2);
            rude.write(QByteArray(1'000'000, 'x')); // too much, which ends it
            while (rude.state() != QLocalSocket::UnconnectedState && rude.waitForReadyRead(patience_ms)) {
            }
            EXPECT_EQ(rude.state(), QLocalSocket::UnconnectedState);
        }
        EXPECT_EQ(tell({"config", "StationName"}).out,
                  first ? "StationName 'Studio'\n" : "StationName 'North & South'\n");
        if (first)
            server.kill();
        else
            support::ask_to_end(server, support::Wish::end);
        ASSERT_TRUE(server.waitForFinished(patience_ms));
        EXPECT_EQ(server.exitStatus() == QProcess::CrashExit, first);
        EXPECT_EQ(QFile::exists(file), !first);
    }
    EXPECT_EQ(support::run(program, {"--control", file}).code, 1); // whose place it would take
    EXPECT_TRUE(QFile::exists(file));
}

} // namespace
