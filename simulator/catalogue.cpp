// From the embedded tables to structs with hashed names.
#include <simulator/catalogue_p.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

// The tables are a resource of a library, which no linker must leave out. Outside of every namespace.
static void load_tables()
{
    Q_INIT_RESOURCE(catalogue);
}

namespace simulator {

namespace {

QString text(const QJsonObject& row, const char* key)
{
    return row.value(QLatin1String(key)).toString();
}

std::vector<QJsonObject> rows(const QJsonObject& parent, const char* key)
{
    std::vector<QJsonObject> found;
    for (const QJsonValue value : parent.value(QLatin1String(key)).toArray())
        found.push_back(value.toObject());
    return found;
}

Kind kind_of(const QString& word)
{
    static const QHash<QString, Kind> kinds = {
        {QStringLiteral("string"), Kind::String},    {QStringLiteral("bool"), Kind::Bool},
        {QStringLiteral("flag"), Kind::Flag},        {QStringLiteral("u8"), Kind::U8},
        {QStringLiteral("u16"), Kind::U16},          {QStringLiteral("u32"), Kind::U32},
        {QStringLiteral("u64"), Kind::U64},          {QStringLiteral("int"), Kind::Int},
        {QStringLiteral("speed"), Kind::Speed},      {QStringLiteral("enum"), Kind::Enum},
        {QStringLiteral("record"), Kind::Record},    {QStringLiteral("set"), Kind::Container},
        {QStringLiteral("vector"), Kind::Container}, {QStringLiteral("list"), Kind::Container},
    };
    return kinds.value(word);
}

} // namespace

const Catalogue& Catalogue::get()
{
    static const Catalogue catalogue;
    return catalogue;
}

Catalogue::Catalogue()
{
    load_tables();
    QFile file(QStringLiteral(":/skuan/simulator/kvrp3.json"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the simulator was built without its catalogue");
    const QJsonObject tables = QJsonDocument::fromJson(file.readAll()).object();

    for (const QJsonObject& row : rows(tables, "enumerations")) {
        QStringList& names = all_names_.emplace_back();
        for (const QJsonValue name : row.value(QLatin1String("names")).toArray())
            names.append(name.toString());
        enumerations_.insert(text(row, "name"), &names);
    }

    QHash<QString, Layout*> records;
    for (const QJsonObject& row : rows(tables, "records"))
        records.insert(text(row, "name"), &all_records_.emplace_back());

    QHash<QString, QJsonObject> containers;
    for (const QJsonObject& row : rows(tables, "containers"))
        containers.insert(text(row, "name"), row);

    QHash<QString, Tag*> tags;
    for (const QJsonObject& row : rows(tables, "tags")) {
        Tag& tag = all_tags_.emplace_back();
        tag.name = text(row, "name");
        tag.kind = kind_of(text(row, "kind"));
        tag.names = enumerations_.value(text(row, "type"));
        tag.record = records.value(text(row, "type"));
        tags.insert(tag.name, &tag);
        tags_.insert(tag.name, &tag);
    }
    for (Tag& tag : all_tags_) {
        const QJsonObject container = containers.value(tag.name);
        tag.member = tags_.value(text(container, "member"));
        tag.capacity = static_cast<std::size_t>(container.value(QLatin1String("capacity")).toInt());
    }

    const auto fill = [this](Layout& layout, const QJsonObject& row, const char* fields) {
        layout.name = text(row, "name");
        for (const QJsonObject& field : rows(row, fields))
            layout.fields.push_back(
                {tags_.value(text(field, "tag")), field.value(QLatin1String("optional")).toBool()});
    };
    for (const QJsonObject& row : rows(tables, "records"))
        fill(*records.value(text(row, "name")), row, "fields");
    for (const QJsonObject& row : rows(tables, "replies")) {
        Layout& reply = all_replies_.emplace_back();
        fill(reply, row, "tags");
        replies_.insert(reply.name, &reply);
    }
    for (const QJsonObject& row : rows(tables, "commands")) {
        CommandForm& command = all_commands_.emplace_back();
        fill(command, row, "arguments");
        command.ends_with_ok = row.value(QLatin1String("replies")).toArray().contains(QStringLiteral("ok"));
        commands_.insert(command.name, &command);
    }
    for (const QJsonObject& row : rows(tables, "reports")) {
        ReportForm& report = all_reports_.emplace_back();
        fill(report, row, "tags");
        QString on = text(row, "on");
        const bool of_channel = on.startsWith(QLatin1String("channel "));
        if (of_channel)
            on.remove(0, 8);
        const int place = value(of_channel ? "ChannelReportType" : "ReportType", on);
        if (place >= 0) {
            report.trigger = of_channel ? Trigger::ChannelClass : Trigger::Class;
            report.report_class = static_cast<unsigned>(place);
        }
        reports_.insert(report.name, &report);
    }
}

int Catalogue::value(const char* enumeration, const QString& name) const
{
    const QStringList* names = enumerations_.value(QLatin1String(enumeration));
    return names ? static_cast<int>(names->indexOf(name)) : -1;
}

const QString& Catalogue::name(const char* enumeration, int value) const
{
    return enumerations_.value(QLatin1String(enumeration))->at(value);
}

} // namespace simulator
