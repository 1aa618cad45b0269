// Messages in a short form that a table of dialogue can be written in, and back again:
// `cue_clip Channel=A ClipID='a b' BlackOnCue`, with children in parentheses as in `EEStatus(AutoEE=true)`.
#pragma once

#include <QByteArray>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <string>

namespace compact {

/// One element and all in it; the reader stands at its start.
inline QString from_element(QXmlStreamReader& reader)
{
    static const QRegularExpression separator(QStringLiteral("[ ()']"));
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
    return text.isEmpty() ? name : name + "=" + (text.contains(separator) ? "'" + text + "'" : text);
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
