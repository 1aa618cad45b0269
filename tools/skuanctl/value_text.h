// Single values as text: whether a text is a value of its kind, and what it is to a script.
#pragma once

#include <skuanctl/catalogue.h>

#include <QJsonValue>

/// Whether the text may be sent as the tag's value. Not for records and containers.
bool is_value(const Tag& tag, const QString& text);

/// What the tag takes, in words: "a whole number from 0 to 255", "one of A, B, C".
QString wanted(const Tag& tag);

/// The value that the server wrote, with the type of its kind: truth values and numbers as such (a number
/// beyond 2^53 as text), a speed as a multiple of normal speed; all else as text, and so what does not fit
/// its kind.
QJsonValue typed(const Tag& tag, const QString& text);
