// Input that is read line by line, from a file or from standard input.
#pragma once

#include <QStringList>

/// All lines, without blanks around them, of the file, or of standard input if the name is empty or "-".
/// `*error` says why there are none, and is left alone if there are.
QStringList read_lines(const QString& file, QString* error);
