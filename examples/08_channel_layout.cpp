// Says which outputs each user channel has, for a page that labels them. It takes four texts of the server's,
// three of its configuration and one of its dictionary, and follows them all.
//
// usage: 08_channel_layout [SERVER'S ADDRESS]
#include <skuan/config/cf_channel_config.h>
#include <skuan/config/cf_model.h>
#include <skuan/session/spark.h>

#include <QCoreApplication>

#include <cstdio>

static void print(const char* kind, const std::vector<unsigned>& outputs)
{
    for (const unsigned output : outputs)
        std::printf(" %s %u", kind, output);
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    Spark session(false);
    const CFChannelConfig* const channels = session.channel_config();

    const auto show = [&] {
        if (channels->board_type() == ChannelCF::BoardType_invalid || channels->channel_count() == 0)
            return; // the server has not told all of it yet
        for (const unsigned channel : channels->AllUserChannels()) {
            std::printf("user channel %u:", channel);
            print("video", channels->AllOutputs(channel, false));
            print("key", channels->AllOutputs(channel, true));
            std::printf("\n");
        }
        QCoreApplication::exit(0); // a page would go on, and show each change
    };
    QObject::connect(channels, &CFChannelConfig::changed, &session, show);

    session.set_server(QHostAddress(argc > 1 ? argv[1] : "127.0.0.1"));
    return QCoreApplication::exec();
}
