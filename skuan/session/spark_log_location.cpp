// Two kinds of entries, of which the server hears only one.
#include <skuan/session/spark_log_location.h>

#include <skuan/session/spark.h>

#include <QByteArray>
#include <QDebug>

#include <cstdio>

SparkLogLocation::SparkLogLocation(const char* file, unsigned line, const char* client)
    : file_(QString::fromUtf8(file)), line_(line), client_(QString::fromUtf8(client))
{
}

QString SparkLogLocation::make_string(const char* format, std::va_list arguments)
{
    QByteArray text(1024, '\0');
    const int length =
        format ? std::vsnprintf(text.data(), static_cast<std::size_t>(text.size()), format, arguments) : -1;
    return length < 0 || length >= text.size() ? QString() : QString::fromUtf8(text.constData(), length);
}

void SparkLogLocation::send_log_entry(Spark* spark, const char* format, ...) const
{
    std::va_list arguments;
    va_start(arguments, format);
    const QString text = make_string(format, arguments);
    va_end(arguments);
    send_log_entry(spark, text);
}

void SparkLogLocation::send_log_entry(Spark* spark, const QString& text) const
{
    if (spark)
        spark->cmd_log(AString(file_), line_, AString(client_), AString(text), true, false);
    write("log", text);
}

void SparkLogLocation::send_error_entry(Spark* spark, const char* format, ...) const
{
    std::va_list arguments;
    va_start(arguments, format);
    const QString text = make_string(format, arguments);
    va_end(arguments);
    send_error_entry(spark, text);
}

// The session is not used, which is meant: a program's errors do not belong into the server's log.
void SparkLogLocation::send_error_entry(Spark*, const QString& text) const
{
    write("error", text);
}

void SparkLogLocation::write(const char* kind, const QString& text) const
{
    qDebug().noquote() << QStringLiteral("%1:%2 [%3 %4] %5")
                              .arg(file_, QString::number(line_), client_, QLatin1String(kind), text);
}
