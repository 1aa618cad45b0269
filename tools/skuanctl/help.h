// The help: of the program, of a family of verbs, of a verb.
#pragma once

#include <skuanctl/options.h>

/// `*error` says why there is none.
QString help_text(const Options& options, QString* error);

/// What is shown of a verb in a list: how it is used, what it does.
QString help_entry(const VerbRow& verb);

/// Two columns; the left one is as wide as it must be, and the right one is wrapped.
QString help_entry(const QString& left, const QString& right);

/// What a word of a verb means, and what values it takes.
QString meaning_of(const Word& word);

/// "--host HOST".
QString spelled(const OptionRow& row);

/// Which keys the lines of JSON of a verb have.
QString keys_of(const VerbRow& verb);

/// Command lines that show how things go together.
QStringList examples();

/// The verbs by their first words, in the order of the table.
QStringList first_words();
