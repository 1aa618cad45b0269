// A program of someone else's: it tests itself against the server that comes with the library.
#include <simulator/server_thread.h>
#include <skuan/protocol/kvrp3_api_qt.h>

#include <QCoreApplication>
#include <QHostAddress>

static void check(AString name)
{
    QCoreApplication::exit(name == AString("a server of its own") ? 0 : 2);
}

static void complain(AString, KVRP3::ErrorCode)
{
    QCoreApplication::exit(3);
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);

    simulator::Settings settings;
    settings.address =
        QHostAddress(0x7fc00000u | (QCoreApplication::applicationPid() & 0x3fffff)); // 127.192.0.0/10
    settings.computer_name = "a server of its own";
    simulator::ServerThread server(settings);
    if (!server.start())
        qFatal("%s", qPrintable(server.error_text()));

    KVRP3::APIQt client(nullptr);
    QObject::connect(&client, &KVRP3::APIQt::connected,
                     [&] { client.cmd_get_computer_name(check, complain); });
    client.connect_to_server(settings.address);
    return QCoreApplication::exec();
}
