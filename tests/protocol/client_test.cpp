// The blocking client against servers that behave, and against those that do not.
#include <skuan/protocol/kvrp3_client.h>

#include <support/blocked_thread.h>
#include <support/core_application.h>
#include <support/memory_client.h>
#include <support/silent_server.h>
#include <support/station.h>

#include <atomic>
#include <thread>

namespace {

using simulator::Faults;
using support::SilentServer;
using support::Station;

const Faults mute{.mute = true};
const char* const report = "<report><clip_created><ClipID>x</ClipID></clip_created></report>";

/// Counts what comes, and asks for the server's name on every new connection.
class TestClient : public KVRP3::Client
{
public:
    explicit TestClient(unsigned address) : Client(address) {}
    ~TestClient() override { stop(); }

    std::atomic<unsigned> connections{0}, losses{0}, reports{0}, answers{0}, errors{0};
    AString names;       ///< all answers
    bool asks = true;    ///< on each connection
    bool floods = false; ///< on each connection, sends until that fails
    bool stops = false;  ///< at the first report

    void ask()
    {
        cmd_get_computer_name(AFunction1<AString>::member<&TestClient::answered>(this),
                              support::OnError::member<&TestClient::refused>(this));
    }

protected:
    void connected() override
    {
        ++connections;
        while (floods && errors == 0)
            cmd_delete_clip(AString(std::string(60000, 'x')), AFunction(),
                            support::OnError::member<&TestClient::refused>(this));
        if (asks)
            ask();
    }
    void disconnected() override { ++losses; }
    void report_clip_created(AString) override
    {
        ++reports;
        if (stops)
            stop();
    }

private:
    void answered(AString name)
    {
        names += name; // read by others once the answer has been counted
        ++answers;
    }
    void refused(AString, KVRP3::ErrorCode) { ++errors; }
};

using Client = support::CoreApplication;

TEST_F(Client, keeps_the_rest_of_a_message_from_a_connection_that_came_later)
{
    Station station;
    TestClient client(station.ipv4());
    client.asks = false;
    auto connect = [&](AString, KVRP3::ErrorCode) { // after the first chunk, which went nowhere
        client.run_forever_in_own_thread(0);
        wait_until([&] { return client.isConnected(); });
    };
    client.cmd_delete_clip(AString(std::string(4000, 'x')), AFunction(), support::OnError::ref(connect));
    client.ask();
    wait_until([&] { return client.answers + client.errors == 1; });
    EXPECT_EQ(client.errors, 0u);
}

TEST_F(Client, comes_back_after_a_loss_and_goes_where_it_is_told)
{
    Station first("first"), second("second");
    TestClient client(first.ipv4());
    client.run_forever_in_own_thread(0);
    client.run_forever_in_own_thread(0); // there is one loop
    client.run_forever();
    wait_until([&] { return client.answers == 1; });
    first->set_faults(mute);
    client.ask();
    client.ask();
    EXPECT_EQ(client.outstanding_commands(), 2u);
    client.set_ipaddr(second.ipv4());
    first->drop_clients();
    wait_until([&] { return client.answers == 2; });
    EXPECT_EQ(client.names, AString::l1("firstsecond"));
    EXPECT_EQ(client.errors, 2u);
    EXPECT_EQ(client.losses, 1u);
    EXPECT_EQ(client.connections, 2u);
    EXPECT_EQ(client.outstanding_commands(), 0u);

    client.stop();
    EXPECT_FALSE(client.isConnected());
    EXPECT_EQ(client.losses, 1u);
    client.ask();
    EXPECT_EQ(client.errors, 3u);
}

TEST_F(Client, runs_the_periodic_action_unless_four_commands_wait)
{
    Station station(mute);
    TestClient client(station.ipv4());
    client.asks = false;
    static std::atomic<unsigned> runs;
    runs = 0;
    client.add_periodic(
        0, +[] { ++runs; });
    client.run_forever_in_own_thread(0);
    wait_until([&] { return runs != 0 && station->counters().connected == 1; });

    // Each report is one pass of the loop at least.
    const auto passes = [&](unsigned n) {
        for (const unsigned end = client.reports + n; client.reports < end;) {
            const unsigned before = client.reports;
            station->send_raw(report);
            wait_until([&] { return client.reports > before; });
        }
    };
    support::Recorder recorder;
    AString xid;
    for (int i = 0; i < 4; ++i)
        xid = client.cmd_get_computer_name(recorder.text(), recorder.error());
    passes(1); // whatever was under way is over
    const unsigned before = runs;
    passes(5);
    EXPECT_EQ(runs, before);
    EXPECT_TRUE(client.forget_transaction(xid));
    passes(2);
    EXPECT_GT(runs, before);

    client.add_periodic(
        3600, +[] { ++runs; });
    passes(2);
    const unsigned after = runs;
    passes(5);
    EXPECT_EQ(runs, after);
}

TEST_F(Client, can_be_stopped_and_destroyed_while_it_is_busy)
{
    {
        KVRP3::Client never_started;
        support::Recorder recorder;
        never_started.cmd_sync({}, recorder.error());
        EXPECT_EQ(recorder.calls, std::vector<std::string>{"general: Failing all outstanding commands"});
        EXPECT_FALSE(never_started.isConnected());
    }
    {
        Station station(mute);
        TestClient reading(station.ipv4());
        reading.run_forever_in_own_thread(0);
        wait_until([&] { return station->counters().messages == 1; });
        reading.stop();
        EXPECT_EQ(reading.errors, 0u); // what is outstanding is dropped
        wait_until([&] { return station->counters().connected == 0; });
    }
    {
        SilentServer open(SilentServer::Open);
        TestClient sending(open.ipv4());
        sending.floods = true;
        support::BlockedThread loop([&] { sending.run_forever(); });
        wait_until([&] { return sending.connections == 1; });
        loop.wait_until_blocked();
        EXPECT_FALSE(loop.ended());
        sending.stop();
    }
    {
        Station station;
        TestClient stopping(station.ipv4());
        stopping.stops = true;
        stopping.run_forever_in_own_thread(0);
        wait_until([&] { return stopping.answers == 1; });
        station->send_raw(report);
        wait_until([&] { return !stopping.isConnected(); });
        EXPECT_EQ(stopping.reports, 1u);
    }
    {
        Station station;
        TestClient lent(station.ipv4());
        std::thread lender([&] { lent.run_forever(); });
        wait_until([&] { return lent.answers == 1; });
        lent.stop();
        lender.join();
        EXPECT_FALSE(lent.isConnected());
        lent.run_forever(); // it has ended for good
    }
}

} // namespace
