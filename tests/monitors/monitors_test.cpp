// What monitors tell, and when: each report once, by whatever road it comes, and each quirk as it is meant.
#include <skuan/config/cf_channel_config.h>
#include <skuan/monitors/channel_monitor.h>
#include <skuan/monitors/output_monitor.h>
#include <skuan/monitors/spark_channel_monitor.h>
#include <skuan/monitors/spark_output_monitor.h>

#include <monitors/studio.h>
#include <support/station.h>

#include <functional>
#include <map>
#include <tuple>
#include <type_traits>

namespace {

template <class T>
QString text(const T& value)
{
    if constexpr (std::is_same_v<T, Vantor::ATimecode>)
        return value.is_defined() ? QString::number(value.get_nfields()) : "-";
    else if constexpr (std::is_same_v<T, KVRP3::ChannelInformation>)
        return value.clip_id;
    else if constexpr (std::is_same_v<T, AOption<KVRP3::Playback>>)
        return value ? QString::number(value.value()) : "-";
    else if constexpr (std::is_same_v<T, QString>)
        return value;
    else
        return QString::number(value);
}

class Monitors : public Studio
{
protected:
    ChannelMonitor of_0, of_1;
    std::map<QString, QString> heard;
    QObject ear;

    template <class Monitor, class Base, class... Values>
    QMetaObject::Connection listen(const char* who, const Monitor* monitor, void (Base::*signal)(Values...),
                                   const char* name)
    {
        return QObject::connect(monitor, signal, &ear, [this, who, name](Values... values) {
            heard[who] += QStringLiteral("%1 %2, ").arg(name, QStringList{text(values)...}.join(' '));
        });
    }
    template <auto... signals, class Monitor>
    void listen_to_each(const char* who, const Monitor* monitor)
    {
        const char* const names[] = {"status", "clip",    "speed", "timecodes",   "position",
                                     "aux",    "display", "input", "information", "playback"};
        int next = 0;
        (listen(who, monitor, signals, names[next++]), ...);
    }
    void listen_to_all(const char* who, const SparkMonitor* monitor)
    {
        using S = SparkMonitor;
        listen_to_each<&S::report_status, &S::report_clipid, &S::report_speed, &S::report_timecodes,
                       &S::report_clip_position, &S::report_aux_position, &S::report_display_timecode,
                       &S::report_input_timecode, &S::report_information, &S::report_playback_mode>(who,
                                                                                                    monitor);
    }
    void listen_to_all(const char* who, const ChannelSignals* monitor)
    {
        using C = ChannelSignals;
        listen_to_each<&C::sig_status, &C::sig_clipid, &C::sig_speed, &C::sig_timecodes,
                       &C::sig_clip_position, &C::sig_aux_position, &C::sig_display_timecode,
                       &C::sig_input_timecode, &C::sig_channel_information, &C::sig_playback_mode>(who,
                                                                                                   monitor);
    }
    std::map<QString, QString> heard_now()
    {
        registered();
        return std::exchange(heard, {});
    }
};

using Heard = std::map<QString, QString>;

TEST_F(Monitors, tell_each_report_once_also_when_somebody_emits_it)
{
    of_0.config(session.get(), KVRP3::Channel_A);
    of_1.config(session.get(), KVRP3::Channel_B);
    ChannelMonitor* const all[12] = {&of_0, &of_1};
    OutputMonitor output(1, session->channel_config(), all, 12);
    route_output_1(1);
    listen_to_all("channel", session->get_channel_monitor(1));
    listen_to_all("output", session->get_output_monitor(1));
    listen_to_all("free channel", &of_1);
    listen_to_all("free output", &output);
    listen_to_all("other channel", session->get_channel_monitor(11));
    listen_to_all("other free channel", &of_0);
    go_online();
    heard_now();

    KVRP3::Timecode display;
    display.valid = true;
    display.set_video_standard(KVRP3::VideoStandard_1080_50i);
    display.set_position(100);
    KVRP3::ChannelInformation information;
    information.clip_id = AString::l1("a");
    information.set_playback(KVRP3::Playback_field);
    Spark* const s = session.get();
    const std::tuple<const char*, std::function<void()>, const char*, const char*> rows[] = {
        {"channel_status Channel=B ChannelStatus=play ClipID=a",
         [&] { Q_EMIT s->report_channel_status(KVRP3::Channel_B, KVRP3::ChannelStatus_play, AString("a")); },
         "status 4, clip a, ", nullptr},
        {"channel_status Channel=B ChannelStatus=stop",
         [&] { Q_EMIT s->report_channel_status(KVRP3::Channel_B, KVRP3::ChannelStatus_stop, {}); },
         "status 3, ", nullptr},
        {"channel_clipid Channel=B ClipID=b",
         [&] { Q_EMIT s->report_channel_clipid(KVRP3::Channel_B, AString("b")); }, "clip b, ", nullptr},
        {"channel_speed Channel=B Speed=1.0",
         [&] { Q_EMIT s->report_channel_speed(KVRP3::Channel_B, 65536); }, "speed 65536, ", nullptr},
        {"channel_timecode Channel=B ClipPosition=7 "
         "DisplayTimecode(Valid=true VideoStandard=1080_50i FieldNumber=100) InputTimecode(Valid=false)",
         [&] { Q_EMIT s->report_channel_timecode(KVRP3::Channel_B, 7, display, {}); },
         "timecodes 7 100 -, position 7, display 100, input -, ", nullptr},
        {"channel_info Channel=B ChannelInformation(ClipID=a Playback=field)",
         [&] { Q_EMIT s->report_channel_info(KVRP3::Channel_B, information); }, "information a, playback 1, ",
         "information a, playback -, "},
        {"channel_aux_audio_timecode Channel=B ClipPosition=9",
         [&] { Q_EMIT s->report_channel_aux_audio_timecode(KVRP3::Channel_B, 9); }, "aux 9, ", nullptr},
    };
    bool is_public = false;
    QObject::connect(s, &Spark::report_channel_status, [&] { is_public = true; });
    QObject::connect(s, &Spark::report_channel_timecode, [&] { is_public = true; });
    for (const auto& [report, emit_it, told, told_by_the_sessions_own] : rows) {
        SCOPED_TRACE(report);
        const QString own = told_by_the_sessions_own ? told_by_the_sessions_own : told;
        const Heard expected{
            {"channel", own}, {"output", own}, {"free channel", told}, {"free output", told}};
        QString error;
        is_public = false;
        station->control(QString("report ") + report, &error);
        ASSERT_EQ(error, "");
        EXPECT_EQ(heard_now(), expected);
        EXPECT_FALSE(is_public);
        emit_it();
        EXPECT_EQ(heard_now(), expected);
    }
}

TEST_F(Monitors, of_outputs_follow_the_routing)
{
    of_0.config(session.get(), KVRP3::Channel_A);
    of_1.config(session.get(), KVRP3::Channel_B);
    ChannelMonitor* const all[12] = {&of_0, &of_1};
    OutputMonitor free(1, session->channel_config(), all, 12);
    const SparkOutputMonitor* const output = session->get_output_monitor(1);
    go_online();
    route_output_1(1);
    Q_EMIT session->report_channel_speed(KVRP3::Channel_A, 10);
    Q_EMIT session->report_channel_speed(KVRP3::Channel_B, 11);
    listen("free", &free, &OutputMonitor::sig_speed, "speed");
    listen("output", output, &SparkOutputMonitor::report_speed, "speed");
    EXPECT_EQ(heard["output"], "speed 11, speed 11, "); // twice
    listen("late", output, &SparkOutputMonitor::report_speed, "speed");
    EXPECT_EQ(heard["late"], "speed 11, ");
    heard_now(); // the server's present state, since they have registered

    Q_EMIT session->report_channel_speed(KVRP3::Channel_A, 20);
    route_output_1(0);
    EXPECT_TRUE(heard["output"].startsWith("speed 20, ")); // and then what the server says
    EXPECT_FALSE(heard["free"].contains("20"));
    listen("late free", &free, &OutputMonitor::sig_speed, "speed");
    heard_now();
    Q_EMIT session->report_channel_speed(KVRP3::Channel_B, 31);
    Q_EMIT session->report_channel_speed(KVRP3::Channel_A, 30);
    EXPECT_EQ(std::exchange(heard, {}), (Heard{{"output", "speed 30, "},
                                               {"late", "speed 30, "},
                                               {"free", "speed 30, "},
                                               {"late free", "speed 30, "}}));
    route_output_1(-1);
    Q_EMIT session->report_channel_speed(KVRP3::Channel_A, 40);
    EXPECT_EQ(heard, (Heard{{"output", "speed 0, "}, {"late", "speed 0, "}}));
    EXPECT_EQ(session->get_output_monitor(12), nullptr);
}

TEST_F(Monitors, that_stand_free_register_and_never_unregister)
{
    ChannelMonitor monitor;
    EXPECT_FALSE(monitor.channel_is(KVRP3::Channel{}));
    const auto early = listen("early", &monitor, &ChannelMonitor::sig_status, "status");
    monitor.config(session.get(), KVRP3::Channel_B);
    monitor.config_channel(KVRP3::Channel_C); // is reported
    EXPECT_TRUE(monitor.channel_is(KVRP3::Channel_B));
    EXPECT_EQ(monitor.objectName(), "ChannelMonitor1");
    const auto position = listen("position", &monitor, &ChannelMonitor::sig_clip_position, "position");
    listen("timecodes", &monitor, &ChannelMonitor::sig_timecodes, "timecodes");
    EXPECT_EQ(heard,
              (Heard{{"position", "position 0, position 0, "}})); // without a connection, and with each
    go_online();
    EXPECT_EQ(registered(), QStringList("B status timecode"));
    listen("playback", &monitor, &ChannelMonitor::sig_playback_mode, "playback");
    EXPECT_EQ(registered(), QStringList("B status timecode")); // nobody asks for that one alone
    const auto come_and_go = [this] {
        QObject::disconnect(
            listen("own", session->get_channel_monitor(1), &SparkMonitor::report_status, "status"));
    };
    come_and_go();
    QObject::disconnect(early);
    EXPECT_EQ(registered(), QStringList("B status timecode"));
    heard_now();

    go_offline();
    EXPECT_EQ(heard, (Heard{{"position", "position 0, "},
                            {"timecodes", "timecodes 0 - -, "},
                            {"playback", "playback -, "}}));
    QObject::disconnect(position);
    go_online();
    come_and_go();
    EXPECT_EQ(registered(), QStringList("B info")); // on a new connection that one, and not all the timecodes
    monitor.timecode_use_add();
    EXPECT_EQ(registered(), QStringList("B timecode info"));
    go_offline();
    EXPECT_TRUE(ChannelMonitor::is_sig_timecode(
        ChannelMonitor::norm(SIGNAL(sig_clip_position(KVRP3::ClipPosition)))));
    EXPECT_FALSE(ChannelMonitor::is_sig_info("2sig_speed(KVRP3::Speed)"));

    session.reset();
    QObject::disconnect(listen("late", &monitor, &ChannelMonitor::sig_input_timecode, "input"));
    EXPECT_EQ(heard["late"], "input -, ");
    session = std::make_unique<Spark>(false);
    monitor.config_api(session.get()); // in the place of one that has gone
    Q_EMIT session->report_channel_speed(KVRP3::Channel_B, 5);
    go_online();
    EXPECT_TRUE(registered().contains("B timecode info"));
}

// Receivers do what they like while they are told.
TEST_F(Monitors, bear_receivers_that_come_and_go_while_they_are_told)
{
    go_online();
    SparkOutputMonitor* const output = session->get_output_monitor(1);
    bool is_new_source = false;
    QObject::connect(output, &SparkOutputMonitor::report_status, &ear, [&] {
        if (std::exchange(is_new_source, false))
            listen("output", output, &SparkOutputMonitor::report_speed, "speed");
    });
    route_output_1(-1);
    is_new_source = true;
    route_output_1(0);
    heard_now();
    Q_EMIT session->report_channel_speed(KVRP3::Channel_A, 7);
    EXPECT_EQ(heard, (Heard{{"output", "speed 7, "}})); // and not twice, of a source that is connected twice
    QObject::disconnect(output, nullptr, &ear, nullptr);

    auto* const doomed = new QObject;
    int told = 0;
    QObject::connect(output, &SparkOutputMonitor::report_speed, doomed, [&] {
        if (++told < 3)
            return; // both at once: from its source, and since it is new
        delete doomed;
        QObject::connect(output, &SparkOutputMonitor::report_speed, &ear, [&](int speed) {
            if (speed != 50 || ++told > 10)
                return;
            route_output_1(1); // runs the event loop, too
            QObject::disconnect(output, nullptr, &ear, nullptr);
        });
    });
    Q_EMIT session->report_channel_speed(KVRP3::Channel_A, 40);
    EXPECT_EQ(registered(), QStringList("A speed"));
    Q_EMIT session->report_channel_speed(KVRP3::Channel_A, 50);
    EXPECT_EQ(registered(), QStringList());
    Q_EMIT session->report_channel_speed(KVRP3::Channel_B, 50);
    EXPECT_EQ(told, 4);
}

} // namespace
