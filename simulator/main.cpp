// skuan-sim: a simulated server from the command line.
#include <simulator/options_p.h>
#include <simulator/platform_stop_p.h>
#include <simulator/server.h>

#include <QCoreApplication>

#include <cstdio>

using namespace simulator;

namespace {

enum ExitCode { exit_clean = 0, exit_cannot_listen = 1, exit_bad_usage = 2 };

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("skuan-sim"));

    const Options options = parse_options(QCoreApplication::arguments());
    if (!options.error.isEmpty()) {
        std::fprintf(stderr, "skuan-sim: %s\nTry 'skuan-sim --help'.\n", qPrintable(options.error));
        return exit_bad_usage;
    }
    if (!options.help.isEmpty()) {
        std::fputs(qPrintable(options.help), stdout);
        return exit_clean;
    }

    StopSignal stop_signal;
    QObject::connect(&stop_signal, &StopSignal::stop, &application, &QCoreApplication::quit);

    Server server(options.settings);
    if (!server.listen()) {
        std::fprintf(stderr, "skuan-sim: %s\n", qPrintable(server.error_text()));
        return exit_cannot_listen;
    }
    std::printf("listening on %s\n", qPrintable(server.place()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}
