// What clients may not do to a server: change what is read-only, or fill it up.
#include "plain_client.h"

namespace {

using support::Station;

using CommandsTest = SimulatorTest;

TEST_F(CommandsTest, ReadOnlyClipsKeepTheirNames)
{
    const Station station;
    PlainClient client(station);
    for (const char* command :
         {"rename_clip FromID=archive/1987/opening_ceremony ToID=a",
          "rename_dir FromDir=archive/1987 ToDir=a", "rename_dir FromDir=archive ToDir=a"})
        EXPECT_NE(client.ask_short(command).find("opening_ceremony\" is read-only"), std::string::npos)
            << command;
}

// Whatever clients store, each in its own way, the server keeps within its bounds and goes on; and what is
// only remembered of a client goes with it.
TEST_F(CommandsTest, WhatHasNoRoomIsRefused)
{
    simulator::Settings settings;
    settings.max_state = 150'000;
    const struct
    {
        bool stays;
        std::vector<QString> commands; // the last as often as there is room; * is a long text, # a long name
    } rows[] = {
        {true, {"userdict_set Key=%1 Value=*"}},
        {true, {"metadata_set MetadataDatabase=d MetadataList(Metadata(Key=%1 Value=*))"}},
        {true, {"create_clip ClipID=%1 TrackSet"}},
        {true, {"create_directory DirectoryName=%1"}},
        {true, {"vclip_create VClipID=%1* ClipLength=1"}},
        {false, {"list_save_start ListID=l", "list_save_element ListElement(ContentID(ClipID=*))"}},
        {false, {"export_start", "export_add ClipID=bars_and_tone Filename=*"}},
        {false, {"userdict_watch Key=%1*"}},
        {false, {"watch_metadata_database MetadataDatabase=d MetadataPrefix=%1*"}},
        {true, {"userdict_own Key=%1 Value=*"}},
        {true,
         {"create_clip ClipID=# TrackSet", "vclip_create VClipID=v ClipLength=100",
          "vclip_modification_start VClipID=v",
          "vclip_add_segment VClipID=v ClipID=# TrackSet(TrackType=video) ClipPosition=0 VClipPosition=%1"
          " ClipLength=1"}},
    };
    for (const auto& row : rows) {
        const Station station(settings);
        const auto fill = [&] {
            PlainClient client(station);
            const auto is_ok = [&](QString command) {
                command.replace("*", QString(20'000, 'x')).replace("#", QString(1000, 'c'));
                return client.ask_short(command) == "< ok\n";
            };
            for (std::size_t i = 0; i + 1 < row.commands.size(); ++i)
                EXPECT_TRUE(is_ok(row.commands[i]));
            int stored = 0;
            while (stored < 100 && is_ok(QString(row.commands.back()).replace("%1", QString::number(stored))))
                ++stored;
            return stored;
        };
        SCOPED_TRACE(qPrintable(row.commands.back()));
        const int stored = fill();
        EXPECT_GT(stored, 0);
        EXPECT_LT(stored, 100);
        EXPECT_TRUE(wait_until([&] { return station->counters().connected == 0; }));
        EXPECT_TRUE(row.stays || fill() == stored);
    }
}

// What one command brings may be far more than what it takes to send it.
TEST_F(CommandsTest, WhoAsksForMoreThanMayWaitIsDropped)
{
    simulator::Settings settings;
    settings.max_backlog = 100'000;
    const Station station(settings);
    PlainClient author(station);
    const QString element =
        "list_save_element ListElement(ContentID(ClipID=" + QString(10'000, QLatin1Char('"')) + "))";
    for (const QString& command : {QString("list_save_start ListID=l"), element, element,
                                   QString("list_save_end"), QString("list_load Channel=A ListID=l")})
        ASSERT_EQ(author.ask_short(command), "< ok\n");

    for (const char* command :
         {"download_list ListID=l", "channel_report_register Channel=A ChannelReportType=listplay"}) {
        const quint64 dropped = station->counters().overrun;
        PlainClient client(station);
        client.send(cmd("1", compact::to_command(command)));
        EXPECT_TRUE(wait_until([&] { return station->counters().overrun > dropped; })) << command;
    }
    EXPECT_EQ(author.ask_short("sync"), "< ok\n");
}

} // namespace
