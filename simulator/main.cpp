// skuan-sim: a simulated server from the command line.
#include <simulator/control_socket_p.h>
#include <simulator/options_p.h>
#include <simulator/platform_stop_p.h>
#include <simulator/server.h>
#include <streams/platform_streams.h>

#include <QCoreApplication>

#include <cstdio>

using namespace simulator;

namespace {

enum ExitCode { exit_clean = 0, exit_failed = 1, exit_bad_usage = 2 };

void complain(const QString& why)
{
    write_stream(stderr, QStringLiteral("skuan-sim: %1\n").arg(why).toUtf8());
}

int failed(const QString& why)
{
    complain(why);
    return exit_failed;
}

int tell_other(const Options& options)
{
    const Told told = tell(options.tell, options.line);
    write_stream(stdout, told.answer);
    return told.error.isEmpty() ? exit_clean : failed(told.error);
}

int serve(const Options& options)
{
    StopSignal stop_signal;
    QObject::connect(&stop_signal, &StopSignal::stop, QCoreApplication::instance(), &QCoreApplication::quit);

    Server server(options.settings);
    QObject::connect(&server, &Server::started, [&server](bool listens) {
        if (!listens)
            return QCoreApplication::exit(failed(server.error_text()));
        write_stream(stdout, QStringLiteral("listening on %1\n").arg(server.place()).toUtf8());
        flush_stream(stdout);
    });
    ControlSocket control(server);
    if (!options.control.isEmpty() && !control.listen(options.control))
        return failed(control.error_text());
    if (!server.listen())
        return failed(server.error_text());

    const int code = QCoreApplication::exec();
    QString error;
    if (!options.settings.state_file.isEmpty() && !server.save(&error))
        return failed(error);
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    prepare_streams();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("skuan-sim"));

    const Options options = parse_options(QCoreApplication::arguments());
    if (!options.error.isEmpty()) {
        complain(options.error + QStringLiteral("\nTry 'skuan-sim --help'."));
        return exit_bad_usage;
    }
    if (!options.help.isEmpty()) {
        write_stream(stdout, options.help.toUtf8());
        return exit_clean;
    }

    return options.tell.isEmpty() ? serve(options) : tell_other(options);
}
