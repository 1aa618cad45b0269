// How tags are spelled on the command line: as options, and in usage lines.
#pragma once

#include <skuanctl/catalogue.h>

struct Spelling
{
    QString option;      ///< without its dashes: "trim-start"
    QString placeholder; ///< of a value: "CLIP"
};

/// `owner` is the name of the command or of the record that the tag stands in.
Spelling spelling_of(const Tag& tag, const QString& owner);
