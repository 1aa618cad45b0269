// An hour of operation, as fast as the server can make its fields: a session that follows everything keeps
// nothing of it.
#include <skuan/monitors/channel_monitor.h>
#include <skuan/monitors/output_monitor.h>
#include <skuan/monitors/spark_channel_monitor.h>
#include <skuan/monitors/spark_output_monitor.h>

#include <monitors/studio.h>
#include <support/be_answered.h>
#include <support/possessions.h>
#include <support/scale.h>

#include <algorithm>
#include <array>
#include <iostream>

namespace {

// Sanitizers keep what has been given back.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr bool heap_is_the_systems = false;
#else
constexpr bool heap_is_the_systems = true;
#endif

using support::Possessions; // of session, server and all

/// Counts what the monitors of a generation tell, signal by signal.
class Receiver : public QObject
{
    Q_OBJECT

public:
    explicit Receiver(const QMetaObject& generation) : generation_(generation) {}

    std::array<int, channel_value_count> told{};

    void follow(QObject* monitor)
    {
        const QMetaMethod take = metaObject()->method(metaObject()->indexOfSlot("take()"));
        for (int i = generation_.methodOffset(); i != generation_.methodCount(); ++i)
            if (generation_.method(i).methodType() == QMetaMethod::Signal)
                QObject::connect(monitor, generation_.method(i), this, take);
    }

public Q_SLOTS:
    void take() { ++told[static_cast<std::size_t>(senderSignalIndex() - generation_.methodOffset())]; }

private:
    const QMetaObject& generation_;
};

class Soak : public Studio
{
protected:
    static constexpr int fields_per_minute = 50 * 60;
    static constexpr int fields_between_losses = 1000;
    static constexpr int at_once = 5; ///< fields between two looks at what has come
    static constexpr int leader = 9;  ///< a channel that is somewhere else in every field

    // Ten channels go round in their clips, each at a speed of its own; the others record and change clips.
    void start()
    {
        for (int i = 0; i <= leader; ++i) {
            session->cmd_cue_clip(channel(i), AString::l1("news/weather_tonight"), KVRP3::Loop_loop);
            session->cmd_play(channel(i), 65536 * (i - 4) / 2);
        }
        support::be_answered(*session);
        QObject::connect(session->get_channel_monitor(leader), &SparkMonitor::report_clip_position,
                         session.get(), [this](unsigned position) { position_ = position; });
    }

    void pass_a_minute(int minute)
    {
        const AString take = AString::l1("soak/take");
        session->cmd_delete_clip(take);
        session->cmd_create_clip(take, KVRP3::TrackType_video, 250, channel(10));
        session->cmd_cue_clip(channel(11),
                              AString::l1(minute % 2 ? "news/1800_headlines" : "news/weather_tonight"));
        route_output_1(minute % 3);
        support::be_answered(*session);
        for (int field = 0; field != fields_per_minute; field += at_once) {
            const unsigned before = position_;
            station->step(at_once);
            while (position_ == before)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            if (field % fields_between_losses == 0)
                lose_the_connection();
        }
        session->cmd_unload(channel(10));
        support::be_answered(*session);
    }

    void lose_the_connection()
    {
        // A moment without a connection may be too short to be seen.
        const auto before = session->generation();
        station->drop_clients();
        wait_until([&] { return session->generation() > before; });
        support::be_answered(*session);
    }

    static KVRP3::Channel channel(int number) { return static_cast<KVRP3::Channel>(number); }

    unsigned position_ = 0; ///< of the leader
};

TEST_F(Soak, AnHourLeavesNothingBehind)
{
    constexpr int minutes = support::stood_in_for ? 3 : std::max(6, 60 / support::share),
                  warm_up = minutes / 3;
    Receiver attached(SparkMonitor::staticMetaObject), free(ChannelSignals::staticMetaObject);
    ChannelMonitor channels[12];
    ChannelMonitor* given[12];
    std::unique_ptr<OutputMonitor> outputs[12];
    for (unsigned i = 0; i != 12; ++i) {
        given[i] = &channels[i];
        channels[i].config(session.get(), channel(int(i)));
    }
    for (unsigned i = 0; i != 12; ++i) {
        outputs[i] = std::make_unique<OutputMonitor>(i, session->channel_config(), given, 12);
        attached.follow(session->get_channel_monitor(i));
        attached.follow(session->get_output_monitor(i));
        free.follow(given[i]);
        free.follow(outputs[i].get());
    }
    go_online();
    start();
    Possessions before{};
    for (int minute = 0; minute != minutes; ++minute) {
        if (minute == warm_up) {
            before = Possessions::now();
            std::cout << "after " << minute << " minutes: " << before << '\n';
            attached.told = free.told = {};
        }
        pass_a_minute(minute);
    }
    const Possessions after = Possessions::now();
    std::cout << "after " << minutes << " minutes: " << after << '\n';

    for (const Receiver* const receiver : {&attached, &free}) {
        for (const int told : receiver->told)
            EXPECT_GT(told, minutes);
        EXPECT_GT(receiver->told[int(ChannelValue::clip_position)], minutes * fields_per_minute / at_once);
    }
    if (heap_is_the_systems) { // what a pool keeps of a rare peak, and less than 1 byte for each report
        EXPECT_LT(after.heap - before.heap, 512 * 1024);
        EXPECT_LT(after.resident - before.resident, 2 * 1024 * 1024);
    }
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_EQ(after.threads, before.threads);
}

} // namespace

#include "soak_test.moc"
