// A session and one server, which comes and goes: what it does by itself, and what it is told once.
#include <skuan/config/cf_model.h>
#include <skuan/session/spark.h>
#include <skuan/session/spark_log_location.h>
#include <skuan/session/spark_status.h>

#include <support/be_answered.h>
#include <support/command_log.h>
#include <support/core_application.h>
#include <support/silent_server.h>
#include <support/station.h>
#include <support/touch_sockets.h>

#include <gmock/gmock.h>

#include <QThread>

#include <thread>

namespace {

using testing::ElementsAre;

class Spark : public support::CoreApplication
{
protected:
    support::CommandLog log;
    const QHostAddress address{QString::fromStdString(support::own_loopback_address())};
    simulator::ServerThread server{settings()};
    ::Spark spark{false};
    QStringList events; ///< '+', '-', and the channels whose lists went

    Spark()
    {
        support::keep_touching_sockets(spark);
        QObject::connect(&spark, &::Spark::connected, [this] { events += "+"; });
        QObject::connect(&spark, &::Spark::disconnected, [this] { events += "-"; });
        QObject::connect(&spark, &::Spark::report_channel_listplay_unloaded,
                         [this](KVRP3::Channel channel) { events += QString("play %1").arg(channel); });
        QObject::connect(&spark, &::Spark::report_channel_chaseplay_unloaded,
                         [this](KVRP3::Channel channel) { events += QString("chase %1").arg(channel); });
    }

    simulator::Settings settings() const
    {
        simulator::Settings settings{.pace = 0, .faults = {}};
        settings.address = address;
        return settings;
    }
    void start_server()
    {
        ASSERT_TRUE(server.start()) << server.error_text().toStdString();
        log.listen_to(server.server());
    }
    void wait_for_connection(std::uint64_t number)
    {
        wait_until([&] { return spark.generation() == number && server->counters().connected == 1; });
    }
    /// What the server has been told on the present connection, when all of it has been answered.
    QStringList told()
    {
        support::be_answered(spark);
        return log.of_the_last().filter("register");
    }
};

TEST_F(Spark, tries_until_there_is_a_server_and_again_when_it_comes_back)
{
    EXPECT_EQ(spark.status()->values().state, SparkStatus::State::no_server);
    EXPECT_FALSE(spark.status()->next_attempt().has_value());
    int told_of_status = 0;
    QObject::connect(spark.status(), &SparkStatus::changed, [&] { ++told_of_status; });
    spark.set_server(address.toString());
    const auto values = [&] { return spark.status()->values(); };
    wait_until([&] { return values().attempts >= 2 && spark.status()->next_attempt().has_value(); });
    EXPECT_LE(spark.status()->next_attempt().value().count(), 220);
    EXPECT_EQ(values().state, SparkStatus::State::trying);
    EXPECT_FALSE(values().last_error.isEmpty());
    EXPECT_EQ(spark.generation(), 0u);

    start_server();
    for (const std::uint64_t connection : {1u, 2u}) {
        wait_for_connection(connection);
        EXPECT_EQ(values().state, SparkStatus::State::connected);
        EXPECT_EQ(values().connections, connection);
        EXPECT_FALSE(values().last_error.isEmpty());           // why what was before has ended
        spark.set_server(QStringLiteral("elsewhere.invalid")); // when the present connection ends
        settle();
        EXPECT_TRUE(spark.is_connected());
        spark.set_server(address.toString());
        server->drop_clients(); // may be back before this thread looks
    }
    wait_for_connection(3);
    told();
    EXPECT_GT(values().traffic.bytes_sent, values().traffic.messages_sent * 50);
    EXPECT_GT(values().traffic.messages_received, 0u);
    EXPECT_GT(told_of_status, 4);
    EXPECT_LE(told_of_status, 5 * static_cast<int>(values().attempts) + 5);
    EXPECT_EQ(events.count("+"), 3);
}

TEST_F(Spark, ends_with_its_server_forgotten_whatever_it_was_about)
{
    support::SilentServer full(support::SilentServer::Full);
    const unsigned others = full.kept_waiting();
    spark.set_server(full.address());
    wait_until([&] { return full.kept_waiting() > others; });
    spark.disconnect_from_server(); // an attempt that would else have to succeed first
    EXPECT_EQ(spark.socket_state(), QAbstractSocket::UnconnectedState);
    wait_until([&] { return spark.status()->values().attempts == 2; }); // by itself
    spark.forget_server();
    EXPECT_EQ(spark.socket_state(), QAbstractSocket::UnconnectedState);

    start_server();
    spark.set_server(address); // hears of it: nothing was cut off
    wait_for_connection(1);
    spark.set_server(address);
    told();
    spark.set_server(QHostAddress("127.0.0.2"));
    events.clear();
    server->drop_clients();
    wait_until([&] { return spark.status()->values().attempts >= 5; });
    EXPECT_TRUE(events.isEmpty()); // for good, as the header says
}

TEST_F(Spark, registers_again_on_each_connection)
{
    spark.require_melt_notification(); // without a connection: later
    spark.request_listplay_notification(3);
    spark.request_chaseplay_notification(3);
    spark.request_listplay_notification(31);
    spark.request_listplay_notification(32); // is reported
    start_server();
    spark.set_server(address);
    wait_for_connection(1);
    const QString config = "report_register config_change", melt = "report_register melt",
                  exports = "report_register export", play = "channel_report_register D listplay",
                  chase = "channel_report_register D chaseplay";
    EXPECT_THAT(told().mid(0, 4), ElementsAre(config, melt, play, chase));
    // Behind that, what the server says to the registrations.
    EXPECT_EQ(events.mid(0, 5), (QStringList{"play 3", "chase 3", "play 31", "chase 31", "+"}));

    spark.require_melt_notification(); // has it
    spark.require_export_notification();
    spark.unrequest_listplay_notification(31);
    spark.request_listplay_notification(3);
    spark.unrequest_listplay_notification(3);
    spark.unrequest_listplay_notification(3);
    spark.unrequest_chaseplay_notification(3); // the last one, though not of its kind
    const QStringList all = told();
    EXPECT_EQ(all.count(exports), 1);
    EXPECT_EQ(all.count(melt), 1);
    EXPECT_EQ(all.count(play), 2);
    EXPECT_EQ(all.filter("unregister D"), QStringList("channel_report_unregister D chaseplay"));

    spark.request_chaseplay_notification(3);
    told(); // "chase 3" comes now, rather than after the list has been cleared
    events.clear();
    server->drop_clients();
    wait_for_connection(2);
    EXPECT_THAT(told(), ElementsAre(config, melt, exports, play, chase));
    EXPECT_EQ(events.mid(0, 4), (QStringList{"-", "play 3", "chase 3", "+"}));
}

TEST_F(Spark, takes_commands_of_other_threads_and_sends_none_that_has_failed)
{
    start_server();
    spark.set_server(address);
    wait_for_connection(1);
    struct Answers
    {
        QThread* thread = nullptr;
        int errors = 0;
        void ok() { thread = QThread::currentThread(); }
        void error(AString, KVRP3::ErrorCode) { ++errors; }
    } answers;
    const auto set = [&](const char* key) {
        return std::thread([&, key] { // 5000 bytes: several chunks
            spark.cmd_userdict_set(AString(key), AString(std::string(5000, 'v')),
                                   AFunction::member<&Answers::ok>(&answers),
                                   AFunction2<AString, KVRP3::ErrorCode>::member<&Answers::error>(&answers));
        });
    };
    set("taken").join();
    wait_until([&] { return answers.thread != nullptr; });
    EXPECT_EQ(answers.thread, spark.thread());

    set("stale").join(); // still on its way to this thread
    struct Gate
    {
        std::atomic<bool> reached{false}, open{false};
        void pass(const XMLTree&)
        {
            for (bool first = !reached.exchange(true); first && !open;)
                std::this_thread::yield();
        }
    } gate;
    spark.set_send_debug_hook(AFunction1<const XMLTree&>::member<&Gate::pass>(&gate));
    std::thread slow = set("stale too"); // entered, but not on its way
    while (!gate.reached)
        std::this_thread::yield();
    spark.reconnect();
    EXPECT_EQ(answers.errors, 2);
    wait_for_connection(2);
    gate.open = true;
    slow.join();
    told();
    EXPECT_FALSE(server->state().contains("stale"));
    EXPECT_EQ(answers.errors, 2);
    EXPECT_EQ(server->counters().malformed, 0u);
}

// Qt's handler takes no argument of ours.
QStringList* lines;

TEST_F(Spark, writes_to_the_log_of_the_server_but_no_errors)
{
    start_server();
    spark.set_server(address);
    wait_for_connection(1);
    QStringList written;
    lines = &written;
    const auto before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { *lines += text; });
    const SparkLogLocation here("deck.cpp", 120, "newsroom");
    here.send_log_entry(&spark, "%s %d%%", "\xc3\xbc %1", 7);
    here.send_log_entry(nullptr, QStringLiteral("alone"));
    here.send_error_entry(&spark, "%s", std::string(1024, 'x').c_str());
    here.send_error_entry(nullptr, "%s", std::string(1023, 'x').c_str());
    qInstallMessageHandler(before);
    EXPECT_EQ(written, (QStringList{QString::fromUtf8("deck.cpp:120 [newsroom log] \xc3\xbc %1 7%"),
                                    "deck.cpp:120 [newsroom log] alone", "deck.cpp:120 [newsroom error] ",
                                    "deck.cpp:120 [newsroom error] " + QString(1023, 'x')}));
    told();
    EXPECT_EQ(log.of(1).filter("log "),
              QStringList(QString::fromUtf8("log deck.cpp 120 newsroom \xc3\xbc %1 7%")));
}

} // namespace
