// Every way in which the server can be told to misbehave, seen from a plain socket.
#include "plain_client.h"

#include <QRegularExpression>

#include <set>

namespace {

using simulator::Faults;
using std::chrono::milliseconds;
using support::Station;

// The xids of whole replies, in the order of their arrival.
std::vector<int> xids(const QByteArray& bytes)
{
    std::vector<int> found;
    static const QRegularExpression xid(QStringLiteral("<xid>(\\d+)</xid>"));
    auto matches = xid.globalMatch(QString::fromUtf8(bytes));
    while (matches.hasNext())
        found.push_back(matches.next().captured(1).toInt());
    return found;
}

using FaultsTest = SimulatorTest;

// What a client that sends nine commands has when the server has closed; the bytes are exact.
TEST_F(FaultsTest, ConnectionsEndWhereTheyAreToldTo)
{
    const int one = name_replies(1, 1).size();
    const std::pair<Faults, QByteArray> rows[] = {
        {Faults{.refuse = true}, ""},
        {Faults{.close_after_bytes = 0}, ""},
        {Faults{.close_after_bytes = 3}, name_replies(1, 1).left(3)},
        {Faults{.close_after_bytes = one}, name_replies(1, 1)},
        {Faults{.close_after_bytes = one + 40}, name_replies(1, 2).left(one + 40)},
        {Faults{.split = 5, .close_after_bytes = one + 1}, name_replies(1, 2).left(one + 1)},
        {Faults{.close_after_answers = 3}, name_replies(1, 3)},
        {Faults{.close_after_answers = 2, .half_close = true}, name_replies(1, 2)},
        {Faults{.drop_every = 2, .close_after_answers = 2}, name_replies(1, 1) + name_replies(3, 3)},
    };
    for (const auto& [faults, expected] : rows) {
        const Station station(faults);
        PlainClient client(station);
        client.send(names(1, 9));
        EXPECT_EQ(client.read_all().toStdString(), expected.toStdString());
    }
}

TEST_F(FaultsTest, AHalfClosedServerGoesOnReading)
{
    const Station station(Faults{.close_after_answers = 1, .half_close = true});
    PlainClient client(station);
    client.send(names(1, 1));
    ASSERT_TRUE(wait_until([&] { return station->counters().answers == 1; }));
    client.send(names(2, 2)); // and does not look: Qt's socket would close its own side at the other's end
    EXPECT_TRUE(wait_until([&] { return station->counters().messages == 2; }));
    EXPECT_EQ(client.read_all(), name_replies(1, 1));
}

TEST_F(FaultsTest, WhatOnlyTakesTimeChangesNoByte)
{
    for (const Faults& faults : {Faults{.split = 1}, Faults{.split = 7}, Faults{.split = 64},
                                 Faults{.delay = milliseconds(1)}, Faults{.gather = 100}}) {
        const Station station(faults);
        EXPECT_EQ(PlainClient(station).ask(names(1, 20), 20), name_replies(1, 20));
    }
}

TEST_F(FaultsTest, ASegmentIsReadByItselfDuringAPause)
{
    const Station station(Faults{.split_at = {3, 50, 51}, .split_pause = std::chrono::hours(1)});
    PlainClient client(station);
    client.send(names(1, 1));
    EXPECT_EQ(client.read_bytes(1), name_replies(1, 1).left(3));
    station->set_faults(Faults{.split_at = {3, 50, 51}});
    EXPECT_EQ(client.read_replies(1), name_replies(1, 1).mid(3));
}

TEST_F(FaultsTest, AnswersAreHeldLostOrNeverGiven)
{
    const Station station(Faults{.hold = true});
    PlainClient client(station);
    client.send(names(1, 3));
    ASSERT_TRUE(wait_until([&] { return station->counters().messages == 3; }));
    EXPECT_EQ(station->counters().answers, 0u);
    station->set_faults({.drop_every = 3}); // loses the sixth; the third was given before
    EXPECT_EQ(client.read_replies(3), name_replies(1, 3));
    EXPECT_EQ(xids(client.ask(names(4, 8), 4)), std::vector<int>({4, 5, 7, 8}));
    station->set_faults({.mute = true});
    client.send(names(9, 9));
    ASSERT_TRUE(wait_until([&] { return station->counters().messages == 9; }));
    station->set_faults({});
    EXPECT_EQ(client.ask(names(10, 10)), name_replies(10, 10));
}

TEST_F(FaultsTest, ShuffledAnswersAllArriveAndStreamsStayWhole)
{
    const Faults faults{.gather = 20, .gather_wait = std::chrono::hours(1), .shuffle = true, .seed = 3};
    std::vector<std::vector<int>> runs;
    for (int run = 0; run < 2; ++run) {
        const Station station(faults);
        const QByteArray download = cmd("50", "<download_directory_names />");
        const auto order = xids(PlainClient(station).ask(names(1, 19) + download, 19 + 6));
        ASSERT_EQ(order.size(), 25u);
        EXPECT_EQ(std::set<int>(order.begin(), order.end()).size(), 20u);
        EXPECT_FALSE(std::is_sorted(order.begin(), order.end()));
        const auto stream = std::find(order.begin(), order.end(), 50);
        EXPECT_EQ(std::count(stream, stream + 6, 50), 6);
        runs.push_back(order);
    }
    EXPECT_EQ(runs[0], runs[1]) << "the same seed gives the same order";
}

TEST_F(FaultsTest, JunkComesBetweenAnswers)
{
    const Station station(Faults{.garbage_every = 2, .garbage_size = 100});
    PlainClient client(station);
    client.send(names(1, 2));
    const QByteArray bytes = client.read_bytes(name_replies(1, 2).size() + 100);
    EXPECT_TRUE(bytes.startsWith(name_replies(1, 1) + '\xff'));
    EXPECT_TRUE(bytes.endsWith(name_replies(2, 2)));
}

TEST_F(FaultsTest, FloodsKeepTheirCountAndLetAnswersThrough)
{
    const QByteArray report = "<report>\r\n<ltc/>\r\n</report>\r\n";
    for (const unsigned rate : {0u, 5000u}) {
        const Faults faults{
            .flood = true, .flood_rate = rate, .flood_count = 500, .flood_report = report, .split = 11};
        const Station station(faults);
        PlainClient client(station);
        const QByteArray all = report.repeated(static_cast<int>(faults.flood_count));
        EXPECT_EQ(client.read_bytes(all.size()), all);
        EXPECT_EQ(client.ask(names(1, 1)), name_replies(1, 1));
    }
}

TEST_F(FaultsTest, AnEndlessFloodWaitsForItsClientAndForNobodyElse)
{
    const Station station;
    PlainClient deaf(station), other(station);
    deaf.socket.setReadBufferSize(1);
    station->set_client_faults(1, {.flood = true});
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(other.ask(names(1, 1)), name_replies(1, 1));
    EXPECT_EQ(station->counters().overrun, 0u);
    station->drop_client(1);
    EXPECT_TRUE(wait_until([&] { return station->counters().connected == 1; }));
}

} // namespace
