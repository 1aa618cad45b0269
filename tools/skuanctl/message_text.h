// Replies and reports for people and for scripts, with the types that the catalogue gives their tags.
#pragma once

#include <skuanctl/catalogue.h>

#include <skuan/markup/xml_tree.h>

#include <QJsonObject>

/// A line for each tag with its value, set in by so many steps, and parts of a record under their record.
QStringList lines_of(const XMLTree& body, const Parts& parts, int depth);

/// The name, and behind it the values as `call` takes them: Tag=value, Record.Tag='a value'.
QString line_of(const XMLTree& body, const Parts& parts);

/// What an element says in one line: a value, members with commas between them, parts with = between them.
/// `tag` may be null, for one that is not known.
QString text_of(const XMLTree& element, const Tag* tag);

/// The values by tag: records as objects, containers as arrays. What the parts do not know stands as text.
QJsonObject values_of(const XMLTree& body, const Parts& parts);
