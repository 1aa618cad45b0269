// Replies and reports through QXmlStreamWriter.
#include <simulator/message_writer_p.h>

namespace simulator {

namespace {
const QString line_end = QStringLiteral("\r\n");
}

MessageWriter::MessageWriter() : writer_(&text_) {}

void MessageWriter::reply(const QString& xid, const char* name, Fields fields)
{
    open("reply");
    line("xid", xid);
    body(name, fields);
    close();
}

void MessageWriter::report(const char* name, Fields fields)
{
    open("report");
    body(name, fields);
    close();
}

QByteArray MessageWriter::take()
{
    QByteArray bytes = text_.toUtf8();
    text_.resize(0);
    return bytes;
}

void MessageWriter::body(const char* name, Fields fields)
{
    if (fields.size() == 0) {
        writer_.writeEmptyElement(QLatin1String(name));
        writer_.writeCharacters(line_end);
        return;
    }
    open(name);
    for (const Field& field : fields)
        line(field.tag, field.text);
    close();
}

void MessageWriter::open(const char* tag)
{
    writer_.writeStartElement(QLatin1String(tag));
    writer_.writeCharacters(line_end);
}

void MessageWriter::close()
{
    writer_.writeEndElement();
    writer_.writeCharacters(line_end);
}

void MessageWriter::line(const char* tag, const QString& text)
{
    writer_.writeTextElement(QLatin1String(tag), text);
    writer_.writeCharacters(line_end);
}

} // namespace simulator
