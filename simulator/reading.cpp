// Reading by kind, in depth. How deep it goes is the catalogue's doing, not the client's.
#include <simulator/reading_p.h>

#include <simulator/speed_p.h>

#include <algorithm>
#include <limits>

namespace simulator {

namespace {

constexpr int text_shown = 60; // characters of a bad value

Objection object(const Tag& tag, const QString& fault)
{
    return {tag.name, tag.name + fault};
}

Objection bad_value(const Tag& tag, const QString& text)
{
    return object(tag, QStringLiteral(" cannot be \"%1\"").arg(text.left(text_shown)));
}

bool is_decimal(const QString& text, bool may_be_signed)
{
    const int start =
        may_be_signed && text.size() > 1 && (text[0] == QLatin1Char('-') || text[0] == QLatin1Char('+')) ? 1
                                                                                                         : 0;
    return !text.isEmpty() && std::all_of(text.begin() + start, text.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
}

bool read_unsigned(QString& text, quint64 most)
{
    bool fits = false;
    const quint64 number = is_decimal(text, false) ? text.toULongLong(&fits) : 0;
    if (!fits || number > most)
        return false;
    if (text.startsWith(QLatin1Char('0')) && text.size() > 1)
        text = QString::number(number);
    return true;
}

bool read_int(QString& text)
{
    bool fits = false;
    const qint32 number = is_decimal(text, true) ? text.toInt(&fits) : 0;
    if (fits)
        text = QString::number(number);
    return fits;
}

// Any number of 64 bits will do, as it does for every reader of the protocol.
bool read_bool(QString& text)
{
    if (text == QLatin1String("true") || text == QLatin1String("false"))
        return true;
    bool fits = false;
    bool is_set = is_decimal(text, true) && text.toLongLong(&fits) != 0;
    if (!fits)
        is_set = is_decimal(text, true) && text.toULongLong(&fits) != 0;
    text = is_set ? QStringLiteral("true") : QStringLiteral("false");
    return fits;
}

bool read_speed(QString& text)
{
    const auto speed = to_speed(text);
    if (speed)
        text = speed_text(*speed);
    return speed.has_value();
}

bool read_scalar(const Tag& tag, QString& text)
{
    switch (tag.kind) {
    case Kind::U8:
        return read_unsigned(text, std::numeric_limits<quint8>::max());
    case Kind::U16:
        return read_unsigned(text, std::numeric_limits<quint16>::max());
    case Kind::U32:
        return read_unsigned(text, std::numeric_limits<quint32>::max());
    case Kind::U64:
        return read_unsigned(text, std::numeric_limits<quint64>::max());
    case Kind::Int:
        return read_int(text);
    case Kind::Bool:
        return read_bool(text);
    case Kind::Speed:
        return read_speed(text);
    case Kind::Enum:
        return tag.names && tag.names->contains(text);
    default:
        return true;
    }
}

Objection read_value(const Tag& tag, Element& element);

Objection read_container(const Tag& tag, Element& element)
{
    auto& members = element.children;
    members.erase(std::remove_if(members.begin(), members.end(),
                                 [&](const Element& child) { return child.tag != tag.member->name; }),
                  members.end());
    if (tag.capacity != 0 && members.size() > tag.capacity)
        return object(tag, QStringLiteral(" holds %1 of %2, the most is %3")
                               .arg(members.size())
                               .arg(tag.member->name)
                               .arg(tag.capacity));
    for (Element& member : members) {
        Objection objection = read_value(*tag.member, member);
        if (!objection.text.isEmpty())
            return objection;
    }
    return {};
}

Objection read_value(const Tag& tag, Element& element)
{
    if (tag.kind == Kind::Record)
        return read(*tag.record, element);
    if (tag.kind == Kind::Container)
        return read_container(tag, element);
    if (tag.kind == Kind::Flag) { // whatever stands in it
        element.text.clear();
        element.children.clear();
        return {};
    }
    element.children.clear();
    if (tag.kind == Kind::String)
        return {};
    const QString sent = element.text;
    element.text = sent.trimmed();
    return read_scalar(tag, element.text) ? Objection() : bad_value(tag, sent);
}

} // namespace

Objection read(const Layout& layout, Element& element)
{
    element.text.clear();
    const std::vector<Field>& fields = layout.fields;
    const auto place_of = [&](const Element& child) {
        return std::find_if(fields.begin(), fields.end(),
                            [&](const Field& field) { return field.tag->name == child.tag; }) -
               fields.begin();
    };

    std::vector<Element> found(fields.size()); // by place; without a tag where there is none
    for (Element& child : element.children) {
        const auto place = static_cast<std::size_t>(place_of(child));
        if (place == fields.size())
            continue;
        const Tag& tag = *fields[place].tag;
        if (!found[place].tag.isEmpty() && tag.kind != Kind::Flag)
            return object(tag, QStringLiteral(" stands more than once in ") + layout.name);
        found[place] = std::move(child);
    }
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (found[i].tag.isEmpty() && !fields[i].optional && fields[i].tag->kind != Kind::Flag)
            return object(*fields[i].tag, QStringLiteral(" is missing in ") + layout.name);

    element.children.clear();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (found[i].tag.isEmpty())
            continue;
        Objection objection = read_value(*fields[i].tag, found[i]);
        if (!objection.text.isEmpty())
            return objection;
        element.children.push_back(std::move(found[i]));
    }
    return {};
}

} // namespace simulator
