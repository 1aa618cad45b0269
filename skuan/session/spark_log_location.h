// Lets a program write to the server's log, with the place in its source that speaks.
#pragma once

#include <skuan/export.h>

#include <QString>

#include <cstdarg>

class Spark;

/// A place in a client program's source. A value; everything may be called on any thread.
///
/// Every entry goes to Qt's debug stream, as in "deck.cpp:120 [newsroom log] deck is ready". An ordinary one
/// also goes to the server's log, if there is a session; one about an error stays on this machine.
///
/// Formats are those of printf, with texts in UTF-8; what has 1024 bytes or more gives an empty text, and so
/// does a null format.
class SKUAN_EXPORT SparkLogLocation
{
public:
    SparkLogLocation(const char* file, unsigned line, const char* client);

    void send_log_entry(Spark* spark, const char* format, ...) const Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    void send_log_entry(Spark* spark, const QString& text) const;

    // With or without a session, which may be null, the same.

    void send_error_entry(Spark* spark, const char* format, ...) const Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    void send_error_entry(Spark* spark, const QString& text) const;

    static QString make_string(const char* format, std::va_list arguments);

private:
    void write(const char* kind, const QString& text) const;

    QString file_;
    unsigned line_;
    QString client_;
};
