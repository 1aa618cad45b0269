// Watches directories come into being: the server reports, unasked, what a client has registered for,
// and each kind of report is a signal. So that there is something to see, this makes a directory.
//
// usage: 04_watch_reports [SERVER'S ADDRESS]
#include <skuan/protocol/kvrp3_api_qt.h>

#include <QCoreApplication>
#include <QHostAddress>
#include <QTimer>

#include <cstdio>

static void complain(AString message, KVRP3::ErrorCode)
{
    std::fprintf(stderr, "failed: %s\n", message.to_string().c_str());
    QCoreApplication::exit(1);
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    KVRP3::APIQt server(nullptr);

    QObject::connect(&server, &KVRP3::APIQt::report_directory_created, [](AString directory) {
        std::printf("made: %s\n", directory.to_string().c_str());
        QCoreApplication::exit(0);
    });
    // The server forgets registrations with the connection, so they are made here, each time.
    QObject::connect(&server, &KVRP3::APIQt::connected, [&] {
        server.cmd_report_register(KVRP3::ReportType_directory_change, AFunction(), complain);
        server.cmd_create_directory(AString::l1("rushes"), AFunction(), complain);
    });
    QObject::connect(&server, &KVRP3::APIQt::stateChanged, [](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            complain(AString::l1("no connection"), KVRP3::ErrorCode_general);
    });
    // Within the event loop: an attempt may fail at once, and a loop that does not run cannot be ended.
    QTimer::singleShot(0, &server,
                       [&] { server.connect_to_server(QHostAddress(argc > 1 ? argv[1] : "127.0.0.1")); });
    return QCoreApplication::exec();
}
