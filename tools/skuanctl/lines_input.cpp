// Reading lines, with a bound on what is taken.
#include <skuanctl/lines_input.h>
#include <skuanctl/raw_input.h>

#include <QFile>

QStringList read_lines(const QString& name, QString* error)
{
    constexpr qint64 most = 64 * 1024 * 1024; // bytes; far above any list
    QByteArray text;
    if (name.isEmpty() || name == QLatin1String("-")) {
        text = read_standard_input(error);
    } else {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly))
            *error = QStringLiteral("cannot read %1: %2").arg(name, file.errorString());
        else if (text = file.read(most); !file.atEnd())
            *error = QStringLiteral("%1 has more than %2 bytes").arg(name).arg(most);
    }
    QStringList lines;
    for (const QByteArray& line : text.split('\n'))
        lines += QString::fromUtf8(line.trimmed());
    return lines;
}
