// The event-driven client against servers that behave, against those that do not, and against slots that
// turn round in the midst of things.
#include <skuan/protocol/kvrp3_api_qt.h>

#include <support/core_application.h>
#include <support/memory_client.h>
#include <support/scale.h>
#include <support/silent_server.h>
#include <support/station.h>

#include <QPointer>

#include <algorithm>
#include <functional>
#include <tuple>

namespace {

using simulator::Faults;
using support::Recorder;
using support::SilentServer;
using support::Station;

const std::string failed = "general: Failing all outstanding commands";

const Faults mute{.mute = true};

QByteArray report(const char* clip)
{
    return QByteArray("<report><clip_created><ClipID>") + clip + "</ClipID></clip_created></report>";
}

/// Writes down the signals as they come: '+' connected, '-' disconnected, and the clips of reports.
class TestClient : public KVRP3::APIQt
{
public:
    std::string events;
    std::string taken; ///< the clip whose messages go no further

    TestClient()
    {
        connect(this, &APIQt::connected, this, [this] { events += '+'; });
        connect(this, &APIQt::disconnected, this, [this] { events += '-'; });
        connect(this, &APIQt::report_clip_created, this,
                [this](AString clip) { events += clip.to_string(); });
    }
    /// Asks the server for its name.
    void ask() { cmd_get_computer_name(recorder.text(), recorder.error()); }

    Recorder recorder;

protected:
    bool parse_intercept(const XMLTree& message) override
    {
        const AString clip = message.get_subnodes().front().get_subnode(AString::l1("ClipID")).get_content();
        return !taken.empty() && clip.to_string() == taken;
    }
};

class APIQt : public support::CoreApplication
{
protected:
    TestClient client;

    /// Connected at both ends: the server's has to be there before a test can drop it or send through it.
    void connect_to(const Station& station)
    {
        client.connect_to_server(station.address());
        wait_until([&] { return client.is_connected() && station->counters().connected == 1; });
    }
    void expect_answer(const char* name)
    {
        client.recorder.calls.clear();
        client.ask();
        wait_until([&] { return !client.recorder.calls.empty(); });
        EXPECT_EQ(client.recorder.calls, std::vector<std::string>{name});
        EXPECT_EQ(client.outstanding_commands(), 0u);
    }
};

TEST_F(APIQt, comes_and_goes_and_comes_back)
{
    client.reconnect(); // to nowhere
    client.disconnect_from_server();
    client.ask();
    EXPECT_EQ(client.recorder.calls, std::vector<std::string>{failed});
    EXPECT_FALSE(client.is_connected() || client.is_localhost());
    EXPECT_EQ(client.events, "");

    Station station;
    client.connect_to_server(station.address().toString()); // by name
    wait_until([&] { return client.is_connected(); });
    expect_answer("STUDIO-1");

    station->set_faults(mute);
    client.recorder.calls.clear();
    client.ask();
    client.ask();
    client.disconnect_from_server();
    EXPECT_EQ(client.recorder.calls, (std::vector<std::string>{failed, failed}));
    wait_until([&] { return client.events == "+-"; });

    station->set_faults({});
    client.reconnect();
    wait_until([&] { return client.is_connected(); });
    expect_answer("STUDIO-1");
    EXPECT_EQ(client.events, "+-+");
}

TEST_F(APIQt, ends_up_with_the_server_that_was_asked_for_last)
{
    Station first("first"), second("second");
    connect_to(first);
    client.ask();
    client.connect_to_server(second.address());
    EXPECT_EQ(client.recorder.calls, std::vector<std::string>{failed});
    EXPECT_EQ(client.events, "+-");
    wait_until([&] { return client.is_connected(); });
    EXPECT_EQ(client.events, "+-+");
    expect_answer("second");
    wait_until([&] { return first->counters().connected == 0; });

    for (int i = 0; i < 10; ++i) // while it is still connecting
        client.connect_to_server(i % 2 ? first.address() : second.address());
    wait_until([&] { return client.is_connected(); });
    expect_answer("first");
    EXPECT_EQ(client.events, "+-+-+");
}

// Each row does one thing to a connected client, and connects to the other server from within what
// comes of it. The stream of the first server must have ended there.
TEST_F(APIQt, may_be_turned_round_from_any_slot_or_callback)
{
    Station first("first"), second("second");
    enum Where { in_error, in_disconnected, in_report };
    const std::tuple<const char*, std::function<void()>, std::vector<Where>> rows[] = {
        {"drop", [&] { first->drop_clients(); }, {in_error, in_disconnected}},
        {"leave", [&] { client.disconnect_from_server(); }, {in_error, in_disconnected}},
        {"reconnect", [&] { client.connect_to_server(first.address()); }, {in_error, in_disconnected}},
        {"reports", [&] { first->send_raw(report("a") + report("b") + report("c")); }, {in_report}},
        {"bad XML", [&] { first->send_raw("<report><a></b></report>"); }, {in_error}},
    };
    for (const auto& [name, act, places] : rows)
        for (const Where where : places) {
            SCOPED_TRACE(testing::Message() << name << ", place " << where);
            first->set_faults({});
            connect_to(first);
            client.events.clear();
            first->set_faults(mute);

            bool done = false;
            const auto turn = [&] {
                if (!std::exchange(done, true))
                    client.connect_to_server(second.address());
            };
            auto on_error = [&](AString, KVRP3::ErrorCode) { turn(); };
            QObject scope;
            if (where == in_error) {
                const quint64 before = first->counters().messages;
                client.cmd_sync({}, support::OnError::ref(on_error));
                // A server that goes without having read all of it resets the connection. Wine loses that
                // when it comes while Qt has its notifications off, as it has for a moment with each of them.
                wait_until([&] { return first->counters().messages > before; });
            }
            if (where == in_disconnected)
                QObject::connect(&client, &KVRP3::APIQt::disconnected, &scope, turn);
            if (where == in_report)
                QObject::connect(&client, &KVRP3::APIQt::report_clip_created, &scope, turn);
            act();
            wait_until([&] { return done && client.is_connected(); });
            expect_answer("second");
            EXPECT_EQ(client.events, where == in_report ? "a-+" : "-+");
            wait_until([&] { return first->counters().connected == 0; });
        }
}

// Also when a slot keeps the signal from coming to its end, as one does that shows a message.
TEST_F(APIQt, may_be_turned_round_in_every_state_that_it_comes_to)
{
    Station first("first"), second("second");
    for (const bool in_event_loop : {false, true})
        for (int state = QAbstractSocket::UnconnectedState; state <= QAbstractSocket::ClosingState; ++state) {
            if (state == QAbstractSocket::BoundState || state == QAbstractSocket::ListeningState)
                continue;
            SCOPED_TRACE(testing::Message() << "state " << state << ", in event loop " << in_event_loop);
            const bool at_the_end =
                state == QAbstractSocket::UnconnectedState || state == QAbstractSocket::ClosingState;
            client.disconnect_from_server();
            wait_until([&] { return client.socket_state() == QAbstractSocket::UnconnectedState; });
            client.events.clear();
            if (at_the_end)
                connect_to(first);
            bool done = false;
            const auto turn = [&] { client.connect_to_server(second.address().toString()); };
            QObject scope;
            QObject::connect(
                &client, &KVRP3::APIQt::stateChanged, &scope, [&](QAbstractSocket::SocketState reached) {
                    if (reached != state || std::exchange(done, true))
                        return;
                    if (!in_event_loop)
                        return turn();
                    QTimer::singleShot(0, &scope, turn);
                    wait_until([&] { return client.is_connected() && second->counters().connected == 1; });
                    settle();
                });
            at_the_end ? client.disconnect_from_server() : client.connect_to_server(first.address());
            wait_until([&] { return done && client.is_connected(); });
            expect_answer("second");
            EXPECT_EQ(client.events, at_the_end ? "+-+" : "+");
            wait_until([&] { return first->counters().connected == 0; });
        }
}

TEST_F(APIQt, of_a_connect_and_a_disconnect_the_later_holds)
{
    Station station(mute);
    connect_to(station);
    auto leave = [this](AString, KVRP3::ErrorCode) { client.disconnect_from_server(); };
    client.cmd_sync({}, support::OnError::ref(leave));
    client.connect_to_server(station.address());
    wait_until([&] { return client.events == "+-"; });
    wait_until([&] { return station->counters().connected == 0; });
    EXPECT_EQ(station->counters().accepted, 1u);
}

TEST_F(APIQt, offers_each_message_before_it_is_understood)
{
    Station station;
    connect_to(station);
    client.taken = "b";
    station->send_raw(report("a") + report("b") + "<report><clip_created /></report>" + report("c"));
    wait_until([&] { return client.events == "+ac"; });
    expect_answer("STUDIO-1"); // a message that is not understood has harmed nothing
}

TEST_F(APIQt, takes_a_flood_no_faster_than_it_can_be_worked_through)
{
    const Faults faults{.flood = true,
                        .flood_count = static_cast<quint64>(support::scaled_traffic(1000000)),
                        .flood_report = report("x") + QByteArray(340, ' ')};
    Station station(faults);
    quint64 count = 0;
    qint64 held = 0; // bytes between the server and the slot: ours, and the kernel's few MB
    QObject::connect(&client, &KVRP3::APIQt::report_clip_created, &client, [&] {
        client.events.clear();
        ++count;
        const quint64 taken = count * static_cast<quint64>(faults.flood_report.size());
        held = std::max(held, static_cast<qint64>(station->counters().bytes_sent - taken));
    });
    client.connect_to_server(station.address());
    wait_until([&] { return count == faults.flood_count; });
    EXPECT_LT(held, 20 << 20);
}

TEST_F(APIQt, can_be_destroyed_while_it_is_busy)
{
    {
        TestClient never_connected, looking_up;
        looking_up.connect_to_server(QStringLiteral("no.such.host.invalid"));
    }
    for (const bool leaving : {false, true}) {
        SilentServer silent(SilentServer::Open);
        TestClient sending;
        sending.connect_to_server(silent.address());
        wait_until([&] { return sending.is_connected(); });
        const AString big = AString::l1(std::string(100000, 'x').c_str());
        for (int i = 0; i < 200; ++i) // more than the kernel takes
            sending.cmd_delete_clip(big);
        settle();
        if (leaving)
            sending.disconnect_from_server();
        settle();
        EXPECT_EQ(sending.is_connected(), !leaving);
    }
    {
        Station station;
        QPointer<TestClient> going = new TestClient;
        QObject::connect(going, &KVRP3::APIQt::connected, going, &QObject::deleteLater);
        going->connect_to_server(station.address());
        wait_until([&] { return going.isNull(); });
    }
}

} // namespace
