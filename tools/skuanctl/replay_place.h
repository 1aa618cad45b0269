// How far a comparison of one side's bytes has come, in terms that a person can look up: which message, and
// how it begins.
#pragma once

#include <QByteArray>

class ReplayPlace
{
public:
    /// Goes on behind these bytes, of whatever kind.
    void pass(const QByteArray& bytes);

    qint64 byte() const { return byte_; }    ///< of all that was passed
    int message() const { return message_; } ///< the number of the message at hand, from 1

    /// What was passed of the message at hand, or the end of it; never long.
    QByteArray begun() const;

private:
    void pass(char character);

    enum { in_text, in_tag, in_end_tag } state_ = in_text;
    char last_ = 0;
    int depth_ = 0; // of elements; a message is one of the outermost
    int message_ = 1;
    qint64 byte_ = 0;
    QByteArray begun_;
};
