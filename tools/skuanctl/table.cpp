// Columns by blanks, two between them.
#include <skuanctl/table.h>

#include <algorithm>

QStringList Table::add(const QStringList& head, const QStringList& cells)
{
    constexpr std::size_t most_kept = 200;
    if (!widths_.empty())
        return {line(cells)};
    if (kept_.empty())
        kept_.push_back(head);
    kept_.push_back(cells);
    return kept_.size() < most_kept ? QStringList() : take();
}

QStringList Table::take()
{
    for (const QStringList& cells : kept_) {
        widths_.resize(std::max(widths_.size(), static_cast<std::size_t>(cells.size())));
        for (int i = 0; i < cells.size(); ++i)
            widths_[static_cast<std::size_t>(i)] =
                std::max(widths_[static_cast<std::size_t>(i)], cells[i].size());
    }
    QStringList lines;
    for (const QStringList& cells : kept_)
        lines += line(cells);
    kept_.clear();
    return lines;
}

QString Table::line(const QStringList& cells) const
{
    QString text;
    int column = 0;
    for (int i = 0; i < cells.size(); ++i) {
        text += QString(std::max(column - text.size(), i ? 2 : 0), QLatin1Char(' ')) + cells[i];
        if (static_cast<std::size_t>(i) < widths_.size())
            column += widths_[static_cast<std::size_t>(i)] + 2;
    }
    return text;
}
