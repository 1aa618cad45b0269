// Replies and reports through QXmlStreamWriter.
#include <simulator/message_writer_p.h>

namespace simulator {

namespace {
const QString line_end = QStringLiteral("\r\n");
}

void write_text(QXmlStreamWriter& writer, const QString& text)
{
    int from = 0;
    for (int at = 0; (at = text.indexOf(QLatin1Char('\r'), from)) >= 0; from = at + 1) {
        writer.writeCharacters(text.mid(from, at - from));
        writer.writeEntityReference(QStringLiteral("#13"));
    }
    writer.writeCharacters(from == 0 ? text : text.mid(from));
}

MessageWriter::MessageWriter(qint64 most) : most_(most), writer_(&text_) {}

void MessageWriter::reply(const QString& xid, const char* name, const Fields& fields)
{
    if (is_full())
        return;
    open(QStringLiteral("reply"));
    writer_.writeTextElement(QStringLiteral("xid"), xid);
    writer_.writeCharacters(line_end);
    body(QLatin1String(name), fields);
    close();
}

void MessageWriter::report(const QString& name, const Fields& fields)
{
    if (is_full())
        return;
    open(QStringLiteral("report"));
    body(name, fields);
    close();
}

void MessageWriter::message(const char* name, const Fields& fields)
{
    if (!is_full())
        body(QLatin1String(name), fields);
}

QByteArray MessageWriter::take()
{
    QByteArray bytes = text_.toUtf8();
    text_.resize(0);
    return bytes;
}

void MessageWriter::body(const QString& name, const Fields& fields)
{
    if (fields.begin() == fields.end()) {
        writer_.writeEmptyElement(name);
        writer_.writeCharacters(line_end);
        return;
    }
    open(name);
    for (const Element& field : fields)
        element(field);
    close();
}

// As deep as the value is, and a value is as deep as the catalogue says.
void MessageWriter::element(const Element& element)
{
    if (is_full())
        return;
    if (!element.children.empty() || element.text.isEmpty())
        return body(element.tag, element.children);
    writer_.writeStartElement(element.tag);
    write_text(writer_, element.text);
    close();
}

void MessageWriter::open(const QString& tag)
{
    writer_.writeStartElement(tag);
    writer_.writeCharacters(line_end);
}

void MessageWriter::close()
{
    writer_.writeEndElement();
    writer_.writeCharacters(line_end);
}

} // namespace simulator
