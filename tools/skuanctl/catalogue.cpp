// Reading the table. It is built from what the library is built from, and checked there.
#include <skuanctl/catalogue.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <iterator>

namespace {

constexpr const char* kind_names[] = {"string", "bool", "flag",  "u8",   "u16",   "u32",
                                      "u64",    "int",  "speed", "enum", "record"};

Kind kind_named(const QString& name)
{
    const auto kind = std::find(std::begin(kind_names), std::end(kind_names), name);
    return static_cast<Kind>(kind - std::begin(kind_names)); // the rest are containers: set, vector, list
}

class Loader
{
public:
    Loader(const QJsonObject& table, Catalogue& into) : table_(table), into_(into) {}

    void load()
    {
        for (const QJsonValue row : table_["tags"].toArray())
            into_.tags.push_back({name(row), meaning(row), kind_named(row["kind"].toString())});
        // All tags stand now where they stay.
        for (std::size_t i = 0; i < into_.tags.size(); ++i)
            resolve(into_.tags[i], table_["tags"][static_cast<int>(i)]["type"].toString());
        for (const QJsonValue row : table_["commands"].toArray())
            into_.commands.push_back({name(row), meaning(row), row["section"].toString(),
                                      parts(row["arguments"]), texts(row["replies"])});
        for (const QJsonValue row : table_["replies"].toArray())
            into_.replies.push_back({name(row), meaning(row), parts(row["tags"]), row["ends"].toBool()});
        for (const QJsonValue row : table_["reports"].toArray())
            into_.reports.push_back({name(row), meaning(row), parts(row["tags"]), row["on"].toString()});
    }

private:
    static QString name(const QJsonValue& row) { return row["name"].toString(); }
    static QString meaning(const QJsonValue& row) { return row["meaning"].toString(); }
    static QStringList texts(const QJsonValue& array)
    {
        QStringList all;
        for (const QJsonValue text : array.toArray())
            all += text.toString();
        return all;
    }

    QJsonValue named(const char* list, const QString& wanted) const
    {
        for (const QJsonValue row : table_[QLatin1String(list)].toArray())
            if (name(row) == wanted)
                return row;
        return {};
    }

    Parts parts(const QJsonValue& array) const
    {
        Parts all;
        for (const QJsonValue row : array.toArray())
            all.push_back({find_row(into_.tags, row["tag"].toString()), row["optional"].toBool()});
        return all;
    }

    void resolve(Tag& tag, const QString& type) const
    {
        if (tag.kind == Kind::enumeration)
            tag.names = texts(named("enumerations", type)["names"]);
        if (tag.kind == Kind::record)
            tag.parts = parts(named("records", type)["fields"]);
        if (tag.kind == Kind::container) {
            const QJsonValue container = named("containers", type);
            tag.is_set = container["shape"].toString() == QLatin1String("set");
            tag.parts = {{find_row(into_.tags, container["member"].toString()), false}};
            tag.capacity = container["capacity"].toInt();
        }
    }

    const QJsonObject table_;
    Catalogue& into_;
};

} // namespace

const Catalogue& catalogue()
{
    static const Catalogue only = [] {
        QFile file(QStringLiteral(":/kvrp3.json"));
        file.open(QIODevice::ReadOnly);
        Catalogue made;
        Loader(QJsonDocument::fromJson(file.readAll()).object(), made).load();
        return made; // should the vectors be moved, what is in them stays where it is
    }();
    return only;
}

const Tag* find_tag(const Parts& parts, const QString& name)
{
    for (const Part& part : parts)
        if (part.tag->name == name)
            return part.tag;
    return nullptr;
}

QStringList names_of(const Parts& parts)
{
    QStringList names;
    for (const Part& part : parts)
        names += part.tag->name;
    return names;
}
