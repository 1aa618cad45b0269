// Writing over a picture what differs in the next one, line by line.
#include <skuanctl/cell.h>
#include <skuanctl/live_lines.h>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto field = 16ms;       // the shortest there is, so that each field is shown
constexpr auto look_pause = 200ms; // for a hand that drags a window

bool is_boundary(const QString& text, int at)
{
    return at >= text.size() || !(text[at].isLowSurrogate() || text[at].isMark());
}

/// Writes over the line that the cursor is on, from the first difference to the last.
QString rewritten(const QString& old, const QString& now)
{
    const int least = std::min(old.size(), now.size());
    int begin =
        static_cast<int>(std::mismatch(now.begin(), now.begin() + least, old.begin()).first - now.begin());
    while (begin > 0 && !(is_boundary(old, begin) && is_boundary(now, begin)))
        --begin;
    int end = now.size(), old_end = old.size();
    const bool same_width = width_of(old) == width_of(now);
    while (same_width && std::min(end, old_end) > begin && now[end - 1] == old[old_end - 1])
        --end, --old_end;
    while (!is_boundary(now, end))
        ++end;
    return QStringLiteral("\033[%1G").arg(width_of(now.left(begin)) + 1) + now.mid(begin, end - begin) +
           (same_width ? QString() : QStringLiteral("\033[K"));
}

} // namespace

LiveLines::LiveLines(Output& output, Picture picture) : output_(output), picture_(std::move(picture))
{
    drawing_.setSingleShot(true);
    drawing_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&drawing_, &QTimer::timeout, &drawing_, [this] { draw(); });
    QObject::connect(&looking_, &QTimer::timeout, &looking_, [this] { look(); });
}

LiveLines::~LiveLines()
{
    if (drawing_.isActive())
        draw();
    if (!shown_.isEmpty())
        output_.draw("\r\033[K"); // what a terminal echoes of Ctrl-C
}

void LiveLines::change()
{
    if (!drawing_.isActive())
        drawing_.start(field);
}

// Whoever was held up was stopped, perhaps, and a shell has written something; nobody knows what stands
// there.
void LiveLines::look()
{
    const TerminalSize size = terminal_size(stdout);
    const bool was_held_up = looked_.restart() > 5 * std::chrono::milliseconds(look_pause).count();
    if (size == size_ && !was_held_up)
        return;
    output_.draw("\033[H\033[2J");
    shown_.clear();
    draw();
}

QStringList LiveLines::lines() const
{
    const int width = size_.columns - 1; // a cursor behind the last column is on it, or on the next line
    QStringList lines = picture_(width).mid(0, size_.lines - 1);
    for (QString& line : lines)
        if (width_of(line) > width)
            line = fitted(line, width);
    return lines;
}

void LiveLines::draw()
{
    if (!looking_.isActive()) {
        looking_.start(look_pause);
        looked_.start();
    }
    if (shown_.isEmpty())
        size_ = terminal_size(stdout);
    const QStringList now = lines();
    QString written;
    if (now.size() != shown_.size()) {
        if (!shown_.isEmpty())
            written = QStringLiteral("\033[%1A\r\033[J").arg(shown_.size());
        for (const QString& line : now)
            written += line + '\n';
    } else {
        for (int i = 0; i < now.size(); ++i)
            if (now[i] != shown_[i])
                written += QStringLiteral("\033[%1A%2\033[%1B\r")
                               .arg(QString::number(now.size() - i), rewritten(shown_[i], now[i]));
    }
    shown_ = now;
    if (!written.isEmpty())
        output_.draw(written.toUtf8());
}
