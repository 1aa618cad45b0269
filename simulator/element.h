// One XML element of the wire as a value: what a test sees of a message that the server received.
#pragma once

#include <simulator/export.h>

#include <QMetaType>
#include <QString>

#include <vector>

namespace simulator {

/// Tag, text and children. An element with children has an empty text: the white space between them
/// means nothing. At most 32 levels deep when it comes from the wire. Attributes are not kept.
struct SKUAN_SIMULATOR_EXPORT Element
{
    QString tag;
    QString text;
    std::vector<Element> children;

    /// The first child of that tag, or null. Valid until this element changes.
    const Element* child(const QString& name) const;

    /// The text of the first child of that tag; empty if there is none.
    QString child_text(const QString& name) const;
};

} // namespace simulator

Q_DECLARE_METATYPE(simulator::Element)
