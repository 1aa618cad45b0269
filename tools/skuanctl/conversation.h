// A conversation between clients and a server as a file: what was said by whom and when, one JSON object a
// line, so that a person can read it, a diff can show it, and a crash costs no more than the last line.
#pragma once

#include <QFile>
#include <QString>

#include <chrono>
#include <map>
#include <optional>

enum class Side { client, server };

/// "client" or "server".
QString name_of(Side side);

inline Side facing(Side side)
{
    return side == Side::client ? Side::server : Side::client;
}

/// One line.
struct Record
{
    enum Event {
        opened,  ///< by the client, and taken by the server; the first of its connection
        refused, ///< by the server; stands in place of `opened`, and nothing follows
        said,    ///< bytes, in the chunks in which they were read
        ended,   ///< this side says no more, but may still hear
        lost     ///< neither direction goes on
    };

    std::chrono::microseconds at; ///< since the capture began
    int connection;               ///< from 1
    Side from;
    Event event;
    QByteArray bytes = {}; ///< of `said`
};

class ConversationWriter
{
public:
    /// Begins the file. What stands in it already is not overwritten. False if it cannot be written:
    /// `error` says why.
    bool open(const QString& file);

    /// The line has been handed to the system when this returns. False as above.
    bool write(const Record& record);

    QString error() const { return error_; }

private:
    bool write_line(const QByteArray& line);

    QFile file_;
    QString error_;
};

/// Reads line by line, so that a file may be larger than the memory. The records it gives fit together:
/// a connection is opened before anything is said on it, and an end is an end.
class ConversationReader
{
public:
    static constexpr qint64 most_line = 1024 * 1024; ///< bytes

    /// False if it is no conversation: `error` says why.
    bool open(const QString& file);

    /// Nothing behind the last record, or from the first bad line on: then `error` is not empty.
    std::optional<Record> next();

    /// With the line's number.
    QString error() const { return error_; }

    int line() const { return line_; } ///< of the last record, from 1

    /// Whether the last line is only the beginning of one, and was left out.
    bool is_cut_short() const { return is_cut_short_; }

private:
    struct Open
    {
        bool client = true, server = true; // still speaks
    };

    bool read_line(QByteArray& line);
    QString misfit(const Record& record);
    std::nullopt_t fail(const QString& what);

    QFile file_;
    QString error_;
    std::map<int, Open> open_;
    int line_ = 0;
    bool is_cut_short_ = false;
};
