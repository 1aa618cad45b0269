// Texts of a given width on a terminal.
#pragma once

#include <QString>

/// How many columns a terminal needs for it. Control characters count as none.
int width_of(const QString& text);

/// As many columns wide: filled up with blanks, or cut, which an ellipsis shows.
QString fitted(const QString& text, int width, Qt::Alignment alignment = Qt::AlignLeft);
