// Writes replies and reports as the server puts them on the wire.
#pragma once

#include <QByteArray>
#include <QString>
#include <QXmlStreamWriter>

#include <initializer_list>

namespace simulator {

// One element of a message's body. The tag is ASCII and lives longer than the call.
struct Field
{
    const char* tag;
    QString text;
};

using Fields = std::initializer_list<Field>;

// Appends messages to a buffer of bytes: each element on a line of its own, CR LF after every line.
// One thread, one instance; it keeps its buffers from message to message.
class MessageWriter
{
public:
    MessageWriter();

    // A `reply` to the command of that xid.
    void reply(const QString& xid, const char* name, Fields fields = {});

    // A `report`.
    void report(const char* name, Fields fields = {});

    // All that was written since the last take(), in UTF-8.
    QByteArray take();

private:
    void body(const char* name, Fields fields);
    void open(const char* tag);
    void close();
    void line(const char* tag, const QString& text);

    QString text_;
    QXmlStreamWriter writer_; // writes to text_
};

} // namespace simulator
