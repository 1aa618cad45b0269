// Lists the clips of a server: a reply that is a stream calls back once for each of them, and once more
// when it is over.
//
// usage: 03_list_clips [SERVER'S ADDRESS]
#include <skuan/protocol/kvrp3_api_qt.h>

#include <QCoreApplication>
#include <QHostAddress>
#include <QTimer>

#include <cstdio>

class Listing
{
public:
    void ask(KVRP3::APIQt& server)
    {
        server.cmd_download_clipids(AFunction::member<&Listing::finish>(this),
                                    AFunction1<AString>::member<&Listing::show>(this),
                                    AFunction2<AString, KVRP3::ErrorCode>::member<&Listing::complain>(this));
    }

    // A connection that is lost ends the command here too.
    void complain(AString message, KVRP3::ErrorCode)
    {
        std::fprintf(stderr, "no listing: %s\n", message.to_string().c_str());
        QCoreApplication::exit(1);
    }

private:
    void show(AString clip)
    {
        std::printf("%s\n", clip.to_string().c_str());
        ++count_;
    }

    void finish()
    {
        std::printf("%u clips\n", count_);
        QCoreApplication::exit(0);
    }

    unsigned count_ = 0;
};

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    Listing listing; // stays until no server is left to call it
    KVRP3::APIQt server(nullptr);
    QObject::connect(&server, &KVRP3::APIQt::connected, [&] { listing.ask(server); });
    QObject::connect(&server, &KVRP3::APIQt::stateChanged, [&](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            listing.complain(AString::l1("no connection"), KVRP3::ErrorCode_general);
    });
    // Within the event loop: an attempt may fail at once, and a loop that does not run cannot be ended.
    QTimer::singleShot(0, &server,
                       [&] { server.connect_to_server(QHostAddress(argc > 1 ? argv[1] : "127.0.0.1")); });
    return QCoreApplication::exec();
}
