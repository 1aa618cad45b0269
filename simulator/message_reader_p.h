// Cuts a client's byte stream into messages, in one pass and with bounded memory.
#pragma once

#include <simulator/element.h>
#include <simulator/stream_guard_p.h>

#include <QByteArray>
#include <QXmlStreamReader>

namespace simulator {

// The whole stream is read as one endless document: an opening tag of our own goes in first, and each
// of its child elements is a message. So Qt's reader finds the bounds itself, goes on in the middle of
// a tag or of a character when more bytes come, and looks at every byte once.
//
// One thread, one instance for each client.
class MessageReader
{
public:
    enum class Result { Message, NeedMore, Broken };

    // `max_message` in bytes: a message, with the white space before it, may be that long.
    explicit MessageReader(qint64 max_message);

    // Call next() until it gives NeedMore before adding again.
    void add(const QByteArray& bytes);

    // Moves the next whole message to `message`. Broken is final: error_text() says what was wrong.
    Result next(Element& message);

    QString error_text() const { return error_; }

private:
    Result broken(const QString& why);
    Result end_of_bytes();
    bool stray_text();
    bool open_element();
    bool close_element(Element& message);

    StreamGuard guard_;
    QXmlStreamReader reader_;
    std::vector<Element> open_; // from the message's root to the innermost open element
    QByteArray last_added_;
    QString error_;
    qint64 max_message_;
    qint64 message_start_ = 0; // where the last message ended, in the reader's characters
    bool in_stream_ = false;   // our own opening tag has been read
    bool in_markup_ = false;   // something other than white space has come since the last message
};

} // namespace simulator
