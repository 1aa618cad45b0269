// Lines to records and back. Keys come out in alphabetical order, and read well in it.
#include <skuanctl/conversation.h>

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

using std::chrono::microseconds;

namespace {

const QString format = QStringLiteral("skuan-conversation");
constexpr int version = 1;

const QString at_key = QStringLiteral("at_us");
const QString connection_key = QStringLiteral("connection");
const QString from_key = QStringLiteral("from");
const QString event_key = QStringLiteral("event");
const QString text_key = QStringLiteral("text");
const QString base64_key = QStringLiteral("raw_base64");

const struct
{
    Record::Event event;
    const char* name;
} events[] = {{Record::opened, "opened"},
              {Record::refused, "refused"},
              {Record::ended, "ended"},
              {Record::lost, "lost"}};

QByteArray as_line(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

void put_bytes(QJsonObject& object, const QByteArray& bytes)
{
    const QString text = QString::fromUtf8(bytes.constData(), bytes.size()); // past a NUL, too
    if (text.toUtf8() == bytes)
        object.insert(text_key, text);
    else // or bytes that a text does not bring back, as a chunk that ends within a character
        object.insert(base64_key, QString::fromLatin1(bytes.toBase64()));
}

std::optional<qint64> whole_number(const QJsonValue& value, qint64 least, qint64 most)
{
    const double number = value.toDouble(-1);
    const auto whole = number >= 0 && number <= double(most) ? static_cast<qint64>(number) : -1;
    return whole >= least && double(whole) == number ? std::optional(whole) : std::nullopt;
}

/// What the line says was sent or happened; false if it says nothing, or says it twice.
bool take_content(const QJsonObject& object, Record& record)
{
    int found = 0;
    if (const QJsonValue text = object[text_key]; text.isString()) {
        ++found;
        record.bytes = text.toString().toUtf8();
    }
    if (const QJsonValue base64 = object[base64_key]; base64.isString()) {
        const auto bytes = QByteArray::fromBase64Encoding(base64.toString().toLatin1(),
                                                          QByteArray::AbortOnBase64DecodingErrors);
        found += bytes ? 1 : 2;
        record.bytes = *bytes;
    }
    const QString name = object[event_key].toString();
    for (const auto& row : events)
        if (name == QLatin1String(row.name)) {
            ++found;
            record.event = row.event;
        }
    return found == 1;
}

/// Nothing if it is no record, and `*what` tells what is wrong with it.
std::optional<Record> as_record(const QJsonObject& object, QString* what)
{
    const auto at = whole_number(object[at_key], 0, 1'000'000'000'000'000); // thirty years
    const auto connection = whole_number(object[connection_key], 1, 1'000'000'000);
    const QString from = object[from_key].toString();
    Record record{microseconds(at.value_or(0)), static_cast<int>(connection.value_or(0)),
                  from == name_of(Side::server) ? Side::server : Side::client, Record::said};
    if (!at)
        *what = QStringLiteral("%1 is no whole number of microseconds").arg(at_key);
    else if (!connection)
        *what = QStringLiteral("%1 is no number from 1").arg(connection_key);
    else if (from != name_of(record.from))
        *what = QStringLiteral("%1 is neither client nor server").arg(from_key);
    else if (!take_content(object, record))
        *what = QStringLiteral("it has not one of %1, %2 and %3").arg(text_key, base64_key, event_key);
    else
        return record;
    return std::nullopt;
}

} // namespace

QString name_of(Side side)
{
    return side == Side::client ? QStringLiteral("client") : QStringLiteral("server");
}

bool ConversationWriter::open(const QString& file)
{
    file_.setFileName(file);
    const QFileInfo there(file);
    if (there.isFile() && there.size() > 0) // a conversation cannot be had again
        error_ = QStringLiteral("there is a file %1 already").arg(file);
    else if (!file_.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        error_ = QStringLiteral("cannot write %1: %2").arg(file, file_.errorString());
    else
        return write_line(as_line({{"format", format}, {"version", version}}));
    return false;
}

bool ConversationWriter::write(const Record& record)
{
    QJsonObject object{{at_key, static_cast<qint64>(record.at.count())},
                       {connection_key, record.connection},
                       {from_key, name_of(record.from)}};
    if (record.event == Record::said)
        put_bytes(object, record.bytes);
    for (const auto& row : events)
        if (row.event == record.event)
            object.insert(event_key, QLatin1String(row.name));
    return write_line(as_line(object));
}

bool ConversationWriter::write_line(const QByteArray& line)
{
    if (file_.write(line) == line.size())
        return true;
    error_ = QStringLiteral("cannot write %1: %2").arg(file_.fileName(), file_.errorString());
    return false;
}

bool ConversationReader::open(const QString& file)
{
    file_.setFileName(file);
    if (!file_.open(QIODevice::ReadOnly)) {
        error_ = QStringLiteral("cannot read %1: %2").arg(file, file_.errorString());
        return false;
    }
    QByteArray line;
    read_line(line);
    const QJsonObject head = QJsonDocument::fromJson(line).object();
    if (head["format"].toString() != format)
        error_ = QStringLiteral("%1 is no conversation that capture has written").arg(file);
    else if (head["version"].toDouble() != version)
        error_ = QStringLiteral("%1 is a conversation of version %2; this program knows version %3")
                     .arg(file, head["version"].toVariant().toString(), QString::number(version));
    return error_.isEmpty();
}

std::optional<Record> ConversationReader::next()
{
    QByteArray line;
    if (!error_.isEmpty() || !read_line(line))
        return std::nullopt;
    QJsonParseError json;
    const QJsonDocument document = QJsonDocument::fromJson(line, &json);
    if (!document.isObject()) {
        is_cut_short_ = !line.endsWith('\n'); // and so the file's last
        return is_cut_short_ ? std::nullopt : fail(QStringLiteral("it is no JSON object"));
    }
    QString what;
    const std::optional<Record> record = as_record(document.object(), &what);
    if (record)
        what = misfit(*record);
    return what.isEmpty() ? record : fail(what);
}

/// False at the end, and at a line that is too long.
bool ConversationReader::read_line(QByteArray& line)
{
    line = file_.readLine(most_line);
    if (line.isEmpty()) {
        if (file_.error() != QFile::NoError)
            fail(file_.errorString());
        return false;
    }
    ++line_;
    if (line.endsWith('\n') || file_.atEnd())
        return true;
    fail(QStringLiteral("it is longer than %1 bytes").arg(most_line));
    return false;
}

/// Notes how far its connection has come; tells why the record cannot stand where it does.
QString ConversationReader::misfit(const Record& record)
{
    const auto number = record.connection;
    const auto at = open_.find(number);
    if (record.event == Record::opened || record.event == Record::refused) {
        if (at != open_.end())
            return QStringLiteral("connection %1 is open already").arg(number);
        if (record.event == Record::opened)
            open_.emplace(number, Open{});
        return {};
    }
    if (at == open_.end())
        return QStringLiteral("connection %1 is not open").arg(number);
    bool& speaks = record.from == Side::client ? at->second.client : at->second.server;
    if (!speaks && record.event != Record::lost)
        return QStringLiteral("the %1 has ended connection %2 already").arg(name_of(record.from)).arg(number);
    if (record.event == Record::ended)
        speaks = false;
    if (record.event == Record::lost || !(at->second.client || at->second.server))
        open_.erase(at);
    return {};
}

std::nullopt_t ConversationReader::fail(const QString& what)
{
    error_ = QStringLiteral("%1, line %2: %3").arg(file_.fileName()).arg(line_).arg(what);
    return std::nullopt;
}
