// Walks an element beside its parts: what a server sends cannot lead deeper than the catalogue does.
#include <skuanctl/message_text.h>
#include <skuanctl/value_text.h>

#include <QJsonArray>
#include <QRegularExpression>

namespace {

/// The text of an element that the catalogue does not know, or its XML.
QString unknown_text(const XMLTree& element)
{
    return element.has_subnodes() ? QString(element.flatten(XMLTree::flatten_compact))
                                  : QString(element.get_content());
}

/// "title=Storm", "video=10".
QString joined_parts(const XMLTree& record, const Tag& tag)
{
    QStringList values;
    for (const XMLTree& child : record.get_subnodes())
        values += text_of(child, find_tag(tag.parts, child.get_tag()));
    return values.join(QLatin1Char('='));
}

/// Members of a container in one line; the form in which named ones are given, too.
QString joined(const XMLTree& container, const Tag& member)
{
    QStringList members;
    for (const XMLTree& one : container.get_subnodes())
        members += text_of(one, &member);
    return members.join(QLatin1Char(','));
}

bool has_named_members(const Tag& tag)
{
    return tag.kind == Kind::container && tag.parts.front().tag->kind == Kind::enumeration;
}

bool has_plain_members(const Tag& tag)
{
    const Tag* const member = tag.kind == Kind::container ? tag.parts.front().tag : nullptr;
    return member && member->kind != Kind::record && member->kind != Kind::container;
}

void add_lines(const XMLTree& element, const Tag* tag, int depth, QStringList& lines)
{
    const QString head = QString(depth * 2, QLatin1Char(' ')) + QString(element.get_tag()) + QLatin1Char(':');
    if (!tag || has_named_members(*tag) || (tag->kind != Kind::record && tag->kind != Kind::container)) {
        lines += head + QLatin1Char(' ') + text_of(element, tag);
        return;
    }
    lines += head;
    for (const XMLTree& child : element.get_subnodes())
        add_lines(child, find_tag(tag->parts, child.get_tag()), depth + 1, lines);
}

/// As a shell takes it.
QString quoted(const QString& text)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_./:,@%+-]+$"));
    if (plain.match(text).hasMatch())
        return text;
    return '\'' + QString(text).replace('\'', QLatin1String("'\\''")) + '\'';
}

void add_words(const XMLTree& element, const Tag* tag, const QString& path, QStringList& words)
{
    const QString name = path + QString(element.get_tag());
    if (tag && tag->kind == Kind::flag) {
        words += name;
    } else if (!tag || has_named_members(*tag) ||
               (tag->kind != Kind::record && tag->kind != Kind::container)) {
        words += name + '=' + quoted(text_of(element, tag));
    } else if (has_plain_members(*tag)) {
        for (const XMLTree& member : element.get_subnodes())
            words += name + '=' + quoted(text_of(member, tag->parts.front().tag));
    } else {
        if (!element.has_subnodes())
            words += name;
        for (const XMLTree& child : element.get_subnodes())
            add_words(child, find_tag(tag->parts, child.get_tag()), name + '.', words);
    }
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

QString text_of(const XMLTree& element, const Tag* tag)
{
    if (!tag)
        return unknown_text(element);
    switch (tag->kind) {
    case Kind::flag:
        return QStringLiteral("true");
    case Kind::string:
        return element.get_content();
    case Kind::container:
        return joined(element, *tag->parts.front().tag);
    case Kind::record:
        return joined_parts(element, *tag);
    default:
        return element.get_content().despace();
    }
}

QStringList lines_of(const XMLTree& body, const Parts& parts, int depth)
{
    QStringList lines;
    for (const XMLTree& child : body.get_subnodes())
        add_lines(child, find_tag(parts, child.get_tag()), depth, lines);
    return lines;
}

QString line_of(const XMLTree& body, const Parts& parts)
{
    QStringList words{QString(body.get_tag())};
    for (const XMLTree& child : body.get_subnodes())
        add_words(child, find_tag(parts, child.get_tag()), {}, words);
    return words.join(QLatin1Char(' '));
}

QJsonObject values_of(const XMLTree& body, const Parts& parts)
{
    QJsonObject values;
    for (const XMLTree& child : body.get_subnodes())
        values.insert(QString(child.get_tag()), value_of(child, find_tag(parts, child.get_tag())));
    return values;
}
