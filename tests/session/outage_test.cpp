// A server that goes away at any byte of a conversation and comes back: no command is left without an end,
// and in the end both sides agree. SKUAN_OUTAGE_ROUNDS sets how many places are tried: from some thousands
// on, every byte.
#include <skuan/config/cf_model.h>
#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>
#include <skuan/session/spark.h>

#include <support/command_log.h>
#include <support/core_application.h>
#include <support/on_threads.h>
#include <support/scale.h>
#include <support/station.h>
#include <support/touch_sockets.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <deque>
#include <iostream>
#include <memory>
#include <random>

namespace {

using simulator::Faults;

/// Commands that were issued, and how often each has ended.
class Endings
{
public:
    void ask(Spark& spark)
    {
        const Callbacks callbacks{&ends_.emplace_back(0)};
        spark.cmd_get_computer_name(AFunction1<AString>(&Callbacks::text, callbacks.end), callbacks.error());
    }
    /// In several chunks.
    void set(Spark& spark)
    {
        const Callbacks callbacks{&ends_.emplace_back(0)};
        spark.cmd_userdict_set(AString("k"), AString(std::string(4000, 'v')),
                               AFunction(&Callbacks::ok, callbacks.end), callbacks.error());
    }
    std::size_t issued() const { return ends_.size(); }
    bool each_once() const
    {
        return std::all_of(ends_.begin(), ends_.end(), [](const auto& end) { return end == 1; });
    }

private:
    struct Callbacks
    {
        std::atomic<int>* end;

        static void ok(void* end) { ++*static_cast<std::atomic<int>*>(end); }
        static void text(void* end, AString) { ok(end); }
        AFunction2<AString, KVRP3::ErrorCode> error() const
        {
            return {[](void* end, AString, KVRP3::ErrorCode) { ok(end); }, end};
        }
    };

    std::deque<std::atomic<int>> ends_; // whose elements stay where they are
};

/// One session with one server, from the first attempt until both agree.
class Conversation
{
public:
    explicit Conversation(const Faults& faults) : station_(simulator::Settings{.pace = 0, .faults = faults})
    {
        simulator::Server* const server = station_.operator->();
        log_.listen_to(server);
        // When the next client comes, not when the first has gone: of an end that follows a half-close while
        // Qt has the socket's notifications off, wine does not tell.
        QObject::connect(server, &simulator::Server::client_connected, server, [server](quint64 client) {
            if (client != 1)
                server->set_faults({});
        });
        for (int i = 0; i != 8; ++i) {
            items_ += spark_.cf_model()->get_item(QStringLiteral("Channel_GrowingMxfExportPath%1").arg(i));
            if (i % 2 == 0)
                items_.back()->set(QStringLiteral("/edit/%1").arg(i));
        }
        items_ += spark_.cf_model()->get_item("ChannelConfigurationSet1"); // takes effect after a restart
        items_.back()->set("VKVK");
        spark_.us_model()->get_item("written")->set("w", "gone");
        spark_.us_model()->get_item("read");
        spark_.require_melt_notification();
        spark_.request_listplay_notification(2);
        QObject::connect(&spark_, &Spark::connected, [this] { endings_.ask(spark_); });
        QObject::connect(spark_.cf_model(), &CFModel::fully_scanned, [this] {
            spark_.cf_model()->commit_changes();
            endings_.ask(spark_);
        });
        spark_.set_server(station_.address());
        support::keep_touching_sockets(spark_);
    }

    /// All that was asked has been answered, and all that was edited is at the server.
    bool is_over() const
    {
        return spark_.is_connected() && spark_.outstanding_commands() == 0 && endings_.issued() >= 2 &&
               spark_.cf_model()->is_fully_scanned() && spark_.cf_model()->commit_done();
    }
    quint64 bytes() const { return station_->counters().bytes_sent; }

    void check() const
    {
        EXPECT_TRUE(endings_.each_once());
        EXPECT_LT(endings_.issued(), 20u) << "connections and scans that bring about one another";
        EXPECT_EQ(station_->counters().malformed, 0u);
        for (int i = 0; i != items_.size(); ++i) {
            const QString value = items_[i]->get();
            EXPECT_EQ(value, i == 8 ? "VKVK" : i % 2 == 0 ? QStringLiteral("/edit/%1").arg(i) : QString());
            EXPECT_TRUE(station_->control("config " + items_[i]->get_name())
                            .startsWith(items_[i]->get_name() + " '" + value + '\''));
        }
        const QStringList told = log_.of_the_last();
        for (const char* once :
             {"report_register config_change", "report_register melt", "channel_report_register C listplay",
              "channel_report_register C chaseplay", "userdict_own written gone", "userdict_set written w",
              "userdict_watch read"})
            EXPECT_EQ(told.count(once), 1) << once;
    }

private:
    // Before the session: they are told of its end.
    Endings endings_;
    support::CommandLog log_;
    support::Station station_;
    Spark spark_{false};
    QVector<CFItemModel*> items_;
};

class Outage : public support::CoreApplication
{
};

TEST_F(Outage, at_any_byte_leaves_both_sides_agreed_in_the_end)
{
    constexpr unsigned together = 24; // most of a round is waiting for the next attempt
    const unsigned seed = std::random_device()();
    const unsigned rounds = std::max(qEnvironmentVariableIntValue("SKUAN_OUTAGE_ROUNDS"), 48);
    std::cout << "seed " << seed << ", rounds " << rounds << '\n';
    std::mt19937 random(seed);

    quint64 bytes = 0;
    {
        Conversation undisturbed{Faults()};
        wait_until([&] { return undisturbed.is_over(); });
        undisturbed.check();
        bytes = undisturbed.bytes();
    }
    for (unsigned begin = 0; begin < rounds; begin += together) {
        std::vector<std::unique_ptr<Conversation>> batch;
        std::vector<std::string> what;
        for (unsigned i = begin; i < std::min(begin + together, rounds); ++i) {
            Faults faults{.close_after_bytes = 0};
            if (i != 0) // the first, before any byte
                faults.close_after_bytes = static_cast<qint64>((i * bytes + random() % bytes) / rounds);
            faults.half_close = random() % 4 == 0;
            faults.split = random() % 4 == 0 ? 1 + random() % 100 : 0;
            what.push_back("closed after " + std::to_string(faults.close_after_bytes) + ", half " +
                           std::to_string(faults.half_close) + ", split " + std::to_string(faults.split));
            batch.push_back(std::make_unique<Conversation>(faults));
        }
        wait_until([&] {
            return std::all_of(batch.begin(), batch.end(), [](const auto& one) { return one->is_over(); });
        });
        for (std::size_t i = 0; i != batch.size(); ++i) {
            SCOPED_TRACE(what[i]);
            batch[i]->check();
        }
    }
}

TEST_F(Outage, ends_each_command_of_eight_threads_once_and_breaks_none_in_two)
{
    const unsigned seed = std::random_device()();
    std::cout << "seed " << seed << '\n';
    const auto count = static_cast<std::size_t>(support::scaled_traffic(40000));
    support::Station station(simulator::Settings{.pace = 0, .faults = {}});
    std::array<Endings, 8> endings;
    Spark spark{false};
    spark.set_server(station.address());
    std::atomic<std::size_t> connections{0};
    QObject::connect(&spark, &Spark::connected, [&] { ++connections; });
    std::atomic<bool> working{true};
    std::thread senders([&] {
        support::on_threads(8, [&](unsigned who) {
            std::minstd_rand random(seed + who);
            while (endings[who].issued() != count) {
                // Spread over several connections. Without one, all would fail at once.
                const std::size_t connection = 1 + 4 * endings[who].issued() / count;
                while (connections < connection || (!spark.is_connected() && random() % 1000 != 0))
                    std::this_thread::yield();
                random() % 4 == 0 ? endings[who].set(spark) : endings[who].ask(spark);
            }
        });
        working = false;
    });
    std::mt19937 random(seed);
    while (working) {
        // Again and again: a client that the server has yet to accept is not dropped.
        wait_until([&] { return !working || (spark.is_connected() && random() % 16 == 0); });
        random() % 2 ? station->drop_clients() : spark.reconnect();
    }
    senders.join();
    support::keep_touching_sockets(spark);
    wait_until([&] { return spark.is_connected() && spark.outstanding_commands() == 0; });
    for (const Endings& of_one : endings)
        EXPECT_TRUE(of_one.each_once());
    EXPECT_EQ(station->counters().malformed, 0u);
}

TEST_F(Outage, of_nothing_two_programs_that_edit_the_same_items_end_equal)
{
    const unsigned seed = std::random_device()();
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    support::Station station(simulator::Settings{.pace = 0, .faults = {}});
    Spark one{false}, two{false};
    Spark* const sparks[] = {&one, &two};
    const QString names[] = {"StationName", "NTPServer", "FanSpeed", "Channel_GrowingMxfExportPath0"};
    for (Spark* spark : sparks) {
        for (const QString& name : names)
            spark->cf_model()->get_item(name)->setHot(name == "StationName");
        spark->us_model()->get_item("shared")->set_read_write(true);
        spark->set_server(station.address());
    }
    const auto scanned = [&] {
        return one.cf_model()->is_fully_scanned() && two.cf_model()->is_fully_scanned();
    };
    wait_until(scanned);
    const QString values[] = {"auto", "quiet", "full"};
    for (int i = 0; i != 300; ++i) {
        Spark& spark = *sparks[random() % 2];
        spark.cf_model()->get_item(names[random() % 4])->set(values[random() % 3]);
        spark.us_model()->get_item("shared")->set(values[random() % 3]);
        if (random() % 4 == 0)
            spark.cf_model()->commit_changes();
        if (random() % 4 == 0)
            settle();
    }
    for (Spark* spark : sparks)
        spark->cf_model()->commit_changes();
    wait_until([&] { return scanned() && one.cf_model()->commit_done() && two.cf_model()->commit_done(); });
    for (int i = 0; i != 3; ++i) { // what is still on its way in either direction, and what follows from it
        Endings endings;
        endings.ask(one);
        endings.ask(two);
        wait_until([&] { return endings.each_once(); });
    }
    const auto shared = [](Spark& spark) { return spark.us_model()->get_item("shared")->get(); };
    EXPECT_EQ(shared(one), shared(two));
    for (const QString& name : names) {
        const QString value = one.cf_model()->get_item(name)->get();
        EXPECT_EQ(two.cf_model()->get_item(name)->get(), value);
        EXPECT_TRUE(station->control("config " + name).startsWith(name + " '" + value + '\''));
    }
    EXPECT_TRUE(station->state().contains("<Value>" + shared(one).toUtf8() + "</Value>"));
}

} // namespace
