// Every command of the catalogue, and every report: read to the letter, and nothing else.
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
    const QByteArray text(20'000, 'x'), clip(1000, 'c');
    const QByteArray element =
        "<ListElement><ContentID><ClipID>" + text + "</ClipID></ContentID></ListElement>";
    const struct
    {
        bool stays;
        std::vector<QByteArray> commands; // the last as often as there is room
    } rows[] = {
        {true, {"<userdict_set><Key>%1</Key><Value>" + text + "</Value></userdict_set>"}},
        {true,
         {"<metadata_set><MetadataDatabase>d</MetadataDatabase><MetadataList><Metadata><Key>%1</Key><Value>" +
          text + "</Value></Metadata></MetadataList></metadata_set>"}},
        {true, {"<create_clip><ClipID>%1</ClipID><TrackSet/></create_clip>"}},
        {true, {"<create_directory><DirectoryName>%1</DirectoryName></create_directory>"}},
        {true, {"<vclip_create><VClipID>%1" + text + "</VClipID><ClipLength>1</ClipLength></vclip_create>"}},
        {false,
         {"<list_save_start><ListID>l</ListID></list_save_start>",
          "<list_save_element>" + element + "</list_save_element>"}},
        {false,
         {"<export_start/>",
          "<export_add><ClipID>bars_and_tone</ClipID><Filename>" + text + "</Filename></export_add>"}},
        {false, {"<userdict_watch><Key>%1" + text + "</Key></userdict_watch>"}},
        {false,
         {"<watch_metadata_database><MetadataDatabase>d</MetadataDatabase><MetadataPrefix>%1" + text +
          "</MetadataPrefix></watch_metadata_database>"}},
        {true, {"<userdict_own><Key>%1</Key><Value>" + text + "</Value></userdict_own>"}},
        {true,
         {"<create_clip><ClipID>" + clip + "</ClipID><TrackSet/></create_clip>",
          "<vclip_create><VClipID>v</VClipID><ClipLength>100</ClipLength></vclip_create>",
          "<vclip_modification_start><VClipID>v</VClipID></vclip_modification_start>",
          "<vclip_add_segment><VClipID>v</VClipID><ClipID>" + clip +
              "</ClipID><TrackSet><TrackType>video</TrackType></TrackSet><ClipPosition>0</ClipPosition>"
              "<VClipPosition>%1</VClipPosition><ClipLength>1</ClipLength></vclip_add_segment>"}},
    };
    for (const auto& row : rows) {
        const Station station(settings);
        const auto fill = [&] {
            PlainClient client(station);
            for (std::size_t i = 0; i + 1 < row.commands.size(); ++i)
                EXPECT_TRUE(client.ask(cmd("1", row.commands[i])).contains("<ok/>"));
            for (int stored = 0; stored < 100; ++stored) {
                QByteArray command = row.commands.back();
                if (!client.ask(cmd("1", command.replace("%1", QByteArray::number(stored))))
                         .contains("<ok/>"))
                    return stored;
            }
            return 100;
        };
        const int stored = fill();
        EXPECT_GT(stored, 0) << row.commands.back().left(100).constData();
        EXPECT_LT(stored, 100) << row.commands.back().left(100).constData();
        EXPECT_TRUE(wait_until([&] { return station->counters().connected == 0; }));
        EXPECT_TRUE(row.stays || fill() == stored) << row.commands.back().left(100).constData();
    }
}

// What one command brings may be far more than what it takes to send it.
TEST_F(CommandsTest, WhoAsksForMoreThanMayWaitIsDropped)
{
    simulator::Settings settings;
    settings.max_backlog = 100'000;
    const Station station(settings);
    PlainClient author(station);
    const QByteArray element = "<list_save_element><ListElement><ContentID><ClipID>" +
                               QByteArray("&quot;").repeated(10'000) +
                               "</ClipID></ContentID></ListElement></list_save_element>";
    for (const QByteArray& command :
         {QByteArray("<list_save_start><ListID>l</ListID></list_save_start>"), element, element,
          QByteArray("<list_save_end/>"),
          QByteArray("<list_load><Channel>A</Channel><ListID>l</ListID></list_load>")})
        ASSERT_TRUE(author.ask(cmd("1", command)).contains("<ok/>"));

    const QByteArray greedy[] = {
        "<download_list><ListID>l</ListID></download_list>",
        "<channel_report_register><Channel>A</Channel><ChannelReportType>listplay</ChannelReportType>"
        "</channel_report_register>"};
    for (const QByteArray& command : greedy) {
        const quint64 dropped = station->counters().overrun;
        PlainClient client(station);
        client.send(cmd("1", command));
        EXPECT_TRUE(wait_until([&] { return station->counters().overrun > dropped; })) << command.constData();
    }
    EXPECT_TRUE(author.ask(cmd("1", "<sync/>")).contains("<ok/>"));
}

} // namespace
