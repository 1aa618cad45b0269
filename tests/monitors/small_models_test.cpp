// Alerts, tally, LTC and latency, each through lost connections.
#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>
#include <skuan/monitors/alert_item_model.h>
#include <skuan/monitors/alert_model.h>
#include <skuan/monitors/io_latency_model.h>
#include <skuan/monitors/ltc_model.h>
#include <skuan/monitors/tally_model.h>
#include <skuan/session/spark.h>

#include <support/be_answered.h>
#include <support/command_log.h>
#include <support/core_application.h>
#include <support/on_threads.h>
#include <support/station.h>
#include <support/touch_sockets.h>

#include <array>
#include <tuple>

namespace {

class SmallModels : public support::CoreApplication
{
protected:
    support::CommandLog log;
    const support::Station station{simulator::Settings{.pace = 0, .faults = {}}};
    Spark spark{false};

    SmallModels()
    {
        log.listen_to(station.operator->());
        support::keep_touching_sockets(spark);
    }

    void connect()
    {
        const auto before = spark.generation();
        if (before == 0)
            spark.set_server(station.address());
        else
            station->drop_clients();
        wait_until([&] { return spark.generation() > before; });
        support::be_answered(spark);
    }
};

TEST_F(SmallModels, alerts_are_items_that_outlive_the_line)
{
    std::array<AlertModel*, 4> models{};
    support::on_threads(4, [&](unsigned i) { models[i] = spark.get_alert_model(); });
    AlertModel& model = *spark.get_alert_model();
    for (const AlertModel* one : models)
        EXPECT_EQ(one, &model);
    EXPECT_EQ(model.get(QString()), nullptr);
    AlertItemModel* const fans = model.get("Fans");
    EXPECT_EQ(model.get("Fans"), fans);
    EXPECT_FALSE(fans->get());

    std::atomic<int> changes{0};
    std::atomic<bool> apart{true};
    QObject::connect(fans, &AlertItemModel::changed, [&](const QString& name) { // while the model is locked
        apart = apart && QThread::currentThread() == model.thread() && model.get(name)->get().has_value();
        ++changes;
    });
    connect();
    wait_until([&] { return changes == 1; }); // that they are well
    const auto say = [&](const char* text) {
        const int before = changes;
        station->control(QStringLiteral("alert Fans %1").arg(text));
        wait_until([&] { return changes > before; });
    };
    say("warning one is slow");
    EXPECT_EQ(fans->get().value().alerting_level, KVRP3::AlertingLevel_warning);
    connect(); // and is told the same again
    EXPECT_TRUE(fans->get());
    station->send_report("<report><alert><Alert><AlertingPriority>harmful</AlertingPriority>"
                         "<AlertingLevel>ok</AlertingLevel><AlertName></AlertName><AlertNameDescription />"
                         "<AlertValueDescription /></Alert></alert></report>");
    say("error one stands");
    EXPECT_EQ(QString(fans->get().value().alert_value_description), "one stands");
    EXPECT_EQ(changes, 3);
    EXPECT_TRUE(apart);
    for (const quint64 client : {1, 2})
        EXPECT_EQ(log.of(client).count("report_register alerts"), 1) << client;
}

TEST_F(SmallModels, tally_knows_four_words)
{
    connect();
    USItemModel* const item = spark.us_model()->get_item("Tally11");
    item->set("green");
    TallyModel tally(spark.us_model(), 11);
    EXPECT_EQ(tally.get_state(), TallyModel::tally_green);
    int changes = 0;
    QObject::connect(&tally, &TallyModel::changed, [&] { ++changes; });
    const std::tuple<const char*, TallyModel::TallyState, int> rows[] = {
        {"red", TallyModel::tally_red, 1},       {"blue", TallyModel::tally_none, 2},
        {"Red", TallyModel::tally_none, 2},      {"offline", TallyModel::tally_offline, 3},
        {"yellow", TallyModel::tally_yellow, 4}, {"", TallyModel::tally_none, 5}};
    for (const auto& [text, state, count] : rows) {
        item->set(text);
        EXPECT_EQ(tally.get_state(), state) << text;
        EXPECT_EQ(changes, count) << text;
    }
    EXPECT_EQ(TallyModel(nullptr, 1).get_state(), TallyModel::tally_none);
}

TEST_F(SmallModels, ltc_is_void_at_both_ends_of_a_connection)
{
    QStringList seen;
    LTCModel early(&spark);
    QObject::connect(&spark, &Spark::disconnected, [&] { EXPECT_FALSE(early.get().is_defined()); });
    QObject::connect(&early, &LTCModel::changed, [&] {
        seen += early.get().is_defined() ? QString::number(early.get().get_nfields()) : "none";
    });
    const auto say = [&](int field) {
        const int before = seen.size();
        station->send_report(
            QStringLiteral("<report><ltc_timecode><Timecode><Valid>%1</Valid>"
                           "<VideoStandard>1080_50i</VideoStandard>"
                           "<FieldNumber>%2</FieldNumber></Timecode></ltc_timecode></report>")
                .arg(field < 0 ? "false" : "true")
                .arg(field)
                .toUtf8());
        if (field >= 0)
            wait_until([&] { return seen.size() > before; });
    };
    station->control("ltc off");
    connect();
    say(-1); // is none, as before
    say(100);
    connect();
    LTCModel late(&spark); // finds the connection there
    support::be_answered(spark);
    say(102);
    EXPECT_EQ(seen, (QStringList{"100", "none", "102"}));
    EXPECT_EQ(late.get(), early.get());
    EXPECT_EQ(log.of(1).count("report_register ltc_input"), 1);
    EXPECT_EQ(log.of(2).count("report_register ltc_input"), 2);
}

TEST_F(SmallModels, latency_is_asked_for_once_on_each_connection)
{
    IOLatencyModel latency(&spark);
    int changes = 0;
    QObject::connect(&latency, &IOLatencyModel::changed, [&] { ++changes; });
    for (const quint64 client : {1, 2}) {
        connect();
        wait_until([&] { return spark.outstanding_commands() == 0 && latency.get_value() != 0; });
        EXPECT_EQ(log.of(client).count("get_io_latency"), 1);
        EXPECT_EQ(latency.get_value(), 4u);
        EXPECT_EQ(changes, 1);
    }
}

} // namespace
