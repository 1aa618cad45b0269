// Looks at a client's bytes before Qt's reader does, for what the reader would not refuse well.
#pragma once

#include <QByteArray>
#include <QString>

namespace simulator {

// Two things are refused here, each byte being looked at once:
//
// - "<!" and "<?". Comments, CDATA sections, processing instructions and document types have no place in
//   the protocol, and they are the only markup that Qt's reader scans again from its start with every
//   piece that arrives. A '<' is nothing but the start of markup in XML, so no text is hit by mistake.
// - Bytes that are no UTF-8. Qt's reader falls silent at them.
class StreamGuard
{
public:
    // How many of the bytes are good, counting on from the last call. When it is not all of them,
    // objection() says why, and the stream is at its end.
    int good_bytes(const QByteArray& bytes);

    const QString& objection() const { return objection_; }

private:
    bool is_utf8(unsigned char byte);

    QString objection_;
    bool after_bracket_ = false;
    int following_ = 0; // bytes that the character at hand still needs
    unsigned char least_ = 0x80;
    unsigned char most_ = 0xbf; // the range of the next of them
};

} // namespace simulator
