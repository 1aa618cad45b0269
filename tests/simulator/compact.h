// Messages in a short form that a table of dialogue can be written in, and back again:
// `cue_clip Channel=A ClipID='a b' BlackOnCue`, with children in parentheses as in `EEStatus(AutoEE=true)`.
#pragma once

#include <simulator/element.h>

#include <QByteArray>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <string>

namespace compact {

/// One element and all in it; the reader stands at its start.
inline simulator::Element read(QXmlStreamReader& reader)
{
    simulator::Element element(reader.name().toString());
    while (!reader.atEnd() && reader.readNext() != QXmlStreamReader::EndElement) {
        if (reader.isStartElement())
            element.children.push_back(read(reader));
        else if (reader.isCharacters())
            element.text += reader.text();
    }
    return element;
}

inline QString from_element(const simulator::Element& element)
{
    static const QRegularExpression separator(QStringLiteral("[ ()']"));
    QStringList children;
    for (const simulator::Element& child : element.children)
        children += from_element(child);
    if (!children.isEmpty())
        return element.tag + "(" + children.join(" ") + ")";
    const QString& text = element.text;
    return text.isEmpty() ? element.tag
                          : element.tag + "=" + (text.contains(separator) ? "'" + text + "'" : text);
}

/// A whole message, around which parentheses would only be in the way.
inline QString from_message(const simulator::Element& message)
{
    QString line = from_element(message);
    const int inside = line.indexOf(QLatin1Char('('));
    if (!message.children.empty()) {
        line[inside] = QLatin1Char(' ');
        line.chop(1);
    }
    return line;
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
            lines += (is_report ? "* " : "< ") + from_message(read(reader)) + "\n";
        }
    }
    return lines.toStdString();
}

/// The element of a command.
inline QByteArray to_command(const QString& line)
{
    static const QRegularExpression token(QStringLiteral("([^ =()]+)(\\(|=('[^']*'|[^ )]*))?|\\)"));
    QStringList open = {line.section(QLatin1Char(' '), 0, 0)};
    QString xml = "<" + open.first() + ">";
    auto tokens = token.globalMatch(line, open.first().size());
    while (tokens.hasNext()) {
        const QRegularExpressionMatch match = tokens.next();
        if (match.captured() == QLatin1String(")")) {
            xml += "</" + open.takeLast() + ">";
            continue;
        }
        xml += "<" + match.captured(1) + ">";
        if (match.captured(2) == QLatin1String("(")) {
            open += match.captured(1);
            continue;
        }
        QString value = match.captured(3);
        if (value.startsWith(QLatin1Char('\'')))
            value = value.mid(1, value.size() - 2);
        xml += value.toHtmlEscaped() + "</" + match.captured(1) + ">";
    }
    return (xml + "</" + open.first() + ">").toUtf8();
}

} // namespace compact
