// An operator's day with the server, through the library and through the command line: the same reports, the
// same answers, the same state; and as a captured conversation the same bytes, from either side.
#include "operator_rows.h"
#include "skuanctl.h"

#include <simulator/plain_client.h>

#include <QTemporaryDir>

namespace {

using operator_day::Row;
using operator_day::rows;
using support::Station;

simulator::Settings settings()
{
    QString error;
    simulator::Settings settings;
    settings.pace = 0;
    settings.clips = simulator::ClipStore::from_text("ident\nnews/one\nnews/two\nnews/three\n", &error);
    return settings;
}

quint64 fields_of(const Row& step)
{
    return QByteArray(step.words).mid(5).toULongLong();
}

/// The library's client, and what it is told.
class Library
{
public:
    operator_day::To to()
    {
        return {server, AFunction(), AFunction2<AString, KVRP3::ErrorCode>::member<&Library::on_error>(this),
                AFunction1<AString>::member<&Library::on_text>(this)};
    }
    std::string take() { return std::exchange(said_, {}); }

    KVRP3::APIQt server;

private:
    void on_text(AString text) { said_ += "> " + text.to_string() + "\n"; }
    void on_error(AString message, KVRP3::ErrorCode) { said_ += "! " + message.to_string() + "\n"; }

    std::string said_;
};

/// Has fields pass when so many commands have been answered, as they did then; a command that comes sooner
/// waits.
void keep_time(const Station& station, const std::map<quint64, quint64>& fields_by_commands)
{
    simulator::Server* const server = station.operator->();
    const auto left = std::make_shared<std::map<quint64, quint64>>(fields_by_commands);
    const auto commands = std::make_shared<quint64>(0);
    const auto catch_up = [=] { server->step(std::exchange((*left)[*commands], 0)); };
    const auto count = [=] {
        catch_up();
        ++*commands;
        QMetaObject::invokeMethod(server, catch_up, Qt::QueuedConnection);
    };
    QObject::connect(server, &simulator::Server::command, server, count, Qt::DirectConnection);
}

class Operator : public support::CoreApplication
{
protected:
    Library library;

    void connect(const QString& address)
    {
        library.server.connect_to_server(address);
        wait_until([&] { return library.server.is_connected(); });
    }
    std::string act(const Row& row)
    {
        row.act(library.to());
        wait_until([&] { return library.server.outstanding_commands() == 0; });
        return library.take();
    }

    /// Goes through the day and writes down each step, its answers ('>', or '!' for an error), and every
    /// report there is on the channels that are used.
    template <class Act>
    static std::string story_of_the_day(const Station& station, Act act)
    {
        PlainClient watcher(station);
        for (const char* command :
             {"reports_register ReportSet(ReportType=clip_change ReportType=config_change "
              "ReportType=disk_space "
              "ReportType=directory_change ReportType=playlist_change ReportType=chaselist_change "
              "ReportType=export ReportType=chase_ltc_timecode)",
              "channel_reports_register ChannelSet(Channel=A Channel=B Channel=C Channel=D) ChannelReportSet("
              "ChannelReportType=status ChannelReportType=clipid ChannelReportType=speed "
              "ChannelReportType=timecode ChannelReportType=listplay ChannelReportType=chaseplay)",
              "watch_metadata_database MetadataDatabase=rundown", "userdict_watch Key=show"})
            watcher.ask_short(command);
        std::string story;
        for (const Row& row : rows) {
            story += std::string("$ ") + row.words + "\n";
            if (row.act)
                story += act(row);
            else if (row.words[0] == '?')
                story += watcher.ask_short(row.words + 2);
            else
                station->step(fields_of(row));
            story += compact::from_stream(watcher.hear());
        }
        return story;
    }
};

// And then once more with what was captured in the server's place.
TEST_F(Operator, GoesThroughTheSameDayWithTheLibraryAndWithTheCommandLine)
{
    std::string story;
    {
        const Station station(settings());
        connect(station.address().toString());
        story = story_of_the_day(station, [this](const Row& row) { return act(row); });
        EXPECT_EQ(QString::fromStdString(story).count("\n! "), 3) << story;
        EXPECT_EQ(QString::fromStdString(story).count("\n* "), 1060) << story;
    }

    const QTemporaryDir folder;
    const QString file = folder.filePath("day.jsonl");
    const auto said_to = [](const QString& address, const Row& row) {
        const support::Ran ran = ask(address, QString(row.words).split(' '), row.input);
        EXPECT_EQ(ran.code, ran.err.isEmpty() ? 0 : 1) << row.words;
        std::string said;
        for (const QByteArray& line : ran.out.split('\n'))
            said += line.isEmpty() || line == "ok" ? "" : "> " + line.toStdString() + "\n";
        return said + QByteArray(ran.err).replace("skuanctl: the server answered:", "!").toStdString();
    };
    const Station station(settings());
    const auto runs = std::count_if(rows.begin(), rows.end(), [](const Row& row) { return row.act; });
    Listening capture(to(station, {"--count", QString::number(runs), "capture", file}));
    std::vector<std::string> said;
    const auto act = [&](const Row& row) { return said.emplace_back(said_to(capture.address, row)); };
    EXPECT_EQ(story_of_the_day(station, act), story);
    capture.expect_success();

    Listening replay({"replay", file});
    auto before = said.begin();
    for (const Row& row : rows)
        if (row.act && said_to(replay.address, row) != *before++)
            ADD_FAILURE() << row.words;
    replay.expect_success();
}

// The operator listens to the reports of a channel, so that they are among what is captured.
TEST_F(Operator, IsAnsweredTheSameWhenTheDayIsPlayedAgain)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("day.jsonl");
    std::map<quint64, quint64> fields; // by the number of commands before
    {
        const Station station(settings());
        Listening capture(to(station, {"--count", "1", "capture", file}));
        connect(capture.address);
        library.server.cmd_channel_reports_register(KVRP3::Channel_A, KVRP3::ChannelReportSet::all);
        for (const Row& row : rows)
            if (row.act)
                act(row);
            else if (row.words[0] != '?') {
                fields[station->counters().messages] += fields_of(row);
                station->step(fields_of(row));
            }
        library.server.disconnect_from_server();
        capture.expect_success();
    }
    const Station station(settings());
    keep_time(station, fields);
    const support::Ran replay = ask(station, {"replay", file});
    EXPECT_EQ(replay.code, 0) << replay.err.constData();
}

} // namespace
