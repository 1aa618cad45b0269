// A session, a server of its own whose time stands still, and a board with two channels and two outputs.
#pragma once

#include <skuan/config/cf_model.h>
#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>
#include <skuan/session/spark.h>

#include <support/be_answered.h>
#include <support/core_application.h>
#include <support/station.h>
#include <support/touch_sockets.h>

#include <QThread>

#include <memory>

class Studio : public support::CoreApplication
{
protected:
    const support::Station station{simulator::Settings{.pace = 0, .faults = {}}};
    std::unique_ptr<Spark> session = std::make_unique<Spark>(false);

    Studio()
    {
        support::keep_touching_sockets(*session);
        session->us_model()->get_item("cf.herbae.0.channel_count")->set("2");
    }

    void go_online()
    {
        session->set_server(station.address());
        wait_until([&] { return session->is_connected() && session->cf_model()->is_fully_scanned(); });
    }
    void go_offline()
    {
        session->forget_server();
        wait_until([&] { return station->counters().connected == 0; });
    }
    /// Output 1 shows channel 0 or 1, or with any other number none.
    void route_output_1(int channel)
    {
        const char* const configuration = channel == 0 ? "VVVV" : channel == 1 ? "V_V" : "absent";
        session->cf_model()->get_item("ChannelConfigurationSet0")->set(configuration);
        settle();
    }
    /// All that the server has said so far, timecodes too, which come by way of a thread of their own.
    void be_told()
    {
        support::be_answered(*session);
        settle();
        QObject behind_them;
        behind_them.moveToThread(session->findChild<QThread*>("SparkTimecode"));
        QMetaObject::invokeMethod(
            &behind_them, [] {}, Qt::BlockingQueuedConnection);
        settle();
    }
    /// What the server reports of channels, when it has been told everything: "A status timecode".
    QStringList registered()
    {
        settle();
        be_told();
        QStringList lines;
        for (const QString& line : station->control("registrations").split('\n'))
            if (!line.contains("machine"))
                lines += line.section(' ', 1);
        return lines;
    }
};
