// Most characters need one column, those of East Asian scripts two, accents that are added none.
#include <skuanctl/cell.h>

#include <QVector>

#include <algorithm>
#include <iterator>

namespace {

bool is_wide(uint character)
{
    constexpr std::pair<uint, uint> wide[] = {
        {0x1100, 0x115f}, {0x2e80, 0xa4cf}, {0xac00, 0xd7a3},   {0xf900, 0xfaff},   {0xfe30, 0xfe6f},
        {0xff00, 0xff60}, {0xffe0, 0xffe6}, {0x1f300, 0x1f64f}, {0x1f900, 0x1f9ff}, {0x20000, 0x3fffd},
    };
    return std::any_of(std::begin(wide), std::end(wide), [character](const auto& range) {
        return range.first <= character && character <= range.second;
    });
}

int width_of(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Control:
    case QChar::Other_Format:
        return 0;
    default:
        return is_wide(character) ? 2 : 1;
    }
}

} // namespace

int width_of(const QString& text)
{
    int width = 0;
    for (const uint character : text.toUcs4())
        width += width_of(character);
    return width;
}

QString fitted(const QString& text, int width, Qt::Alignment alignment)
{
    int missing = width - width_of(text);
    if (missing >= 0) {
        const QString blanks(missing, QLatin1Char(' '));
        return alignment & Qt::AlignRight ? blanks + text : text + blanks;
    }
    QString cut;
    int room = width - 1;
    for (const uint character : text.toUcs4()) {
        room -= width_of(character);
        if (room < 0)
            break;
        cut += QString::fromUcs4(&character, 1);
    }
    return width < 1 ? QString() : fitted(cut + QChar(0x2026), width, alignment);
}
