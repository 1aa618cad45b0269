// One line of the control language, read word by word.
#pragma once

#include <simulator/element.h>

#include <optional>

namespace simulator {

// Words are separated by blanks; one that holds a blank stands in single quotes. One thread.
class ControlLine
{
public:
    explicit ControlLine(const QString& line) : text_(line.trimmed()) {}

    bool is_at_end() const { return at_ >= text_.size(); }

    // The next word; empty at the end.
    QString word();

    // The next word as a number; nothing, and the word is used up, if it is none.
    std::optional<quint64> number();

    // All that is left, as it stands.
    QString rest();

    // All that is left as elements: Tag=text, Tag(Tag=text Tag=text) or a Tag alone. Nothing if it is not
    // written like that.
    std::optional<std::vector<Element>> elements();

private:
    void skip_blanks();
    QString until(const char* ends);
    bool read_elements(std::vector<Element>& elements, int depth);

    const QString text_;
    int at_ = 0;
};

} // namespace simulator
