// Replies and reports for people and for scripts, with the types that the catalogue gives their tags.
#pragma once

#include <skuanctl/catalogue.h>

#include <skuan/markup/xml_tree.h>

#include <QJsonObject>

/// The name, and under it each tag with its value, parts of a record set in under their record.
QStringList lines_of(const XMLTree& body, const Parts& parts);

/// The values by tag: records as objects, containers as arrays. What the parts do not know stands as text.
QJsonObject values_of(const XMLTree& body, const Parts& parts);
