// Follows what a video output shows: one connection, which outlasts lost connections and reroutings. So that
// there is something to see, this puts a clip on each of two channels and routes the output to the other one.
//
// usage: 11_output [SERVER'S ADDRESS]
#include <skuan/config/cf_model.h>
#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>
#include <skuan/monitors/spark_output_monitor.h>
#include <skuan/session/spark.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    Spark session(false);
    CFItemModel* const layout = session.cf_model()->get_item("ChannelConfigurationSet0");
    USItemModel* const board = session.us_model()->get_item("cf.herbae.0.channel_count");

    // The same clip may be told more than once, and the empty name says that there is none.
    QString shown;
    const auto show = [&](const QString& clip) {
        if (clip.isEmpty() || clip == shown)
            return;
        shown = clip;
        std::printf("output 1 shows %s\n", qPrintable(clip));
        if (layout->get() == "V_V")
            QCoreApplication::exit(0);
        layout->set("V_V"); // an edit: it counts at once, and the server does not have it yet
    };
    QObject::connect(session.get_output_monitor(1), &SparkOutputMonitor::report_clipid, show);

    QObject::connect(&session, &Spark::connected, [&] {
        board->set("2"); // of two channels; VKVV gives output 1 the key of the first, V_V the second itself
        layout->set("VKVV");
        session.cmd_cue_clip(KVRP3::Channel_A, AString::l1("bars_and_tone"));
        session.cmd_cue_clip(KVRP3::Channel_B, AString::l1("news/weather_tonight"));
    });
    session.set_server(QHostAddress(argc > 1 ? argv[1] : "127.0.0.1"));
    return QCoreApplication::exec();
}
