// Every command of the catalogue, and every report: read to the letter, and nothing else.
#include "compact.h"
#include "plain_client.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace {

using simulator::Element;
using support::Station;

// The tables as the simulator has them, in the shape in which they are installed.
class Tables
{
public:
    Tables()
    {
        QFile file(QStringLiteral(":/skuan/simulator/kvrp3.json"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        all_ = QJsonDocument::fromJson(file.readAll()).object();
    }

    std::vector<QJsonObject> rows(const char* table) const { return rows(all_[QLatin1String(table)]); }
    static std::vector<QJsonObject> rows(const QJsonValue& array)
    {
        std::vector<QJsonObject> found;
        for (const QJsonValue row : array.toArray())
            found.push_back(row.toObject());
        return found;
    }
    QJsonObject row(const char* table, const QString& name) const
    {
        for (const QJsonObject& row : rows(table))
            if (row["name"].toString() == name)
                return row;
        return {};
    }

    // An element of that tag with a value that is good, or with one that is not, where its kind has such.
    Element sample(const QString& tag, bool good) const
    {
        const QJsonObject row = this->row("tags", tag);
        const QString kind = row["kind"].toString(), type = row["type"].toString();
        if (kind == "enum")
            return {tag, good ? this->row("enumerations", type)["names"].toArray().first().toString() : "?"};
        if (kind == "record") {
            std::vector<Element> fields;
            for (const QJsonObject& field : rows(this->row("records", type)["fields"]))
                fields.push_back(sample(field["tag"].toString(), good || !fields.empty()));
            return {tag, fields};
        }
        if (kind == "set" || kind == "vector" || kind == "list") {
            const QJsonObject container = this->row("containers", type);
            const int capacity = container["capacity"].toInt(100);
            const int count = good || container["shape"] == "list" ? capacity : capacity + 1;
            return {tag, std::vector<Element>(count, sample(container["member"].toString(), true))};
        }
        static const QMap<QString, std::pair<QString, QString>> texts = {
            {"u8", {" 255 ", "256"}},        {"u16", {"65535", "65536"}},
            {"u32", {"4294967295", "-1"}},   {"u64", {"18446744073709551615", "18446744073709551616"}},
            {"int", {"-2147483648", "1.0"}}, {"bool", {"2", "maybe"}},
            {"speed", {"-0.5X", "1e3"}},
        };
        const auto text = texts.value(kind, {"text", "text"});
        return {tag, good ? text.first : text.second};
    }

    // Whether there is text that is no value of that tag: of texts all are, and a flag has none.
    bool can_be_bad(const QString& tag) const
    {
        const QJsonObject row = this->row("tags", tag);
        const QString kind = row["kind"].toString();
        if (kind == "record")
            return can_be_bad(
                rows(this->row("records", row["type"].toString())["fields"])[0]["tag"].toString());
        return kind != "string" && kind != "flag" && kind != "list";
    }
    bool is_flag(const QString& tag) const { return row("tags", tag)["kind"] == "flag"; }

private:
    QJsonObject all_;
};

QByteArray xml(const Element& element)
{
    QByteArray inside = element.text.toUtf8();
    for (const Element& child : element.children)
        inside += xml(child);
    const QByteArray tag = element.tag.toUtf8();
    return "<" + tag + ">" + inside + "</" + tag + ">";
}

using CommandsTest = SimulatorTest;

TEST_F(CommandsTest, EveryArgumentOfEveryCommandIsHeldAgainstTheCatalogue)
{
    const Tables tables;
    const Station station;
    PlainClient client(station);
    const auto commands = tables.rows("commands");
    EXPECT_EQ(commands.size(), 128u);
    int asked = 0;
    for (const QJsonObject& command : commands) {
        const QString name = command["name"].toString();
        const auto arguments = Tables::rows(command["arguments"]);
        std::vector<Element> all;
        for (const QJsonObject& argument : arguments)
            all.push_back(tables.sample(argument["tag"].toString(), true));
        // The whole answer, as a stream ends with its `ok`: the next command's answer comes behind it.
        const auto fault = [&](std::vector<Element> given) {
            given.insert(given.begin(), Element("Unheard", "of"));
            ++asked;
            const QByteArray end = name_replies(asked, asked);
            client.send(cmd("x", xml({name, given})) + names(asked, asked));
            const QByteArray answer =
                client.read_until([&](const QByteArray& got) { return got.endsWith(end); });
            const int at = answer.indexOf("<ErrorMessage>");
            return at < 0 ? QString()
                          : QString::fromUtf8(answer.mid(at + 14, answer.indexOf("</", at) - at - 14));
        };

        EXPECT_FALSE(
            fault(all).contains(QRegularExpression("unknown command|missing|cannot be &|more than once")))
            << qPrintable(name + ": " + fault(all));
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            const QString tag = arguments[i]["tag"].toString();
            const std::string where = (name + ", " + tag).toStdString();
            std::vector<Element> given = all;
            given.erase(given.begin() + static_cast<int>(i));
            const bool optional = arguments[i]["optional"].toBool() || tables.is_flag(tag);
            EXPECT_EQ(fault(given) == tag + " is missing in " + name, !optional) << where;
            given = all;
            given.push_back(all[i]);
            EXPECT_EQ(fault(given) == tag + " stands more than once in " + name, !tables.is_flag(tag))
                << where;
            given = all;
            given[i] = tables.sample(tag, false);
            EXPECT_EQ(fault(given).contains(QRegularExpression("^[A-Z]\\w+ (cannot be|holds)")),
                      tables.can_be_bad(tag))
                << where;
        }
    }
}

TEST_F(CommandsTest, EveryReportIsSentOnRequest)
{
    const Tables tables;
    const Station station;
    PlainClient client(station);
    ASSERT_EQ(client.ask(names(1, 1)), name_replies(1, 1));
    const auto reports = tables.rows("reports");
    EXPECT_EQ(reports.size(), 47u);
    QString why;
    for (const QJsonObject& report : reports) {
        const QString name = report["name"].toString();
        std::vector<Element> all;
        for (const QJsonObject& field : Tables::rows(report["tags"]))
            all.insert(all.begin(), tables.sample(field["tag"].toString(), true)); // in any order
        ASSERT_TRUE(station->send_report(name, all, &why)) << qPrintable(why);
        const QByteArray sent =
            client.read_until([](const QByteArray& got) { return got.endsWith("</report>\r\n"); });
        EXPECT_TRUE(sent.startsWith("<report>\r\n<" + name.toUtf8() + ">\r\n")) << sent.constData();
        int at = 0;
        for (const QJsonObject& field : Tables::rows(report["tags"]))
            EXPECT_GT(at = sent.indexOf("<" + field["tag"].toString().toUtf8() + ">", at), 0)
                << sent.constData();
        EXPECT_FALSE(station->send_report(name, {all[0], all[0]}));
    }
    EXPECT_FALSE(station->send_report("clip_vanished", {}, &why));
    EXPECT_EQ(why, "there is no report \"clip_vanished\"");
    EXPECT_FALSE(station->send_report("channel_speed", {{"Channel", "A"}, {"Speed", "fast"}}, &why));
    EXPECT_EQ(why, "Speed cannot be \"fast\"");
}

TEST_F(CommandsTest, ReadOnlyClipsKeepTheirNames)
{
    const Station station;
    PlainClient client(station);
    for (const char* command :
         {"<rename_clip><FromID>archive/1987/opening_ceremony</FromID><ToID>a</ToID></rename_clip>",
          "<rename_dir><FromDir>archive/1987</FromDir><ToDir>a</ToDir></rename_dir>",
          "<rename_dir><FromDir>archive</FromDir><ToDir>a</ToDir></rename_dir>"})
        EXPECT_TRUE(client.ask(cmd("1", command)).contains("opening_ceremony&quot; is read-only")) << command;
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
                return client.ask(cmd("1", compact::to_command(command))).contains("<ok/>");
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
        ASSERT_TRUE(author.ask(cmd("1", compact::to_command(command))).contains("<ok/>"));

    for (const char* command :
         {"download_list ListID=l", "channel_report_register Channel=A ChannelReportType=listplay"}) {
        const quint64 dropped = station->counters().overrun;
        PlainClient client(station);
        client.send(cmd("1", compact::to_command(command)));
        EXPECT_TRUE(wait_until([&] { return station->counters().overrun > dropped; })) << command;
    }
    EXPECT_TRUE(author.ask(cmd("1", "<sync/>")).contains("<ok/>"));
}

} // namespace
