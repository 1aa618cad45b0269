// skuanctl: asks and drives video disk servers from the command line.
#include <skuanctl/help.h>
#include <skuanctl/program.h>
#include <streams/platform_streams.h>

#include <QCoreApplication>

#include <cstdio>

static ExitCode refuse(const Options& options, const QString& why)
{
    Output(options.json).error({exit_usage, why, {}});
    return exit_usage;
}

static ExitCode print(const QString& text)
{
    return write_stream(stdout, text.toUtf8()) && flush_stream(stdout) ? exit_ok : exit_cannot_write;
}

int main(int argc, char** argv)
{
    prepare_streams();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("skuanctl"));

    const Options options = parse_options(QCoreApplication::arguments());
    if (!options.error.isEmpty()) {
        const QString help = (options.words + QStringLiteral(" --help")).trimmed();
        const bool asks = options.error.endsWith('?'); // and so tells what to do
        return refuse(options, options.error + (asks ? QString() : QStringLiteral("; see ") + help));
    }
    if (options.help) {
        QString error;
        const QString text = help_text(options, &error);
        return error.isEmpty() ? print(text) : refuse(options, error);
    }
    if (options.version)
        return print(QStringLiteral("skuanctl " SKUAN_VERSION "\n"));

    Program program(options);
    QTimer::singleShot(0, &program, &Program::start);
    return QCoreApplication::exec();
}
