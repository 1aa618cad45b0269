// Cutting a line into words and elements.
#include <simulator/control_line_p.h>

#include <utility>

namespace simulator {

namespace {
constexpr int max_depth = 32;
}

QString ControlLine::word()
{
    skip_blanks();
    QString word = until(" ");
    skip_blanks();
    return word;
}

std::optional<quint64> ControlLine::number()
{
    bool is_number = false;
    const quint64 value = word().toULongLong(&is_number);
    return is_number ? std::optional(value) : std::nullopt;
}

QString ControlLine::rest()
{
    const QString left = text_.mid(std::exchange(at_, text_.size()));
    return left;
}

std::optional<std::vector<Element>> ControlLine::elements()
{
    std::vector<Element> found;
    return read_elements(found, max_depth) && is_at_end() ? std::optional(std::move(found)) : std::nullopt;
}

void ControlLine::skip_blanks()
{
    while (!is_at_end() && text_[at_] == QLatin1Char(' '))
        ++at_;
}

// The text up to one of these characters, which in quotes are characters like any other.
QString ControlLine::until(const char* ends)
{
    const QLatin1String end(ends);
    QString text;
    for (bool quoted = false; !is_at_end(); ++at_) {
        const QChar c = text_[at_];
        if (c == QLatin1Char('\''))
            quoted = !quoted;
        else if (!quoted && end.contains(c))
            break;
        else
            text += c;
    }
    return text;
}

bool ControlLine::read_elements(std::vector<Element>& elements, int depth)
{
    if (depth == 0)
        return false;
    for (skip_blanks(); !is_at_end() && text_[at_] != QLatin1Char(')'); skip_blanks()) {
        Element& element = elements.emplace_back(until(" =()"));
        if (element.tag.isEmpty())
            return false;
        if (!is_at_end() && text_[at_] == QLatin1Char('=')) {
            ++at_;
            element.text = until(" )");
        } else if (!is_at_end() && text_[at_] == QLatin1Char('(')) {
            ++at_;
            if (!read_elements(element.children, depth - 1) || is_at_end())
                return false;
            ++at_; // the bracket that ends it
        }
    }
    return true;
}

} // namespace simulator
