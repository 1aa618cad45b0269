// skuanctl: asks a video disk server from the command line.
#include <skuanctl/program.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("skuanctl"));

    const Options options = parse_options(QCoreApplication::arguments());
    if (!options.error.isEmpty()) {
        Output(options.json).error({exit_usage, options.error + QStringLiteral("; see skuanctl --help"), {}});
        return exit_usage;
    }
    if (options.help) {
        std::fputs(qPrintable(help_text()), stdout);
        return std::fflush(stdout) == 0 ? exit_ok : exit_cannot_write;
    }

    Program program(options);
    QTimer::singleShot(0, &program, &Program::start);
    return QCoreApplication::exec();
}
