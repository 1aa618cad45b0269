// What a verb prints of the replies to its command.
#include <skuanctl/message_text.h>
#include <skuanctl/recipe.h>
#include <skuanctl/run.h>
#include <skuanctl/spelling.h>
#include <skuanctl/value_text.h>

#include <QJsonArray>

namespace {

/// Where the tag of that name stands among the parts, or in their records.
const Tag* find_path(const Parts& parts, const QString& name, std::vector<AString>& path)
{
    for (const Part& part : parts) {
        path.emplace_back(part.tag->name);
        if (part.tag->name == name)
            return part.tag;
        if (part.tag->kind == Kind::record)
            if (const Tag* const found = find_path(part.tag->parts, name, path))
                return found;
        path.pop_back();
    }
    return nullptr;
}

const XMLTree& follow(const XMLTree& body, const std::vector<AString>& path)
{
    const XMLTree* at = &body;
    for (const AString& step : path)
        at = &at->get_subnode(step);
    return *at;
}

QString head_of(const Tag& tag)
{
    return spelling_of(tag, {}).option.toUpper();
}

/// The record that is all there is in a reply; else null.
const Tag* only_record(const Parts& parts)
{
    return parts.size() == 1 && parts.front().tag->kind == Kind::record ? parts.front().tag : nullptr;
}

} // namespace

bool RecipeVerb::prepare()
{
    const Recipe recipe = recipe_of(run_.options());
    if (!recipe.error.isEmpty())
        return refuse(recipe.error);
    set_steps(recipe.commands);
    return true;
}

void RecipeVerb::choose_columns(const Reply& reply)
{
    columns_of_ = &reply;
    columns_.clear();
    head_.clear();
    for (const QString& name : QString::fromUtf8(run_.options().verb->shows).split(' ', Qt::SkipEmptyParts)) {
        Column column{nullptr, {}};
        column.tag = find_path(reply.parts, name, column.path);
        if (!column.tag)
            continue;
        columns_.push_back(column);
        head_ += head_of(*column.tag);
    }
}

void RecipeVerb::show_reply(const XMLTree&, const XMLTree& body, const Reply* reply)
{
    if (!reply || reply->parts.empty()) // done, or nothing to tell
        return;
    if (columns_of_ != reply)
        choose_columns(*reply);
    count();
    if (columns_.size() == 1 && columns_[0].tag->kind == Kind::container)
        return show_members(follow(body, columns_[0].path), *columns_[0].tag);
    if (!columns_.empty())
        return show_row(body, columns_, object_of(body, *reply));
    if (!reply->ends)
        return run_.line(line_of(body, reply->parts), object_of(body, *reply));
    const Tag* const record = only_record(reply->parts);
    const XMLTree& shown = record ? body.get_subnode(AString(record->name)) : body;
    run_.lines(lines_of(shown, record ? record->parts : reply->parts, 0), object_of(body, *reply));
}

/// A long listing passes here once for each line.
void RecipeVerb::show_row(const XMLTree& body, const std::vector<Column>& columns, const QJsonObject& object)
{
    QStringList cells;
    for (const Column& column : columns) {
        const XMLTree& element = follow(body, column.path);
        cells += element.is_null() ? QStringLiteral("-") : text_of(element, column.tag);
    }
    if (cells.size() == 1)
        run_.line(cells.constFirst(), object);
    else
        run_.row(head_, cells, object);
}

void RecipeVerb::show_members(const XMLTree& container, const Tag& tag)
{
    const Tag& member = *tag.parts.front().tag;
    for (const XMLTree& one : container.get_subnodes()) {
        if (member.kind != Kind::record) {
            run_.line(text_of(one, &member), {{member.name, typed(member, one.get_content())}});
            continue;
        }
        std::vector<Column> fields;
        head_.clear();
        for (const Part& part : member.parts) {
            fields.push_back({part.tag, {AString(part.tag->name)}});
            head_ += head_of(*part.tag);
        }
        show_row(one, fields, values_of(one, member.parts));
    }
}

QJsonObject RecipeVerb::object_of(const XMLTree& body, const Reply& reply) const
{
    if (!run_.options().json)
        return {};
    const Tag* const record = only_record(reply.parts);
    return record ? values_of(body.get_subnode(AString(record->name)), record->parts)
                  : values_of(body, reply.parts);
}

void RecipeVerb::count()
{
    constexpr quint64 often = 256;
    if (++count_ % often == 0)
        run_.progress(QStringLiteral("%1 so far").arg(count_));
}

std::unique_ptr<Verb> make_recipe(Run& run)
{
    return std::make_unique<RecipeVerb>(run);
}
