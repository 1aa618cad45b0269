// Walks an element beside its parts: what a server sends cannot lead deeper than the catalogue does.
#include <skuanctl/message_text.h>
#include <skuanctl/value_text.h>

#include <QJsonArray>

namespace {

/// The text of an element that the catalogue does not know, or its XML.
QString unknown_text(const XMLTree& element)
{
    return element.has_subnodes() ? QString(element.flatten(XMLTree::flatten_compact))
                                  : QString(element.get_content());
}

/// Members of a container that have names, in one line; the form in which they are given, too.
QString joined(const XMLTree& container)
{
    QStringList members;
    for (const XMLTree& member : container.get_subnodes())
        members += QString(member.get_content().despace());
    return members.join(QLatin1Char(','));
}

void add_lines(const XMLTree& element, const Tag* tag, int depth, QStringList& lines)
{
    const QString head = QString(depth * 2, QLatin1Char(' ')) + QString(element.get_tag()) + QLatin1Char(':');
    const auto add_value = [&](const QString& value) { lines += head + QLatin1Char(' ') + value; };
    if (!tag)
        return add_value(unknown_text(element));
    if (tag->kind == Kind::flag)
        return add_value(QStringLiteral("true"));
    if (tag->kind == Kind::container && tag->parts.front().tag->kind == Kind::enumeration)
        return add_value(joined(element));
    if (tag->kind == Kind::string)
        return add_value(element.get_content());
    if (tag->kind != Kind::record && tag->kind != Kind::container)
        return add_value(element.get_content().despace());
    lines += head;
    for (const XMLTree& child : element.get_subnodes())
        add_lines(child, find_tag(tag->parts, child.get_tag()), depth + 1, lines);
}

QJsonValue value_of(const XMLTree& element, const Tag* tag)
{
    if (!tag)
        return unknown_text(element);
    if (tag->kind == Kind::record)
        return values_of(element, tag->parts);
    if (tag->kind != Kind::container)
        return typed(*tag, element.get_content());
    QJsonArray members;
    for (const XMLTree& member : element.get_subnodes())
        members += value_of(member, find_tag(tag->parts, member.get_tag()));
    return members;
}

} // namespace

QStringList lines_of(const XMLTree& body, const Parts& parts)
{
    QStringList lines{QString(body.get_tag())};
    for (const XMLTree& child : body.get_subnodes())
        add_lines(child, find_tag(parts, child.get_tag()), 1, lines);
    return lines;
}

QJsonObject values_of(const XMLTree& body, const Parts& parts)
{
    QJsonObject values;
    for (const XMLTree& child : body.get_subnodes())
        values.insert(QString(child.get_tag()), value_of(child, find_tag(parts, child.get_tag())));
    return values;
}
