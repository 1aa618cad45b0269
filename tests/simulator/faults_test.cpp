// Every way in which the server can be told to misbehave, seen from a plain socket.
#include "plain_client.h"

#include <simulator/server_thread.h>

#include <QRegularExpression>

#include <set>

namespace {

using simulator::Faults;
using simulator::Server;
using std::chrono::milliseconds;

QByteArray name_commands(int from, int to)
{
    QByteArray commands;
    for (int i = from; i <= to; ++i)
        commands += name_command(QByteArray::number(i).constData());
    return commands;
}

QByteArray name_replies(int from, int to)
{
    QByteArray replies;
    for (int i = from; i <= to; ++i)
        replies += name_reply(QByteArray::number(i).constData());
    return replies;
}

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

class FaultsTest : public SimulatorTest
{
};

// What a client that sends ten commands has when the server has closed; the bytes are exact.
TEST_F(FaultsTest, ConnectionsEndWhereTheyAreToldTo)
{
    const auto with = [](auto change) {
        Faults faults;
        change(faults);
        return faults;
    };
    const int one = name_reply("1").size();
    const struct
    {
        const char* what;
        Faults faults;
        QByteArray expected;
    } rows[] = {
        {"refuse", with([](Faults& f) { f.refuse = true; }), ""},
        {"at once", with([](Faults& f) { f.close_after_bytes = 0; }), ""},
        {"inside the first tag", with([](Faults& f) { f.close_after_bytes = 3; }), name_reply("1").left(3)},
        {"on a reply's end", with([one](Faults& f) { f.close_after_bytes = one; }), name_reply("1")},
        {"inside the second", with([one](Faults& f) { f.close_after_bytes = one + 40; }),
         name_replies(1, 2).left(one + 40)},
        {"after three answers", with([](Faults& f) { f.close_after_answers = 3; }), name_replies(1, 3)},
        {"half-closed", with([](Faults& f) {
             f.close_after_answers = 2;
             f.half_close = true;
         }),
         name_replies(1, 2)},
        {"in segments", with([one](Faults& f) {
             f.close_after_bytes = one + 1;
             f.split = 5;
         }),
         name_replies(1, 2).left(one + 1)},
        {"lost ones do not count", with([](Faults& f) {
             f.close_after_answers = 2;
             f.drop_every = 2;
         }),
         name_reply("1") + name_reply("3")},
    };
    for (const auto& row : rows) {
        Server& server = start(row.faults);
        PlainClient client(server);
        client.send(name_commands(1, 9));
        EXPECT_EQ(client.read_all().toStdString(), row.expected.toStdString()) << row.what;
    }
}

TEST_F(FaultsTest, AHalfClosedServerGoesOnReading)
{
    Faults faults;
    faults.half_close = true;
    faults.close_after_answers = 1;
    Server& server = start(faults);
    // Qt's socket closes its own side when the other's end arrives, so that this client does not look.
    PlainClient client(server);
    client.send(name_command("1"));
    ASSERT_TRUE(wait_until([&] { return server.counters().answers == 1; }));
    client.send(name_command("2"));
    EXPECT_TRUE(wait_until([&] { return server.counters().messages == 2; }));
    EXPECT_EQ(client.read_all(), name_reply("1"));
}

TEST_F(FaultsTest, ASplitStreamIsTheSameStream)
{
    for (const unsigned length : {1u, 7u, 64u}) {
        Faults faults;
        faults.split = length;
        PlainClient client(start(faults));
        EXPECT_EQ(client.ask(name_commands(1, 20), 20), name_replies(1, 20)) << length;
    }
}

TEST_F(FaultsTest, ASegmentIsReadByItselfDuringAPause)
{
    Faults faults;
    faults.split_at = {3, 50, 51};
    faults.split_pause = std::chrono::hours(1);
    Server& server = start(faults);
    PlainClient client(server);
    client.send(name_command("1"));
    EXPECT_EQ(client.read_bytes(1), name_reply("1").left(3));
    faults.split_pause = milliseconds(0);
    server.set_faults(faults);
    EXPECT_EQ(client.read_replies(1), name_reply("1").mid(3));
}

TEST_F(FaultsTest, HeldAnswersLeaveWhenReleased)
{
    Faults faults;
    faults.hold = true;
    Server& server = start(faults);
    PlainClient client(server);
    client.send(name_commands(1, 3));
    ASSERT_TRUE(wait_until([&] { return server.counters().messages == 3; }));
    EXPECT_EQ(server.counters().answers, 0u);
    EXPECT_EQ(client.socket.bytesAvailable(), 0);
    server.set_faults({});
    EXPECT_EQ(client.read_replies(3), name_replies(1, 3));
}

TEST_F(FaultsTest, DelayedAnswersKeepTheirOrder)
{
    Faults faults;
    faults.delay = milliseconds(30);
    PlainClient client(start(faults));
    QElapsedTimer clock;
    clock.start();
    client.send(name_command("1"));
    EXPECT_EQ(client.ask(name_commands(2, 5), 5), name_replies(1, 5));
    EXPECT_GE(clock.elapsed(), 30);
}

TEST_F(FaultsTest, ShuffledAnswersAllArriveAndStreamsStayWhole)
{
    Faults faults;
    faults.shuffle = true;
    faults.gather = 20;
    faults.gather_wait = std::chrono::hours(1);
    faults.seed = 3;
    std::vector<std::vector<int>> runs;
    for (int run = 0; run < 2; ++run) {
        PlainClient client(start(faults));
        const QByteArray download = cmd("50", "<download_directory_names />");
        const auto order = xids(client.ask(name_commands(1, 19) + download, 19 + 6));
        ASSERT_EQ(order.size(), 25u);
        EXPECT_EQ(std::set<int>(order.begin(), order.end()).size(), 20u);
        EXPECT_FALSE(std::is_sorted(order.begin(), order.end()));
        const auto stream = std::find(order.begin(), order.end(), 50);
        EXPECT_EQ(std::count(stream, stream + 6, 50), 6);
        runs.push_back(order);
    }
    EXPECT_EQ(runs[0], runs[1]) << "the same seed gives the same order";
}

TEST_F(FaultsTest, FewerAnswersThanGatheredLeaveAfterAWhile)
{
    Faults faults;
    faults.gather = 100;
    PlainClient client(start(faults));
    EXPECT_EQ(client.ask(name_commands(1, 3), 3), name_replies(1, 3));
}

TEST_F(FaultsTest, AnswersAreLostOrNeverGiven)
{
    Faults faults;
    faults.drop_every = 3;
    Server& server = start(faults);
    PlainClient client(server);
    EXPECT_EQ(xids(client.ask(name_commands(1, 8), 6)), std::vector<int>({1, 2, 4, 5, 7, 8}));

    faults.drop_every = 0;
    faults.mute = true;
    server.set_faults(faults);
    client.send(name_command("9"));
    ASSERT_TRUE(wait_until([&] { return server.counters().messages == 9; }));
    server.set_faults({});
    EXPECT_EQ(client.ask(name_command("10")), name_reply("10"));
}

TEST_F(FaultsTest, JunkComesBetweenAnswers)
{
    Faults faults;
    faults.garbage_every = 2;
    faults.garbage_size = 100;
    PlainClient client(start(faults));
    client.send(name_commands(1, 2));
    const QByteArray bytes = client.read_bytes(name_replies(1, 2).size() + 100);
    EXPECT_TRUE(bytes.startsWith(name_reply("1") + '\xff'));
    EXPECT_TRUE(bytes.endsWith(name_reply("2")));
}

// Some answers are whole, then one is cut; where, depends on the seed alone.
TEST_F(FaultsTest, RandomCutsAreRepeatable)
{
    std::set<int> lengths;
    for (unsigned seed = 1; seed <= 5; ++seed) {
        Faults faults;
        faults.close_chance = 0.2;
        faults.seed = seed;
        QByteArray runs[2];
        for (QByteArray& run : runs) {
            PlainClient client(start(faults));
            client.send(name_commands(1, 200));
            run = client.read_all();
            EXPECT_TRUE(name_replies(1, 200).startsWith(run));
        }
        EXPECT_EQ(runs[0], runs[1]);
        lengths.insert(runs[0].size());
    }
    EXPECT_GT(lengths.size(), 1u);
}

TEST_F(FaultsTest, FloodsKeepTheirCountAndLetAnswersThrough)
{
    for (const unsigned rate : {0u, 5000u}) {
        Faults faults;
        faults.flood = true;
        faults.flood_rate = rate;
        faults.flood_count = rate == 0 ? 20000 : 200;
        faults.flood_report = "<report>\r\n<ltc/>\r\n</report>\r\n";
        faults.split = rate == 0 ? 0 : 11;
        PlainClient client(start(faults));
        const QByteArray all = client.read_until([&](const QByteArray& bytes) {
            return bytes.count("</report>\r\n") >= static_cast<int>(faults.flood_count);
        });
        EXPECT_EQ(all, faults.flood_report.repeated(static_cast<int>(faults.flood_count))) << rate;
        EXPECT_EQ(client.ask(name_command("1")), name_reply("1"));
    }
}

TEST_F(FaultsTest, AnEndlessFloodWaitsForItsClientAndForNobodyElse)
{
    Faults faults;
    faults.flood = true;
    Server& server = start();
    PlainClient deaf(server), other(server);
    deaf.socket.setReadBufferSize(1);
    server.set_client_faults(1, faults);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(other.ask(name_command("1")), name_reply("1"));
    EXPECT_EQ(server.counters().overrun, 0u);
    server.drop_client(1);
    EXPECT_TRUE(wait_until([&] { return server.counters().connected == 1; }));
}

TEST_F(FaultsTest, ATestSendsWhatItLikes)
{
    Server& server = start();
    PlainClient first(server), second(server);
    ASSERT_EQ(first.ask(name_command("1")), name_reply("1")); // both are accepted
    ASSERT_EQ(second.ask(name_command("1")), name_reply("1"));
    server.send_report("<report><ping/></report>");
    server.send_raw(2, "\x01<");
    EXPECT_EQ(first.read_bytes(26), "<report><ping/></report>\r\n");
    EXPECT_EQ(second.read_bytes(28), "<report><ping/></report>\r\n\x01<");
    server.drop_clients();
    EXPECT_TRUE(first.is_closed() && second.is_closed());
}

} // namespace
