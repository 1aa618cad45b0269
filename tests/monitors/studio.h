// A session, a server of its own whose time stands still, and a board with two channels and two outputs.
#pragma once

#include <skuan/config/cf_model.h>
#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>
#include <skuan/session/spark.h>

#include <support/core_application.h>
#include <support/station.h>

#include <memory>

class Studio : public support::CoreApplication
{
protected:
    const support::Station station{simulator::Settings{.pace = 0, .faults = {}}};
    std::unique_ptr<Spark> session = std::make_unique<Spark>(false);

    Studio() { session->us_model()->get_item("cf.herbae.0.channel_count")->set("2"); }

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
    /// What the server reports of channels, when it has been told everything: "A status timecode".
    QStringList registered()
    {
        settle();
        bool done = false;
        session->cmd_get_computer_name(
            AFunction1<AString>([](void* flag, AString) { *static_cast<bool*>(flag) = true; }, &done), {});
        wait_until([&] { return done; });
        QStringList lines;
        for (const QString& line : station->control("registrations").split('\n'))
            if (!line.contains("machine"))
                lines += line.section(' ', 1);
        return lines;
    }
};
