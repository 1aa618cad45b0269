// Every example does what its first lines promise, and ends when there is no server.
#include <support/program.h>
#include <support/station.h>

#include <gmock/gmock.h>

using testing::EndsWith;
using testing::StartsWith;

namespace {

QString path_of(const char* example)
{
    return QStringLiteral(EXAMPLES_FOLDER "/") + QLatin1String(example);
}

/// They print texts, whose lines end as those of the system do.
support::Ran run(const QString& program, const QStringList& arguments)
{
    support::Ran ran = support::run(program, arguments);
    ran.out.replace("\r\n", "\n");
    ran.err.replace("\r\n", "\n");
    return ran;
}

TEST(Examples, SayWhatTheServerAnswers)
{
    support::need_application();
    const support::Station station("Köln <2>");
    const struct
    {
        const char *example, *beginning, *end;
    } rows[] = {
        {"01_ask_name", "Köln <2>\n", ""},
        {"02_ask_name_qt", "Köln <2>\n", ""},
        {"03_list_clips", "bars_and_tone\n", "\n22 clips\n"},
        {"04_watch_reports", "made: rushes\n", ""},
        {"05_clip_info", "bars_and_tone: ", " tracks\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.example);
        const auto ran = run(path_of(row.example), {station.address().toString()});
        EXPECT_EQ(ran.code, 0);
        EXPECT_THAT(ran.out.toStdString(), StartsWith(row.beginning));
        EXPECT_THAT(ran.out.toStdString(), EndsWith(row.end));
        EXPECT_EQ(ran.err, "");
    }
}

// A session begins before there is a server, and is in no hurry.
TEST(Examples, ShowWhatASessionMirrors)
{
    support::need_application();
    const struct
    {
        const char* example;
        QStringList rest;
        QByteArray out;
    } rows[] = {
        {"06_configuration", {}, "StationName is Studio\nthe server has Harbour\n"},
        {"06_configuration", {"AudioBitDepth", "16"}, "AudioBitDepth is 24\nthe server has 16\n"},
        {"06_configuration", {"StationName", "Harbour"}, "StationName is Harbour\nthe server has Harbour\n"},
        {"07_dictionary", {}, "studio.2.state is rehearsal\n"},
        {"07_dictionary", {"cf.herbae.0.channel_count", "1"}, "cf.herbae.0.channel_count is 1\n"},
        {"08_channel_layout", {}, "user channel 0: video 0 key 1\n"},
        {"09_control_panels",
         {},
         "panel 0, keyboard panel-0, channels ABCD\npanel 1, keyboard panel-1, channels ABCD\n"},
        {"10_timecode",
         {},
         "standard  1080i 50Hz\nfrom      09.59.59.20\nto        10:00:00:24\nfields    60\n"},
        {"11_output", {}, "output 1 shows bars_and_tone\noutput 1 shows news/weather_tonight\n"},
    };
    const QHostAddress address(QString::fromStdString(support::own_loopback_address()));
    QProcess early;
    early.start(path_of("09_control_panels"), {address.toString()});
    ASSERT_TRUE(early.waitForStarted());

    simulator::ServerThread server(simulator::Settings{.address = address, .faults = {}});
    ASSERT_TRUE(server.start());
    ASSERT_TRUE(early.waitForFinished());
    EXPECT_EQ(early.exitCode(), 0);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.example);
        const auto ran = run(path_of(row.example), QStringList{address.toString()} + row.rest);
        EXPECT_EQ(ran.code, 0);
        EXPECT_EQ(ran.out, row.out);
        EXPECT_EQ(ran.err, "");
    }
    EXPECT_EQ(run(path_of("06_configuration"), {address.toString(), "Nothing", "x"}).code, 1);
}

// 01_ask_name goes on trying for ten seconds by design, so it is not asked here; those with a session never
// end.
TEST(Examples, EndWithoutAServer)
{
    support::need_application();
    const QString nobody = QString::fromStdString(support::own_loopback_address());
    for (const char* example : {"02_ask_name_qt", "03_list_clips", "04_watch_reports", "05_clip_info"}) {
        const auto ran = run(path_of(example), {nobody});
        EXPECT_EQ(ran.code, 1) << example;
        EXPECT_THAT(ran.err.toStdString(), EndsWith(": no connection\n")) << example;
    }
}

} // namespace
