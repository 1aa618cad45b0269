// Rows of a result in columns, for people.
#pragma once

#include <QStringList>

#include <vector>

/// Keeps the first rows back to see how wide the columns must be; the rest goes through with these widths, so
/// that a table of any length needs little memory.
class Table
{
public:
    /// Gives the lines that can be printed now. The first row's head is that of the table.
    QStringList add(const QStringList& head, const QStringList& cells);

    /// Gives what is kept back.
    QStringList take();

private:
    QString line(const QStringList& cells) const;

    std::vector<QStringList> kept_; // with the head
    std::vector<int> widths_;       // once they are known
};
