// What a session's monitors are registered for is what their receivers need, whatever comes and goes.
// SKUAN_SEED repeats a walk.
#include <skuan/config/cf_channel_config.h>
#include <skuan/monitors/spark_channel_monitor.h>
#include <skuan/monitors/spark_output_monitor.h>

#include <monitors/studio.h>
#include <support/scale.h>
#include <support/station.h>

#include <algorithm>
#include <iostream>
#include <random>

namespace {

class Receiver : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void take() {}
};

struct Row
{
    QMetaMethod signal;
    const char* report;

    QByteArray name() const { return '2' + signal.methodSignature(); }
};

const Row rows[] = {
    {SparkMonitor::sig_status(), "status"},
    {SparkMonitor::sig_clipid(), "clipid"},
    {SparkMonitor::sig_speed(), "speed"},
    {SparkMonitor::sig_timecodes(), "timecode"},
    {SparkMonitor::sig_clip_position(), "timecode"},
    {SparkMonitor::sig_display_timecode(), "timecode"},
    {SparkMonitor::sig_input_timecode(), "timecode"},
    {SparkMonitor::sig_information(), "info"},
    {SparkMonitor::sig_playback_mode(), "info"},
    {SparkMonitor::sig_aux_position(), "aux_audio_timecode"},
};

struct Edge
{
    SparkMonitor* monitor;
    const Row* row;
    Receiver* receiver;
    QMetaObject::Connection handle;
};

class Registration : public Studio
{
protected:
    std::mt19937 random{[] {
        const QByteArray given = qgetenv("SKUAN_SEED");
        const unsigned seed = given.isEmpty() ? std::random_device()() : given.toUInt();
        std::cout << "SKUAN_SEED=" << seed << '\n';
        return seed;
    }()};
    std::vector<SparkMonitor*> monitors;
    std::vector<std::unique_ptr<Receiver>> receivers;
    std::vector<Edge> edges;

    unsigned below(std::size_t n) { return static_cast<unsigned>(random() % n); }

    void connect_one()
    {
        if (receivers.empty() || below(3) == 0)
            receivers.push_back(std::make_unique<Receiver>());
        SparkMonitor* const monitor = monitors[below(monitors.size())];
        const Row& row = rows[below(std::size(rows))];
        Receiver* const receiver = receivers[below(receivers.size())].get();
        edges.push_back(
            {monitor, &row, receiver, QObject::connect(monitor, row.name(), receiver, SLOT(take()))});
    }

    /// In one of the ways there are; `edges` then has what is left.
    void disconnect_some()
    {
        if (edges.empty())
            return;
        const Edge one = edges[below(edges.size())];
        SparkMonitor* const monitor = one.monitor;
        const auto forget = [this](auto condition) { std::erase_if(edges, condition); };
        const auto same_signal = [&](const Edge& e) { return e.monitor == monitor && e.row == one.row; };
        const bool is_output = qobject_cast<SparkOutputMonitor*>(monitor) != nullptr;
        switch (below(is_output ? 6 : 4)) { // what cuts all receivers off would cut off outputs too
        case 0:
            QObject::disconnect(one.handle);
            forget([&](const Edge& e) { return !e.handle; });
            break;
        case 1:
            QObject::disconnect(monitor, one.row->name(), one.receiver, SLOT(take()));
            forget([&](const Edge& e) { return same_signal(e) && e.receiver == one.receiver; });
            break;
        case 2:
            QObject::disconnect(monitor, nullptr, one.receiver, nullptr);
            forget([&](const Edge& e) { return e.monitor == monitor && e.receiver == one.receiver; });
            break;
        case 3:
            forget([&](const Edge& e) { return e.receiver == one.receiver; });
            std::erase_if(receivers, [&](const auto& r) { return r.get() == one.receiver; });
            break;
        case 4:
            QObject::disconnect(monitor, one.row->name(), nullptr, nullptr);
            forget(same_signal);
            break;
        case 5:
            QObject::disconnect(monitor, nullptr, nullptr, nullptr);
            forget([&](const Edge& e) { return e.monitor == monitor; });
            break;
        }
    }

    QStringList needed() const
    {
        QStringList lines;
        for (unsigned channel = 0; channel != 12; ++channel) {
            QStringList words{QString(QChar('A' + channel))};
            for (const char* const report : // in the server's order
                 {"status", "clipid", "speed", "timecode", "info", "aux_audio_timecode"})
                if (std::any_of(edges.begin(), edges.end(), [&](const Edge& edge) {
                        return edge.row->report == QByteArray(report) && source(edge.monitor) == int(channel);
                    }))
                    words += report;
            if (words.size() > 1)
                lines += words.join(' ');
        }
        return lines;
    }

    /// The channel of a monitor; -1 if it is an output that shows none.
    int source(const SparkMonitor* monitor) const
    {
        if (const auto* const channel = qobject_cast<const SparkChannelMonitor*>(monitor))
            return channel->channel();
        for (unsigned output = 0; output != 12; ++output)
            if (session->get_output_monitor(output) == monitor)
                if (const auto routed = session->channel_config()->GetOutputSource(output))
                    return int(routed.value().user_channel);
        return -1;
    }
};

TEST_F(Registration, follows_receivers_through_lost_connections_and_reroutings)
{
    monitors = {session->get_channel_monitor(0), session->get_channel_monitor(1),
                session->get_channel_monitor(11), session->get_output_monitor(0),
                session->get_output_monitor(1)};
    for (int round = 0; round != 4 + support::scaled_traffic(400); ++round) {
        SCOPED_TRACE(round);
        if (round % 4 == 0)
            go_online();
        if (round % 4 == 1) { // and the session comes back by itself, in the midst of the following
            const auto before = session->generation();
            station->drop_clients();
            wait_until([&] { return !session->is_connected() || session->generation() > before; });
        }
        if (round % 4 == 3)
            go_offline();
        for (unsigned steps = below(40); steps != 0; --steps) {
            if (below(12) == 0)
                route_output_1(int(below(3)));
            else if (below(2 + edges.size()) < 8)
                connect_one();
            else
                disconnect_some();
            if (below(8) == 0)
                settle();
        }
        if (round % 4 == 3)
            continue;
        wait_until([&] { return session->is_connected(); });
        ASSERT_EQ(registered(), needed());
    }
    receivers.clear();
    go_online();
    EXPECT_EQ(registered(), QStringList());
}

} // namespace

#include "registration_test.moc"
