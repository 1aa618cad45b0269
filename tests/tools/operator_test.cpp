// An operator's day with the server, through the library and through the command line: the same reports, the
// same answers, the same state; and as a captured conversation the same bytes, from either side.
#include "operator_rows.h"

#include <simulator/compact.h>
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

/// Hears every report there is on the channels that are used, and looks at state.
class Watcher
{
public:
    explicit Watcher(const Station& station) : client_(station)
    {
        ask("reports_register ReportSet(ReportType=clip_change ReportType=config_change "
            "ReportType=disk_space "
            "ReportType=directory_change ReportType=playlist_change ReportType=chaselist_change "
            "ReportType=export ReportType=chase_ltc_timecode)");
        ask("channel_reports_register ChannelSet(Channel=A Channel=B Channel=C Channel=D) ChannelReportSet("
            "ChannelReportType=status ChannelReportType=clipid ChannelReportType=speed "
            "ChannelReportType=timecode ChannelReportType=listplay ChannelReportType=chaseplay)");
        ask("watch_metadata_database MetadataDatabase=rundown");
        ask("userdict_watch Key=show");
    }

    std::string ask(const QString& command)
    {
        client_.send(cmd("x", compact::to_command(command)));
        return hear();
    }

    /// What has come. Of the timecodes of a channel the last one is enough, and its position.
    std::string hear()
    {
        static const QByteArray end = reply("end", "<ok/>");
        static const QRegularExpression timecode(
            QStringLiteral("\\* (channel_timecode Channel=\\w) (ClipPosition=\\d+) .*"));
        client_.send(cmd("end", "<sync/>"));
        QByteArray heard = client_.read_until([](const QByteArray& bytes) { return bytes.endsWith(end); });
        heard.chop(end.size());
        QStringList kept;
        for (const QString& line : QString::fromStdString(compact::from_stream(heard)).split('\n')) {
            const auto match = timecode.match(line);
            if (match.hasMatch())
                kept = kept.filter(QRegularExpression("^(?!\\* " + match.captured(1) + ")"));
            kept += match.hasMatch() ? "* " + match.captured(1) + " " + match.captured(2) : line;
        }
        return kept.join('\n').toStdString();
    }

private:
    PlainClient client_;
};

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

/// A run of the command line that listens at an address of its own.
class Listening
{
public:
    explicit Listening(const QStringList& words)
    {
        process_.start(SKUANCTL, words + QStringList{"--bind", address});
        EXPECT_TRUE(process_.waitForReadyRead()) << process_.readAllStandardError().constData();
        process_.readLine();
    }
    void expect_success()
    {
        EXPECT_TRUE(process_.waitForFinished());
        EXPECT_EQ(process_.exitCode(), 0) << process_.readAllStandardError().constData();
    }

    const QString address = QString::fromStdString(support::own_loopback_address());

private:
    QProcess process_;
};

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

    /// Goes through the day and writes down each step, its answers ('>', or '!' for an error), and what is
    /// reported.
    template <class Act>
    static std::string story_of_the_day(const Station& station, Act act)
    {
        Watcher watcher(station);
        std::string story;
        for (const Row& row : rows) {
            story += std::string("$ ") + row.words + "\n";
            if (row.act)
                story += act(row);
            else if (row.words[0] == '?')
                story += watcher.ask(row.words + 2);
            else
                station->step(fields_of(row));
            story += watcher.hear();
        }
        return story;
    }
    static std::string written()
    {
        QFile file(QStringLiteral(OPERATOR_DAY));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().toStdString();
    }
};

TEST_F(Operator, GoesThroughTheDayWithTheLibrary)
{
    const Station station(settings());
    connect(station.address().toString());
    const std::string story = story_of_the_day(station, [this](const Row& row) { return act(row); });
    const std::string before = written();
    QFile file(QStringLiteral(OPERATOR_DAY));
    if (qEnvironmentVariableIsSet("SKUAN_RENEW_DIALOGUES") && file.open(QIODevice::WriteOnly))
        file.write(story.data(), static_cast<qint64>(story.size()));
    EXPECT_EQ(story, before);
}

// And then once more with what was captured in the server's place.
TEST_F(Operator, GoesThroughTheDayWithTheCommandLine)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("day.jsonl");
    const auto said_to = [](const QString& address, const Row& row) {
        const support::Ran ran =
            support::run(SKUANCTL, QStringList{"--host", address} + QString(row.words).split(' '), row.input);
        EXPECT_EQ(ran.code, ran.err.isEmpty() ? 0 : 1) << row.words;
        std::string said;
        for (const QByteArray& line : ran.out.split('\n'))
            said += line.isEmpty() || line == "ok" ? "" : "> " + line.toStdString() + "\n";
        return said + QByteArray(ran.err).replace("skuanctl: the server answered:", "!").toStdString();
    };

    const Station station(settings());
    const auto runs = std::count_if(rows.begin(), rows.end(), [](const Row& row) { return row.act; });
    Listening capture(
        {"--host", station.address().toString(), "--count", QString::number(runs), "capture", file});
    std::vector<std::string> said;
    const auto act = [&](const Row& row) { return said.emplace_back(said_to(capture.address, row)); };
    EXPECT_EQ(story_of_the_day(station, act), written());
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
        Listening capture({"--host", station.address().toString(), "--count", "1", "capture", file});
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
    const support::Ran replay =
        support::run(SKUANCTL, {"--host", station.address().toString(), "replay", file});
    EXPECT_EQ(replay.code, 0) << replay.err.constData();
}

} // namespace
