// The kinds and their texts.
#include <skuanctl/value_text.h>

#include <QRegularExpression>

#include <cstdint>
#include <limits>
#include <optional>

namespace {

struct Range
{
    qint64 least;
    quint64 most;
};

template <typename Number>
constexpr Range range_of_type = {std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max()};

/// Of the kinds that are whole numbers.
std::optional<Range> range_of(Kind kind)
{
    switch (kind) {
    case Kind::u8:
        return range_of_type<std::uint8_t>;
    case Kind::u16:
        return range_of_type<std::uint16_t>;
    case Kind::u32:
        return range_of_type<std::uint32_t>;
    case Kind::u64:
        return Range{0, std::numeric_limits<quint64>::max()};
    case Kind::integer:
        return range_of_type<std::int32_t>;
    default:
        return std::nullopt;
    }
}

bool in_range(const Range& range, const QString& text)
{
    static const QRegularExpression digits(QStringLiteral("^-?[0-9]+$"));
    if (!digits.match(text).hasMatch())
        return false;
    bool good = false;
    if (text.startsWith(QLatin1Char('-'))) {
        const qint64 value = text.toLongLong(&good);
        return good && value >= range.least;
    }
    const quint64 value = text.toULongLong(&good);
    return good && value <= range.most;
}

/// Whether XML has all characters of the text; of control characters it has only tabs and line breaks.
bool can_be_sent(const QString& text)
{
    static const QRegularExpression others(
        QStringLiteral("[\\x00-\\x08\\x0b\\x0c\\x0e-\\x1f\\x{fffe}\\x{ffff}]"));
    return !text.contains(others);
}

bool is_speed(const QString& text)
{
    static const QRegularExpression decimal(QStringLiteral("^-?[0-9]+(\\.[0-9]+)?$"));
    const double value = text.toDouble();
    return decimal.match(text).hasMatch() && value >= -32768 && value < 32768;
}

/// As the library reads it: a multiple of normal speed, with an X behind it or not; a number without an X
/// that is too large for one counts 65536ths.
QJsonValue typed_speed(const QString& text)
{
    bool good = false;
    const bool has_x = text.endsWith(QLatin1Char('X'));
    const double value = (has_x ? text.chopped(1) : text).toDouble(&good);
    const bool is_multiple = value > -32769 && value < 32768;
    if (!good || (has_x && !is_multiple))
        return text;
    return is_multiple ? value : value / 65536;
}

QJsonValue typed_bool(const QString& text)
{
    if (text == QLatin1String("true") || text == QLatin1String("false"))
        return text == QLatin1String("true");
    bool good = false;
    const qint64 number = text.toLongLong(&good);
    return good ? QJsonValue(number != 0) : QJsonValue(text);
}

/// As text where it is beyond what readers of JSON count exactly.
QJsonValue typed_whole(const QString& text)
{
    constexpr qint64 most = qint64{1} << 53;
    bool good = false;
    const qint64 value = text.toLongLong(&good);
    return good && value >= -most && value <= most ? QJsonValue(value) : QJsonValue(text);
}

} // namespace

bool is_value(const Tag& tag, const QString& text)
{
    switch (tag.kind) {
    case Kind::string:
        return can_be_sent(text);
    case Kind::boolean:
    case Kind::flag:
        return text == QLatin1String("true") || text == QLatin1String("false");
    case Kind::speed:
        return is_speed(text);
    case Kind::enumeration:
        return tag.names.contains(text);
    default:
        const auto range = range_of(tag.kind);
        return range && in_range(*range, text);
    }
}

QString wanted(const Tag& tag)
{
    switch (tag.kind) {
    case Kind::string:
        return QStringLiteral("a text, with no control characters but tabs and line breaks");
    case Kind::boolean:
        return QStringLiteral("true or false");
    case Kind::flag:
        return QStringLiteral("nothing, or true or false");
    case Kind::speed:
        return QStringLiteral("a multiple of normal speed, as in 1, 0.5 or -2");
    case Kind::enumeration:
        return QStringLiteral("one of ") + tag.names.join(QStringLiteral(", "));
    case Kind::record:
        return QStringLiteral("its parts ") + names_of(tag.parts).join(QStringLiteral(", "));
    case Kind::container: {
        const Tag& member = *tag.parts.front().tag;
        if (member.kind == Kind::enumeration)
            return QStringLiteral("any of %1, with commas between them")
                .arg(member.names.join(QStringLiteral(", ")));
        return tag.capacity ? QStringLiteral("up to %1 of %2").arg(tag.capacity).arg(member.name)
                            : QStringLiteral("any number of ") + member.name;
    }
    default:
        const auto range = range_of(tag.kind);
        return QStringLiteral("a whole number from %1 to %2").arg(range->least).arg(range->most);
    }
}

QJsonValue typed(const Tag& tag, const QString& text)
{
    switch (tag.kind) {
    case Kind::flag:
        return true; // by being there
    case Kind::boolean:
        return typed_bool(text.trimmed());
    case Kind::speed:
        return typed_speed(text.trimmed());
    case Kind::enumeration:
        return text.trimmed();
    default:
        return range_of(tag.kind) ? typed_whole(text.trimmed()) : QJsonValue(text);
    }
}
