// One XML element of the wire as a value: what a test sees of a message that the server received.
#pragma once

#include <simulator/export.h>

#include <QMetaType>
#include <QString>

#include <utility>
#include <vector>

namespace simulator {

/// Tag, text and children. An element with children has an empty text: the white space between them
/// means nothing. At most 32 levels deep when it comes from the wire. Attributes are not kept.
struct SKUAN_SIMULATOR_EXPORT Element
{
    QString tag;
    QString text;
    std::vector<Element> children;

    Element() = default;
    explicit Element(QString name) : tag(std::move(name)) {}
    Element(QString name, QString content) : tag(std::move(name)), text(std::move(content)) {}
    Element(QString name, std::vector<Element> inside) : tag(std::move(name)), children(std::move(inside)) {}

    /// The first child of that tag, or null. Valid until this element changes.
    const Element* child(QLatin1String name) const;
    Element* child(QLatin1String name);
    const Element* child(const QString& name) const;

    /// The text of the first child of that tag; empty if there is none.
    QString child_text(QLatin1String name) const;
    QString child_text(const QString& name) const;

    /// Puts the child in the place of the first one of its tag, or behind all others.
    void set(Element child);

    /// Takes out every child of that tag.
    void remove(QLatin1String name);

    bool operator==(const Element& other) const;
    bool operator!=(const Element& other) const { return !(*this == other); }
};

} // namespace simulator

Q_DECLARE_METATYPE(simulator::Element)
