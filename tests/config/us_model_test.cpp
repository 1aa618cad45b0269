// The user dictionary between clients: who hears of what, and what is said again on a new connection.
#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>
#include <skuan/session/spark.h>

#include <support/be_answered.h>
#include <support/command_log.h>
#include <support/core_application.h>
#include <support/on_threads.h>
#include <support/station.h>
#include <support/touch_sockets.h>

#include <gmock/gmock.h>

namespace {

using testing::UnorderedElementsAre;

class USModel : public support::CoreApplication
{
protected:
    support::CommandLog log;
    support::Station station{simulator::Settings{.pace = 0, .faults = {}}};
    Spark first{false}, second{false};

    USModel()
    {
        log.listen_to(station.operator->());
        support::keep_touching_sockets(first);
        support::keep_touching_sockets(second);
    }

    void connect(Spark& spark)
    {
        const std::uint64_t before = spark.generation();
        spark.set_server(station.address());
        wait_until([&] { return spark.generation() > before; });
    }
    static USItemModel* item(Spark& spark, const char* key) { return spark.us_model()->get_item(key); }
    /// What the server has been told on the present connection, but for what the session itself asks.
    QStringList told() const
    {
        QStringList told = log.of_the_last().filter("userdict");
        told.removeAll("userdict_watch cf.herbae.0.channel_count");
        return told;
    }
};

TEST_F(USModel, says_on_each_connection_what_it_has_written_and_what_it_reads)
{
    int told_early = 0;
    QObject::connect(item(first, "early"), &USItemModel::changed, [&] { ++told_early; });
    item(first, "early")->set("x", "gone");
    item(first, "early")->set("", "gone"); // empty, but written
    EXPECT_EQ(told_early, 0);              // of nothing that has not gone out
    USItemModel* const both = item(first, "both");
    both->set_read_write(true);
    both->set("b", "no own value");
    EXPECT_EQ(item(first, "read"), item(first, "read"));
    connect(first); // client 1
    support::be_answered(first);
    EXPECT_THAT(told(), UnorderedElementsAre("userdict_own early gone", "userdict_set early ",
                                             "userdict_set both b", "userdict_watch read"));
    USItemModel* const early = item(first, "early");
    for (const char* value : {"x", "x", "y"})
        early->set(value, "gone");
    item(first, "late")->set("l");
    support::be_answered(first);
    EXPECT_EQ(told().mid(4), (QStringList{"userdict_set early x", "userdict_set early y",
                                          "userdict_watch late", "userdict_set late l"}));
    station->drop_clients();
    wait_until([&] { return first.generation() == 2; });
    support::be_answered(first);
    EXPECT_THAT(told(),
                UnorderedElementsAre("userdict_own early gone", "userdict_set early y", "userdict_set both b",
                                     "userdict_watch read", "userdict_set late l"));
}

TEST_F(USModel, tells_readers_and_those_who_also_write_of_changes)
{
    connect(first);
    connect(second);
    QStringList heard;
    for (const char* key : {"read", "write", "both"})
        QObject::connect(item(first, key), &USItemModel::changed,
                         [&heard, key](const QString& value) { heard += key + ('=' + value); });
    item(first, "write")->set("mine");
    item(first, "both")->set_read_write(true);
    item(first, "both")->set("mine");
    support::be_answered(first);
    for (const char* key : {"read", "write", "both", "unasked"})
        item(second, key)->set("theirs");
    item(second, "read")->set("theirs"); // the same
    support::be_answered(second);
    support::be_answered(first);
    EXPECT_EQ(heard, (QStringList{"write=mine", "both=mine", "read=theirs", "both=theirs"}));
    EXPECT_EQ(item(first, "write")->get(), "mine");
    EXPECT_EQ(item(first, "unasked")->get(), "");
}

TEST_F(USModel, is_written_on_all_threads_while_the_connection_flaps)
{
    USItemModel* const key = item(first, "key");
    USItemModel* const reader = item(second, "key");
    connect(first);
    connect(second);
    std::atomic<bool> working{true};
    std::thread writers([&] {
        support::on_threads(4, [&](unsigned who) {
            for (int i = 0; i != 200; ++i) {
                key->set(QString("%1 %2").arg(who).arg(i));
                (void)key->get();
            }
            working = false;
        });
    });
    station->drop_clients();
    wait_until([&] { return !working; });
    writers.join();
    wait_until([&] { return reader->get() == key->get(); });
}

TEST_F(USModel, is_one_for_this_machine)
{
    ::USModel* const local = ::USModel::localhost();
    USItemModel* const early = ::USModel::get_item_localhost("k");
    {
        Spark here(true), too(true);
        EXPECT_EQ(here.us_model(), local);
        EXPECT_EQ(too.us_model(), local);
        EXPECT_EQ(item(too, "k"), early);
    }
    EXPECT_EQ(::USModel::localhost()->parent(), nullptr); // a new one
}

} // namespace
