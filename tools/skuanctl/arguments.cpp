// Words are put into a tree of nodes as they come; the elements are made of it in the order of the wire.
#include <skuanctl/arguments.h>
#include <skuanctl/nearest.h>
#include <skuanctl/value_text.h>

#include <QRegularExpression>

#include <algorithm>

namespace {

using Steps = std::vector<Argument::Step>;

struct Node
{
    const Tag* tag; // null: the command itself
    QString text;
    std::vector<Node> children; // as they were given

    Node* child(const Tag* wanted)
    {
        for (Node& node : children)
            if (node.tag == wanted)
                return &node;
        return nullptr;
    }
};

bool has_text(const Tag& tag)
{
    return tag.kind != Kind::record && tag.kind != Kind::container;
}

/// Of a container: whether its members are written as values of its own.
bool has_plain_members(const Tag& tag)
{
    return tag.kind == Kind::container && has_text(*tag.parts.front().tag);
}

class Builder
{
public:
    explicit Builder(const Command& command) : command_(command) {}

    bool add(const QString& word)
    {
        const Argument argument = parse_argument(word);
        return put(root_, argument.path.begin(), argument.path.end(), argument.value);
    }

    AList<XMLTree> elements() { return elements(root_); }

    const QString& error() const { return error_; }

private:
    using Step = Steps::const_iterator;

    const Parts& parts_of(const Node& node) const { return node.tag ? node.tag->parts : command_.parts; }
    const QString& name_of(const Node& node) const { return node.tag ? node.tag->name : command_.name; }

    bool refuse(const QString& why)
    {
        if (error_.isEmpty())
            error_ = why;
        return false;
    }

    bool put(Node& at, Step step, Step end, const std::optional<QString>& value)
    {
        const Parts& parts = parts_of(at);
        const Tag* const tag = find_tag(parts, step->tag);
        if (!tag)
            return refuse(parts.empty() ? QStringLiteral("%1 takes no arguments").arg(name_of(at))
                                        : QStringLiteral("%1 has no '%2'").arg(name_of(at), step->tag) +
                                              hint(step->tag, names_of(parts)));
        if (at.tag && at.tag->kind == Kind::container)
            return put_member(at, *tag, step, end, value);
        if (step->number)
            return refuse(QStringLiteral("%1 comes once in %2").arg(tag->name, name_of(at)));
        Node* const known = at.child(tag);
        if (step + 1 == end)
            return known && !has_plain_members(*tag)
                       ? refuse(QStringLiteral("%1 is given twice").arg(tag->name))
                       : put_value(known ? *known : add_child(at, *tag), value);
        if (has_text(*tag) || has_plain_members(*tag))
            return refuse(QStringLiteral("%1 has no parts; it takes %2").arg(tag->name, wanted(*tag)));
        return put(known ? *known : add_child(at, *tag), step + 1, end, value);
    }

    /// The member is a record.
    bool put_member(Node& container, const Tag& member, Step step, Step end,
                    const std::optional<QString>& value)
    {
        std::vector<Node>& members = container.children;
        const int count = static_cast<int>(members.size());
        const bool goes_on = count > 0 && !holds(members.back(), step + 1, end);
        const int number = step->number.value_or(goes_on ? count - 1 : count);
        if (number > count)
            return refuse(
                QStringLiteral("%1[%2] needs %1[%3] before it").arg(member.name).arg(number).arg(count));
        if (number == count && !may_grow(container))
            return false;
        Node& node =
            number < count ? members[static_cast<std::size_t>(number)] : add_child(container, member);
        return step + 1 == end ? put_value(node, value) : put(node, step + 1, end, value);
    }

    bool put_value(Node& node, const std::optional<QString>& value)
    {
        const Tag& tag = *node.tag;
        if (has_plain_members(tag))
            return !value || put_members(node, *value);
        if (!has_text(tag) && value)
            return refuse(QStringLiteral("%1 takes no value but %2").arg(tag.name, wanted(tag)));
        if (has_text(tag) && !value && tag.kind != Kind::flag)
            return refuse(QStringLiteral("%1 needs a value: %2").arg(tag.name, wanted(tag)));
        if (value && !is_value(tag, *value))
            return refuse(
                QStringLiteral("'%1' is no value for %2, which takes %3").arg(*value, tag.name, wanted(tag)));
        node.text = value.value_or(QStringLiteral("true"));
        return true;
    }

    bool put_members(Node& container, const QString& value)
    {
        const Tag& member = *container.tag->parts.front().tag;
        const bool named = member.kind == Kind::enumeration;
        for (const QString& text : named ? value.split(QLatin1Char(',')) : QStringList(value)) {
            if (!is_value(member, text))
                return refuse(QStringLiteral("'%1' is no value for %2, which takes %3")
                                  .arg(text, container.tag->name, wanted(*container.tag)));
            const auto same = [&](const Node& node) { return node.text == text; };
            if (container.tag->is_set &&
                std::any_of(container.children.begin(), container.children.end(), same))
                continue;
            if (!may_grow(container))
                return false;
            add_child(container, member).text = text;
        }
        return true;
    }

    bool may_grow(const Node& container)
    {
        const Tag& tag = *container.tag;
        return tag.capacity == 0 || container.children.size() < static_cast<std::size_t>(tag.capacity) ||
               refuse(QStringLiteral("%1 takes %2 members at most").arg(tag.name).arg(tag.capacity));
    }

    /// Whether the path is given already.
    static bool holds(Node& node, Step step, Step end)
    {
        if (step == end)
            return true;
        for (Node& child : node.children)
            if (child.tag->name == step->tag)
                return holds(child, step + 1, end);
        return false;
    }

    static Node& add_child(Node& parent, const Tag& tag)
    {
        parent.children.push_back({&tag, {}, {}});
        return parent.children.back();
    }

    XMLTree element(Node& node)
    {
        const AString tag(node.tag->name);
        if (node.tag->kind == Kind::flag)
            return XMLTree(tag);
        return has_text(*node.tag) ? XMLTree(tag, AString(node.text)) : XMLTree(tag, elements(node));
    }

    AList<XMLTree> elements(Node& node)
    {
        AList<XMLTree> all;
        if (node.tag && node.tag->kind == Kind::container) {
            for (Node& member : node.children)
                all.push_back(element(member));
            return all;
        }
        for (const Part& part : parts_of(node)) {
            Node* const child = node.child(part.tag);
            const bool is_off = child && part.tag->kind == Kind::flag && child->text != QLatin1String("true");
            if (child && !is_off)
                all.push_back(element(*child));
            else if (!part.optional && part.tag->kind != Kind::flag)
                refuse(
                    QStringLiteral("%1 needs %2: %3").arg(name_of(node), part.tag->name, wanted(*part.tag)));
        }
        return all;
    }

    const Command& command_;
    Node root_{nullptr, {}, {}};
    QString error_;
};

} // namespace

Argument parse_argument(const QString& word)
{
    static const QRegularExpression numbered(QStringLiteral("^(.*)\\[([0-9]{1,6})\\]$"));
    Argument argument;
    const int equals = word.indexOf(QLatin1Char('='));
    if (equals >= 0)
        argument.value = word.mid(equals + 1);
    for (const QString& step : word.left(equals).split(QLatin1Char('.'))) {
        const auto match = numbered.match(step);
        if (match.hasMatch())
            argument.path.push_back({match.captured(1), match.captured(2).toInt()});
        else
            argument.path.push_back({step, std::nullopt});
    }
    return argument;
}

const Tag* follow(const Parts& parts, const std::vector<Argument::Step>& path)
{
    const Parts* at = &parts;
    const Tag* tag = nullptr;
    for (const Argument::Step& step : path) {
        tag = find_tag(*at, step.tag);
        if (!tag)
            return nullptr;
        at = &tag->parts;
    }
    return tag;
}

BuiltCommand build_command(const Command& command, const QStringList& words)
{
    Builder builder(command);
    for (const QString& word : words)
        if (!builder.add(word))
            return {{}, builder.error()};
    XMLTree element{AString(command.name), builder.elements()};
    return {std::move(element), builder.error()};
}
