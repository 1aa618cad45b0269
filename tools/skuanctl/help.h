// What --help prints.
#pragma once

#include <skuanctl/options.h>

/// One entry of a section; the lines of its text stand under each other, long ones broken.
QString help_entry(const QString& left, const QString& right);

/// About the verb if there is one that has more to tell than its row, else about everything. `*error` says
/// why there is no help on what the verb's arguments name.
QString help_text(const Options& options, QString* error);
