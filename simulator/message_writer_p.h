// Writes replies and reports as the server puts them on the wire.
#pragma once

#include <simulator/element.h>

#include <QByteArray>
#include <QXmlStreamWriter>

#include <initializer_list>
#include <iterator>

namespace simulator {

// The children of a message's one element: a list in braces, or a vector. It refers to them, so it is for
// arguments only.
class Fields
{
public:
    Fields() = default;
    Fields(std::initializer_list<Element> list) : begin_(std::data(list)), end_(begin_ + list.size()) {}
    Fields(const std::vector<Element>& list) : begin_(list.data()), end_(list.data() + list.size()) {}

    const Element* begin() const { return begin_; }
    const Element* end() const { return end_; }

private:
    const Element* begin_ = nullptr;
    const Element* end_ = nullptr;
};

// As the text of an element. A carriage return goes as a reference, else it would be read as a line feed.
void write_text(QXmlStreamWriter& writer, const QString& text);

// Appends messages to a buffer of bytes: each element on a line of its own, CR LF after every line.
// One thread, one instance; it keeps its buffers from message to message.
class MessageWriter
{
public:
    // Behind `most` bytes nothing more is written, not even to a message's end: the client for whom so much
    // waits is dropped.
    explicit MessageWriter(qint64 most);

    // A `reply` to the command of that xid.
    void reply(const QString& xid, const char* name, const Fields& fields = {});

    // A `report`.
    void report(const QString& name, const Fields& fields = {});

    // A message that is an element of that name and nothing more.
    void message(const char* name, const Fields& fields);

    // All that was written since the last take(), in UTF-8.
    QByteArray take();

private:
    void body(const QString& name, const Fields& fields);
    void element(const Element& element);
    void open(const QString& tag);
    void close();
    bool is_full() const { return text_.size() > most_; }

    const qint64 most_;
    QString text_;
    QXmlStreamWriter writer_; // writes to text_
};

} // namespace simulator
