// The fast path by itself, with its thread kept back while reports pile up; and in a session, under far more
// than a hundred times the load of twelve channels.
#include <skuan/foundation/semaphore.h>
#include <skuan/markup/xml_parse.h>
#include <skuan/monitors/spark_timecode.h>
#include <skuan/session/spark.h>

#include <support/be_answered.h>
#include <support/core_application.h>
#include <support/possessions.h>
#include <support/scale.h>
#include <support/station.h>
#include <support/touch_sockets.h>

#include <iostream>
#include <map>
#include <random>
#include <utility>

namespace {

QByteArray timecode(const char* tag, int field)
{
    return QByteArray("<") + tag + "><Valid>true</Valid><FieldNumber>" + QByteArray::number(field) +
           "</FieldNumber></" + tag + ">";
}
/// The position says which report it is.
QByteArray channel_report(const QByteArray& channel, int position)
{
    return "<report><channel_timecode><Channel>" + channel + "</Channel><ClipPosition>" +
           QByteArray::number(position) + "</ClipPosition>" + timecode("DisplayTimecode", position + 1) +
           timecode("InputTimecode", position + 2) + "</channel_timecode></report>";
}
QByteArray ltc_report(int field)
{
    return "<report><ltc_timecode>" + timecode("Timecode", field) + "</ltc_timecode></report>";
}
XMLTree tree(const QByteArray& text)
{
    return XMLParse(AString(text.constData()), nullptr);
}

using Values = std::vector<std::pair<unsigned, unsigned>>; // channels and positions, as they come

class FastPath : public support::CoreApplication
{
protected:
    SparkTimecode path;
    std::atomic<int> signals{0}, ltc_signals{0};

    FastPath()
    {
        QObject::connect(&path, &SparkTimecode::timecode_available, [this] { ++signals; });
        QObject::connect(&path, &SparkTimecode::ltc_available, [this] { ++ltc_signals; });
    }
    /// Nothing of what `add` adds is decoded before it returns, and then all of it is.
    template <typename Add>
    void pile_up(Add add)
    {
        BinarySemaphore go_on(false);
        QMetaObject::invokeMethod(
            &path, [&] { go_on.semTake(); }, Qt::QueuedConnection);
        add();
        path.work_off();
        go_on.semGive();
        QMetaObject::invokeMethod(
            &path, [] {}, Qt::BlockingQueuedConnection);
    }
    Values take(std::uint64_t generation)
    {
        Values values;
        for (SparkTimecode::ChannelTimecode value; path.take_timecode(generation, &value);) {
            EXPECT_EQ(value.display.position, int(value.clip_position) + 1);
            EXPECT_EQ(value.input.position, int(value.clip_position) + 2);
            values.emplace_back(value.channel, value.clip_position);
        }
        return values;
    }
};

TEST_F(FastPath, keeps_the_newest_of_each_channel_and_its_turn)
{
    const unsigned seed = std::random_device{}();
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    struct Newest
    {
        std::uint64_t generation = 0;
        int position = 0;
    };
    std::map<unsigned, Newest> newest; // of channel 12: LTC
    std::vector<unsigned> turns;       // each channel once
    std::uint64_t generation = 1;
    int position = 0, expected_signals = 0, expected_ltc_signals = 0;
    for (int round = 0; round != 12 + support::scaled(50); ++round) {
        const bool channel_waited = !turns.empty(), ltc_waited = newest.count(12) != 0;
        pile_up([&] {
            const unsigned most[] = {3, 30, SparkTimecode::most_work, 4 * SparkTimecode::most_work};
            for (unsigned count = most[round % 4] - random() % (most[round % 4] / 2); count != 0; --count) {
                generation += random() % 10'000 == 0;
                // Long lots end with one channel alone, when the others have nothing new any more.
                const unsigned channel = round % 4 == 3 && count < 6000 ? round % 13 : random() % 13;
                const QByteArray name(1, char('A' + channel));
                path.add(generation,
                         tree(channel == 12 ? ltc_report(++position) : channel_report(name, ++position)));
                newest[channel] = {generation, position};
                if (channel != 12 && std::find(turns.begin(), turns.end(), channel) == turns.end())
                    turns.push_back(channel);
            }
        });
        // Once, however many; and not again before somebody has looked.
        expected_signals += !channel_waited && !turns.empty();
        expected_ltc_signals += !ltc_waited && newest.count(12) != 0;
        ASSERT_EQ(signals, expected_signals) << round;
        ASSERT_EQ(ltc_signals, expected_ltc_signals) << round;
        if (round % 4 != 3 && random() % 2 == 0)
            continue;
        generation += random() % 4 == 0;
        Values expected;
        for (const unsigned channel : turns)
            if (newest[channel].generation == generation)
                expected.emplace_back(channel, newest[channel].position);
        ASSERT_EQ(take(generation), expected) << round;
        KVRP3::Timecode ltc;
        const bool has_ltc = newest.count(12) != 0 && newest[12].generation == generation;
        ASSERT_EQ(path.take_ltc(generation, &ltc), has_ltc) << round;
        ASSERT_EQ(ltc.position, has_ltc ? newest[12].position : 0) << round;
        newest.clear();
        turns.clear();
    }
}

TEST_F(FastPath, leaves_out_what_it_cannot_read)
{
    pile_up([this] {
        const QByteArray good = channel_report("B", 7);
        for (const QByteArray& bad :
             {channel_report("M", 1), channel_report("A", 1).replace("<ClipPosition>1</ClipPosition>", ""),
              channel_report("A", -1), channel_report("A", 1).replace("</report>", "<a></a></report>"),
              channel_report("A", 1).replace("report>", "reply>"), QByteArray("<report></report>"),
              channel_report("A", 1).replace("channel_timecode", "channel_clipid"),
              channel_report("A", 1).replace("<Valid>true</Valid>", ""), ltc_report(1).replace("true", "x")})
            path.add(1, tree(bad));
        path.add(1, XMLTree());
        path.add(1, tree(good));
    });
    EXPECT_EQ(take(1), (Values{{KVRP3::Channel_B, 7}}));
    EXPECT_EQ(ltc_signals, 0);
}

TEST_F(FastPath, needs_no_more_memory_however_much_waits)
{
    const XMLTree first = tree(channel_report("A", 1)), last = tree(channel_report("A", 2));
    const auto grown = [&](int count, auto report) {
        long bytes = support::Possessions::now().heap;
        pile_up([&] {
            for (int i = 0; i != count; ++i)
                path.add(1, report(i));
            path.add(1, last);
            bytes = support::Possessions::now().heap - bytes;
        });
        return bytes;
    };
    EXPECT_LT(grown(support::scaled(2'000'000), [&](int) { return first; }), 1'000'000);
    EXPECT_EQ(take(1), (Values{{KVRP3::Channel_A, 2}}));
    // Each of another channel, of which there cannot be so many.
    EXPECT_LT(
        grown(support::scaled(100'000), [](int i) { return tree(channel_report(QByteArray::number(i), 1)); }),
        20'000'000); // 4096 of them at most
}

/// Sees what its session gets, where the session's monitors do.
class WatchedSpark : public Spark
{
public:
    static constexpr int of_a_connection = 10'000'000; ///< positions

    WatchedSpark() : Spark(false) {}

    std::map<unsigned, unsigned> positions;
    unsigned values = 0, turns = 0;
    bool forwards = true, of_this_connection = true, one_to_a_turn = true;

protected:
    void do_report_channel_timecode(KVRP3::Channel channel, KVRP3::ClipPosition position,
                                    KVRP3::DisplayTimecode, KVRP3::InputTimecode) override
    {
        of_this_connection = of_this_connection && position / of_a_connection == generation();
        forwards = forwards && position > std::exchange(positions[channel], position);
        // What comes next was asked for before this one was told, so it may come ahead of `turn`.
        one_to_a_turn = one_to_a_turn && values++ - turns <= 1;
        const auto turn = [this] { ++turns; };
        QMetaObject::invokeMethod(this, turn, Qt::QueuedConnection);
    }
};

using FastPathOfASession = support::CoreApplication;

TEST_F(FastPathOfASession, holds_under_a_hundred_times_the_load)
{
    const support::Station station;
    WatchedSpark spark;
    int ltc = 0;
    QObject::connect(&spark, &Spark::report_ltc_timecode,
                     [&](const KVRP3::Timecode& now) { ltc = now.position; });
    const int fields = 300 + support::scaled_traffic(6000);
    support::keep_touching_sockets(spark);
    spark.set_server(station.address());
    for (int connection = 1; connection <= 3; ++connection) {
        wait_until([&] {
            return spark.generation() == std::uint64_t(connection) && station->counters().connected == 1;
        });
        const int begin = connection * WatchedSpark::of_a_connection;
        QByteArray stream = "\r\n";
        for (int field = 1; field <= fields; ++field) {
            for (char channel = 'A'; channel <= 'L'; ++channel)
                stream += channel_report(QByteArray(1, channel), begin + field) + "\r\n";
            stream += ltc_report(begin + field);
        }
        station->send_raw(stream);
        if (connection < 3) { // in the midst of it
            wait_until([&] { return spark.positions.size() == 12 && spark.positions[11] > unsigned(begin); });
            station->drop_clients();
            continue;
        }
        support::be_answered(spark);
        wait_until([&] {
            return ltc == begin + fields &&
                   std::all_of(spark.positions.begin(), spark.positions.end(), [&](const auto& channel) {
                       return channel.second == unsigned(begin + fields);
                   });
        });
    }
    EXPECT_TRUE(spark.forwards && spark.of_this_connection && spark.one_to_a_turn)
        << spark.forwards << spark.of_this_connection << spark.one_to_a_turn;
}

} // namespace
