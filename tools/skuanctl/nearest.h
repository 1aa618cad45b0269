// What somebody may have meant by a name that there is not.
#pragma once

#include <QStringList>

/// "; did you mean X or Y?", with the known names that come nearest to `word`. Where none is near: all of
/// them, if they are few, and else nothing.
QString hint(const QString& word, const QStringList& known);
