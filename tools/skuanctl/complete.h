// What the verbs' own completions share.
#pragma once

#include <QStringList>

/// A list with commas that has begun, with each name in the place of its last one; none comes twice.
QStringList list_candidates(const QString& begun, const QStringList& names);
