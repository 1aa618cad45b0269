// Reading and writing the groups and entries of a state.
#include <simulator/state_file_p.h>

#include <simulator/message_writer_p.h>
#include <simulator/reading_p.h>
#include <simulator/server_state_p.h>
#include <simulator/state_forms_p.h>

#include <QBuffer>
#include <QFile>
#include <QSaveFile>
#include <QSet>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

namespace simulator {

namespace {

constexpr int max_depth = 32;

const std::vector<StateGroup>& state_groups()
{
    static const std::vector<StateGroup> all = [] {
        std::vector<StateGroup> groups = content_groups();
        groups.insert(groups.end(), machine_groups().begin(), machine_groups().end());
        return groups;
    }();
    return all;
}

// The first child, at any depth, that the layout does not have. What a client sends too much is passed over;
// what somebody has written into a file and misspelt is not.
QString stranger(const Layout& layout, const Element& element)
{
    for (const Element& child : element.children) {
        const auto field = std::find_if(layout.fields.begin(), layout.fields.end(),
                                        [&](const Field& f) { return f.tag->name == child.tag; });
        if (field == layout.fields.end())
            return child.tag;
        const Tag* tag = field->tag;
        QString found;
        if (tag->kind == Kind::Record)
            found = stranger(*tag->record, child);
        for (const Element& member : child.children) {
            if (tag->kind != Kind::Container || !found.isEmpty())
                break;
            if (member.tag != tag->member->name)
                found = member.tag;
            else if (tag->member->kind == Kind::Record)
                found = stranger(*tag->member->record, member);
        }
        if (!found.isEmpty())
            return found;
    }
    return {};
}

class Reader
{
public:
    Reader(QIODevice& file, ServerState& state) : xml_(&file), state_(state)
    {
        xml_.setNamespaceProcessing(false);
    }

    QString read()
    {
        if (!xml_.readNextStartElement())
            fail(QStringLiteral("there is no <state>"));
        else if (xml_.name() != QLatin1String("state"))
            fail(QStringLiteral("the file is <%1>, not <state>").arg(xml_.name()));
        else
            while (error_.isEmpty() && xml_.readNextStartElement())
                read_group();
        while (error_.isEmpty() && !xml_.atEnd())
            xml_.readNext();
        if (xml_.hasError() && error_.isEmpty())
            fail(xml_.errorString());
        return error_;
    }

private:
    void fail(const QString& what) { fail(xml_.hasError() ? xml_.errorString() : what, xml_.lineNumber()); }
    void fail(const QString& what, qint64 line)
    {
        if (error_.isEmpty())
            error_ = QStringLiteral("line %1: %2").arg(line).arg(what);
    }

    template <class Rows>
    auto row_of(const Rows& rows)
    {
        const auto at = std::find_if(rows.begin(), rows.end(),
                                     [&](const auto& row) { return xml_.name() == QLatin1String(row.name); });
        return at == rows.end() ? nullptr : &*at;
    }

    void read_group()
    {
        const StateGroup* group = row_of(state_groups());
        if (!group)
            return fail(QStringLiteral("a state has no <%1>").arg(xml_.name()));
        if (seen_.contains(group))
            return fail(QStringLiteral("<%1> stands more than once").arg(xml_.name()));
        seen_.insert(group);
        group->clear(state_);
        while (error_.isEmpty() && xml_.readNextStartElement()) {
            const StateEntry* entry = row_of(group->entries);
            if (!entry)
                return fail(QStringLiteral("<%1> has no <%2>").arg(QLatin1String(group->name), xml_.name()));
            read_entry(*entry);
        }
    }

    void read_entry(const StateEntry& entry)
    {
        const qint64 line = xml_.lineNumber();
        Element element;
        if (!read_element(element, max_depth))
            return fail(QStringLiteral("elements are nested too deeply"));
        const QString unknown = stranger(entry.layout, element);
        if (!unknown.isEmpty())
            return fail(QStringLiteral("a %1 has no %2").arg(QLatin1String(entry.name), unknown), line);
        const Objection objection = simulator::read(entry.layout, element);
        if (!objection.text.isEmpty())
            return fail(objection.text, line);
        if (const Refusal refusal = entry.take(state_, element))
            fail(refusal.text, line);
    }

    bool read_element(Element& element, int depth)
    {
        element.tag = xml_.name().toString();
        while (depth > 0) {
            switch (xml_.readNext()) {
            case QXmlStreamReader::StartElement:
                if (!read_element(element.children.emplace_back(), depth - 1))
                    return false;
                break;
            case QXmlStreamReader::EndElement:
                if (!element.children.empty())
                    element.text.clear();
                return true;
            case QXmlStreamReader::Characters:
                element.text += xml_.text();
                break;
            case QXmlStreamReader::Invalid:
                return false;
            default:
                break;
            }
        }
        return false;
    }

    QXmlStreamReader xml_;
    ServerState& state_;
    QSet<const StateGroup*> seen_;
    QString error_;
};

void write(QXmlStreamWriter& xml, const QString& tag, const QString& text,
           const std::vector<Element>& children)
{
    if (children.empty() && text.isEmpty())
        return xml.writeEmptyElement(tag);
    xml.writeStartElement(tag);
    if (children.empty())
        write_text(xml, text);
    for (const Element& child : children)
        write(xml, child.tag, child.text, child.children);
    xml.writeEndElement();
}

void write_state(QIODevice& file, const ServerState& state)
{
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(1);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("state"));
    for (const StateGroup& group : state_groups()) {
        xml.writeStartElement(QLatin1String(group.name));
        for (const StateEntry& entry : group.entries)
            entry.give(state, [&](const std::vector<Element>& children) {
                write(xml, QLatin1String(entry.name), {}, children);
            });
        xml.writeEndElement();
    }
    xml.writeEndDocument();
}

} // namespace

QString read_state(QIODevice& file, ServerState& state)
{
    return Reader(file, state).read();
}

QString load_state(const QString& path, ServerState& state)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot read %1: %2").arg(path, file.errorString());
    const QString error = read_state(file, state);
    return error.isEmpty() ? error : QStringLiteral("%1, %2").arg(path, error);
}

QByteArray state_text(const ServerState& state)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    write_state(buffer, state);
    return buffer.data();
}

// Written beside the file, synchronised, and given its name then.
QString save_state(const QString& path, const ServerState& state)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        write_state(file, state);
        if (file.commit())
            return {};
    }
    return QStringLiteral("cannot save to %1: %2").arg(path, file.errorString());
}

} // namespace simulator
