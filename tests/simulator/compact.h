// Messages in a short form that a table of dialogue can be written in, and back again:
// `cue_clip Channel=A ClipID='a b' BlackOnCue`, with children in parentheses as in `EEStatus(AutoEE=true)`.
#pragma once

#include <QByteArray>
#include <QXmlStreamReader>

#include <string>

namespace compact {

inline bool is_plain(const QString& text)
{
    return !text.isEmpty() && !text.contains(QLatin1Char(' ')) && !text.contains(QLatin1Char('(')) &&
           !text.contains(QLatin1Char(')')) && !text.contains(QLatin1Char('\''));
}

/// One element and all in it; the reader stands at its start.
inline QString from_element(QXmlStreamReader& reader)
{
    const QString name = reader.name().toString();
    QString text;
    QStringList children;
    while (!reader.atEnd() && reader.readNext() != QXmlStreamReader::EndElement) {
        if (reader.isStartElement())
            children += from_element(reader);
        else if (reader.isCharacters())
            text += reader.text();
    }
    if (!children.isEmpty())
        return name + "(" + children.join(" ") + ")";
    return text.isEmpty() ? name : name + "=" + (is_plain(text) ? text : "'" + text + "'");
}

/// Each reply and report of a stream on a line of its own, reports with a star. xids are left out.
inline std::string from_stream(const QByteArray& bytes)
{
    QXmlStreamReader reader("<stream>" + bytes + "</stream>");
    reader.readNextStartElement();
    QString lines;
    while (reader.readNextStartElement()) {
        const bool is_report = reader.name() == QLatin1String("report");
        while (reader.readNextStartElement()) {
            if (reader.name() == QLatin1String("xid")) {
                reader.skipCurrentElement();
                continue;
            }
            QString line = from_element(reader);
            const int inside = line.indexOf(QLatin1Char('('));
            if (inside >= 0) { // of the message itself they would only be in the way
                line[inside] = QLatin1Char(' ');
                line.chop(1);
            }
            lines += (is_report ? "* " : "< ") + line + "\n";
        }
    }
    return lines.toStdString();
}

/// The children from `at` on, up to a closing parenthesis or the end.
inline QByteArray to_children(const QByteArray& line, int& at)
{
    QByteArray xml;
    while (at < line.size() && line[at] != ')') {
        if (line[at] == ' ') {
            ++at;
            continue;
        }
        const int start = at;
        while (at < line.size() && !strchr(" =()", line[at]))
            ++at;
        const QByteArray name = line.mid(start, at - start);
        QByteArray inside;
        if (at < line.size() && line[at] == '(') {
            inside = to_children(line, ++at);
            ++at;
        } else if (at < line.size() && line[at] == '=') {
            const char end = line[++at] == '\'' ? '\'' : 0;
            const int from = end ? ++at : at;
            while (at < line.size() && (end ? line[at] != end : !strchr(" )", line[at])))
                ++at;
            inside = QString::fromUtf8(line.mid(from, at - from)).toHtmlEscaped().toUtf8();
            at += end ? 1 : 0;
        }
        xml += "<" + name + ">" + inside + "</" + name + ">";
    }
    return xml;
}

/// The element of a command.
inline QByteArray to_command(const QByteArray& line)
{
    const QByteArray name = line.split(' ').first();
    int at = name.size();
    return "<" + name + ">" + to_children(line, at) + "</" + name + ">";
}

} // namespace compact
