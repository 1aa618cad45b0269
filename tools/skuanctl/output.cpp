// Writing through the C streams: they are what a shell hands over, and need no event loop.
#include <skuanctl/output.h>
#include <skuanctl/platform_terminal.h>
#include <streams/platform_streams.h>

#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

namespace {

QByteArray json_line(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

bool is_unsafe(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format: // among them those that turn the direction of writing
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return character == '\\';
    }
}

QString escape(uint character)
{
    switch (character) {
    case '\\':
        return QStringLiteral("\\\\");
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        return QStringLiteral("\\u{%1}").arg(character, 0, 16);
    }
}

} // namespace

QString made_visible(const QString& text)
{
    QString visible;
    visible.reserve(text.size());
    for (const uint character : text.toUcs4())
        visible += is_unsafe(character) ? escape(character) : QString::fromUcs4(&character, 1);
    return visible;
}

Output::Output(bool json)
    : json_(json), to_terminal_(is_terminal(stdout)), shows_progress_(can_move_cursor(stderr))
{
    flush_timer_.setSingleShot(true);
    connect(&flush_timer_, &QTimer::timeout, this, &Output::flush);
}

Output::~Output()
{
    end_progress();
}

void Output::text(const QString& text)
{
    write((to_terminal_ ? made_visible(text) : text).toUtf8() + '\n');
}

void Output::object(const QJsonObject& object)
{
    write(json_line(object));
}

void Output::remark(const QString& remark)
{
    if (!json_ && to_terminal_)
        text(remark);
}

void Output::progress(const QString& text)
{
    constexpr qint64 pause = 200; // ms
    if (!shows_progress_ || (in_progress_ && progress_shown_.elapsed() < pause))
        return;
    in_progress_ = true;
    progress_shown_.start();
    write_stream(stderr, "\r\033[K" + made_visible(text).toUtf8());
    flush_stream(stderr);
}

void Output::end_progress()
{
    if (std::exchange(in_progress_, false))
        write_stream(stderr, "\r\033[K");
}

bool Output::can_draw() const
{
    return !json_ && can_move_cursor(stdout);
}

void Output::error(const Failure& failure, const QString& host)
{
    end_progress();
    flush(); // results stand before the error where both go to one place
    QJsonObject object{
        {"error", name_of(failure.code)}, {"message", failure.message}, {"exit_code", failure.code}};
    if (!failure.server_code.isEmpty())
        object.insert("code", failure.server_code);
    if (!host.isEmpty())
        object.insert("host", host);
    const QString told = host.isEmpty() ? failure.message : host + QStringLiteral(": ") + failure.message;
    // A server's words may reach a terminal through this too.
    const QByteArray bytes = json_ ? json_line(object) : "skuanctl: " + made_visible(told).toUtf8() + '\n';
    write_stream(stderr, bytes);
}

void Output::write(const QByteArray& bytes)
{
    if (broken_)
        return;
    if (to_terminal_ && std::exchange(shows_progress_, false)) // the result itself shows how far it is
        end_progress();
    check(write_stream(stdout, bytes));
    if (!flush_timer_.isActive())
        flush_timer_.start(0);
}

bool Output::flush()
{
    if (!broken_)
        check(flush_stream(stdout));
    return !broken_;
}

void Output::check(bool written)
{
    const int reason = errno;
    if (written)
        return;
    broken_ = true;
    Q_EMIT broken(reason == EPIPE ? QString()
                                  : QStringLiteral("cannot write the output: %1").arg(std::strerror(reason)));
}
