// Nearness is the number of letters to change; a name that holds the word is near too.
#include <skuanctl/nearest.h>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace {

int letters_to_change(const QString& a, const QString& b)
{
    std::vector<int> row(static_cast<std::size_t>(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < a.size(); ++i) {
        int diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 1; j < row.size(); ++j) {
            const int change = diagonal + (a[i] != b[static_cast<int>(j) - 1]);
            diagonal = row[j];
            row[j] = std::min({change, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

} // namespace

QString hint(const QString& word, const QStringList& known)
{
    constexpr int longest = 64; // no name is nearly as long
    constexpr int most_shown = 3, few = 20;
    const QString meant = word.left(longest).toLower();
    std::vector<std::pair<int, QString>> near;
    for (const QString& name : known) {
        const int distance = letters_to_change(meant, name.toLower());
        if (distance <= 1 + meant.size() / 4)
            near.emplace_back(distance, name);
        else if (meant.size() > 2 && name.contains(meant, Qt::CaseInsensitive))
            near.emplace_back(longest, name);
    }
    std::stable_sort(near.begin(), near.end(), [](auto& a, auto& b) { return a.first < b.first; });

    QStringList names;
    for (std::size_t i = 0; i < near.size() && i < most_shown; ++i)
        names += near[i].second;
    if (!names.isEmpty())
        return QStringLiteral("; did you mean %1?").arg(names.join(QStringLiteral(" or ")));
    if (!known.isEmpty() && known.size() <= few)
        return QStringLiteral("; there %1 %2").arg(known.size() == 1 ? "is" : "are", known.join(", "));
    return {};
}
