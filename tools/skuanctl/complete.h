// What verbs share to complete words.
#pragma once

#include <skuanctl/catalogue.h>

/// A list with commas, of which the last name is begun: the names that are not in it may end it.
QStringList list_candidates(const QString& begun, const QStringList& names);

/// Values of the tag that have names; else none.
QStringList value_candidates(const Tag& tag, const QString& begun);
