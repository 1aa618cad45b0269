// Completion of commands, of the paths to their tags, and of values.
#include <skuanctl/arguments.h>
#include <skuanctl/complete.h>
#include <skuanctl/verb.h>

#include <algorithm>

namespace {

/// What comes behind the name of the tag in a word.
QString sequel(const Tag& tag)
{
    switch (tag.kind) {
    case Kind::flag:
        return {};
    case Kind::record:
        return QStringLiteral(".");
    case Kind::container:
        return tag.parts.front().tag->kind == Kind::record ? QStringLiteral(".") : QStringLiteral("=");
    default:
        return QStringLiteral("=");
    }
}

bool may_repeat(const Tag& tag)
{
    return tag.kind == Kind::record || tag.kind == Kind::container;
}

QStringList paths(const Command& command, const QStringList& given, const QString& word)
{
    const QString parent = word.left(word.lastIndexOf(QLatin1Char('.')) + 1);
    const Parts* parts = &command.parts;
    if (!parent.isEmpty()) {
        const Tag* const tag = follow(command.parts, parse_argument(parent.chopped(1)).path);
        if (!tag)
            return {};
        parts = &tag->parts;
    }
    QStringList all;
    for (const Part& part : *parts) {
        const QString path = parent + part.tag->name;
        const bool is_given = std::any_of(given.begin(), given.end(), [&](const QString& one) {
            return one.section(QLatin1Char('='), 0, 0) == path;
        });
        if (!is_given || may_repeat(*part.tag))
            all += path + sequel(*part.tag);
    }
    return all;
}

} // namespace

QStringList call_candidates(const QStringList& before, const QString& word)
{
    if (before.isEmpty())
        return names_of(catalogue().commands);
    const Command* const command = find_row(catalogue().commands, before.constFirst());
    if (!command)
        return {};
    const Argument argument = parse_argument(word);
    if (!argument.value)
        return paths(*command, before.mid(1), word);
    const Tag* const tag = follow(command->parts, argument.path);
    QStringList all;
    if (tag)
        for (const QString& value : value_candidates(*tag, *argument.value))
            all += word.chopped(argument.value->size()) + value;
    return all;
}
