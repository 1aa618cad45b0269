// Asks a server for its name in Qt's event loop: nothing blocks, and the answer comes as a call.
//
// usage: 02_ask_name_qt [SERVER'S ADDRESS]
#include <skuan/protocol/kvrp3_api_qt.h>

#include <QCoreApplication>
#include <QHostAddress>
#include <QTimer>

#include <cstdio>

static void show(AString name)
{
    std::printf("%s\n", name.to_string().c_str());
    QCoreApplication::exit(0);
}

static void complain(AString message, KVRP3::ErrorCode)
{
    std::fprintf(stderr, "no name: %s\n", message.to_string().c_str());
    QCoreApplication::exit(1);
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    KVRP3::APIQt server(nullptr);

    QObject::connect(&server, &KVRP3::APIQt::connected,
                     [&] { server.cmd_get_computer_name(show, complain); });
    QObject::connect(&server, &KVRP3::APIQt::stateChanged, [](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            complain(AString::l1("no connection"), KVRP3::ErrorCode_general);
    });
    // Within the event loop: an attempt may fail at once, and a loop that does not run cannot be ended.
    QTimer::singleShot(0, &server,
                       [&] { server.connect_to_server(QHostAddress(argc > 1 ? argv[1] : "127.0.0.1")); });
    return QCoreApplication::exec();
}
