// The protocol as data: which commands there are, what they take, and what comes back. It is read from
// the table that stands in the program, and is as long as the run.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

enum class Kind { string, boolean, flag, u8, u16, u32, u64, integer, speed, enumeration, record, container };

struct Tag;

/// A place for a tag: among the arguments of a command, in a message, in a record or in a container.
struct Part
{
    const Tag* tag;
    bool optional; ///< of no meaning in a container, which holds any number
};

using Parts = std::vector<Part>; // in the order of the wire

struct Tag
{
    QString name;
    QString meaning;
    Kind kind;
    bool is_set = false;    ///< of a container: a member that is there already is not added again
    QStringList names = {}; ///< of an enumeration
    Parts parts = {};       ///< the fields of a record; the one kind of member that a container has
    int capacity = 0;       ///< of a container; 0: without limit
};

struct Command
{
    QString name;
    QString meaning;
    QString section;
    Parts parts;
    QStringList replies; ///< without `error`, which every command may get
};

struct Reply
{
    QString name;
    QString meaning;
    Parts parts;
    bool ends; ///< the command is over with it
};

struct Report
{
    QString name;
    QString meaning;
    Parts parts;
    QString on; ///< what turns it on: a class, "channel" and a channel's class, or a command
};

/// Everything refers to each other by address, so there is one and it stays.
struct Catalogue
{
    std::vector<Tag> tags;
    std::vector<Command> commands;
    std::vector<Reply> replies;
    std::vector<Report> reports;
};

/// Read at the first call.
const Catalogue& catalogue();

/// The row of that name; null if there is none.
template <typename Row>
const Row* find_row(const std::vector<Row>& rows, const QString& name)
{
    for (const Row& row : rows)
        if (row.name == name)
            return &row;
    return nullptr;
}

template <typename Row>
QStringList names_of(const std::vector<Row>& rows)
{
    QStringList names;
    for (const Row& row : rows)
        names += row.name;
    return names;
}

/// The tag of that name among the parts; null if they have none.
const Tag* find_tag(const Parts& parts, const QString& name);

QStringList names_of(const Parts& parts);
