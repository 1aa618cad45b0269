// What must hold on both transports whatever the stream looks like and whenever it ends: each message
// arrives once and whole, each command ends once.
#include <skuan/foundation/aprotect.h>
#include <skuan/protocol/kvrp3_api_qt.h>
#include <skuan/protocol/kvrp3_client.h>

#include <support/core_application.h>
#include <support/memory_client.h>
#include <support/scale.h>
#include <support/silent_server.h>
#include <support/station.h>
#include <support/touch_sockets.h>

#include <QThread>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <iostream>
#include <random>
#include <thread>

namespace {

using simulator::Faults;
using support::SilentServer;
using support::Station;

/// The messages that a transport has found in its stream, as text.
class Inbox
{
public:
    AFunction1<const XMLTree&> hook() { return AFunction1<const XMLTree&>::member<&Inbox::put>(this); }
    std::vector<std::string> take() { return std::exchange(*messages_.lock(), {}); }
    std::size_t size() const { return messages_.lock()->size(); }

private:
    void put(const XMLTree& message)
    {
        messages_.lock()->push_back(message.flatten(XMLTree::flatten_compact, true).to_string());
    }

    AProtect<std::vector<std::string>> messages_{std::vector<std::string>()};
};

/// The blocking client on its own thread.
class Blocking : public KVRP3::Client
{
public:
    static constexpr int longest_message = 32768;

    explicit Blocking(const QHostAddress& address) : Client(address.toIPv4Address())
    {
        set_receive_debug_hook(inbox.hook());
        run_forever_in_own_thread(0);
    }
    ~Blocking() override { stop(); }

    Inbox inbox;
    std::atomic<unsigned> losses{0};
    bool is_up() const { return isConnected(); }

protected:
    void disconnected() override { ++losses; }
};

/// The event-driven client, with commands from any thread and a connection that is made anew.
class EventDriven : public KVRP3::APIQt
{
public:
    static constexpr int longest_message = 65536;

    explicit EventDriven(const QHostAddress& address)
    {
        set_receive_debug_hook(inbox.hook());
        connect(this, &APIQt::connected, this, [this] { up_ = true; });
        connect(this, &APIQt::disconnected, this, [this] {
            up_ = false;
            ++losses;
            QTimer::singleShot(0, this, [this] { reconnect(); });
        });
        connect_to_server(address);
        support::keep_touching_sockets(*this);
    }

    Inbox inbox;
    std::atomic<unsigned> losses{0};
    bool is_up() const { return up_; }

protected:
    void send(const void* data, unsigned length) override
    {
        const QByteArray bytes(static_cast<const char*>(data), static_cast<int>(length));
        const auto write = [this, bytes] {
            APIQt::send(bytes.constData(), static_cast<unsigned>(bytes.size()));
        };
        if (QThread::currentThread() == thread())
            write();
        else
            QMetaObject::invokeMethod(this, write, Qt::QueuedConnection);
    }

private:
    std::atomic<bool> up_{false};
};

template <typename Transport>
class Transports : public support::CoreApplication
{
protected:
    /// Both ends know of the connection.
    static void wait_for(const Transport& transport, const Station& station)
    {
        wait_until([&] { return transport.is_up() && station->counters().connected == 1; });
    }
    /// Waits for so many messages, and a little for more than that.
    static std::vector<std::string> receive(Transport& transport, std::size_t count)
    {
        wait_until([&] { return transport.inbox.size() >= count || transport.losses != 0; });
        settle();
        return transport.inbox.take();
    }
};

using Both = testing::Types<Blocking, EventDriven>;
TYPED_TEST_SUITE(Transports, Both);

const std::vector<std::string> shapes = {
    "<reply><xid>1</xid><ok /></reply>",
    "<reply>\r\n<xid>2</xid>\r\n<error>\r\n<ErrorMessage>a &lt; b &amp; c</ErrorMessage>\r\n"
    "<ErrorCode>general</ErrorCode>\r\n</error>\r\n</reply>\r\n",
    "<reply><xid>3</xid><clipid><ClipID>Z\xc3\xbcrich \xe2\x82\xac "
    "\xf0\x9f\x8f\x86</ClipID></clipid></reply>",
    "\t<reply ><xid>none4</xid><computername><ComputerName></ComputerName></computername></ reply>\n",
    "<reply><xid>5</xid><version_info><SVNVersion>1</SVNVersion><SVNPath>/</SVNPath></version_info></"
    "reply>",
    "<report><clip_created><ClipID> \xc3\xa9 "
    "</ClipID><New><Newer>&quot;</Newer><Newer/></New></clip_created></report>",
    "< report "
    "><userdict_change><Key>k</Key><Value>&apos;&gt;\xe2\x82\xac</Value></userdict_change></report>",
    "<report><nobody_knows /></report>",
    "between messages <report><clip_deleted /></report>",
};

/// As the inbox has it.
std::string as_received(const std::string& message)
{
    const auto begin = message.find('<');
    return support::tree(message.substr(begin)).flatten(XMLTree::flatten_compact, true).to_string();
}

// A piece goes from cut to cut: it glues the rest of one message to the beginning of the next.
TYPED_TEST(Transports, find_each_message_wherever_it_is_cut_and_behind_every_other)
{
    // A piece takes some 10 ms where the system is stood in for.
    constexpr unsigned stride = support::stood_in_for ? 7 : 1;
    QByteArray cuts, pairs;
    std::vector<std::string> from_cuts, from_pairs;
    const auto add = [](const std::string& message, QByteArray& stream, std::vector<std::string>& expected) {
        stream += QByteArray::fromStdString(message);
        expected.push_back(as_received(message));
    };
    Faults faults{.split_pause = std::chrono::milliseconds(1)};
    for (const std::string& message : shapes) {
        for (std::size_t cut = 0; cut < message.size(); cut += stride) {
            if (cut != 0)
                faults.split_at.push_back(cuts.size() + static_cast<int>(cut));
            add(message, cuts, from_cuts);
        }
        for (const std::string& second : shapes) {
            add(message, pairs, from_pairs);
            add(second, pairs, from_pairs);
        }
    }
    Station station(faults);
    TypeParam transport(station.address());
    this->wait_for(transport, station);
    station->send_raw(cuts);
    EXPECT_EQ(this->receive(transport, from_cuts.size()), from_cuts);
    for (const Faults& pieces : {Faults{}, Faults{.split = stride}}) {
        station->set_faults(pieces);
        station->send_raw(pairs);
        EXPECT_EQ(this->receive(transport, from_pairs.size()), from_pairs);
    }
}

TYPED_TEST(Transports, take_the_longest_message_and_no_longer_one)
{
    const QByteArray begin = "<report><clip_created><ClipID>", end = "</ClipID></clip_created></report>";
    const QByteArray longest =
        begin + QByteArray(TypeParam::longest_message - begin.size() - end.size(), 'x') + end;
    Station station;
    TypeParam transport(station.address());
    this->wait_for(transport, station);
    station->send_raw(longest + longest);
    EXPECT_EQ(this->receive(transport, 2).size(), 2u);
    EXPECT_EQ(transport.losses, 0u);
    station->send_raw(longest + QByteArray(longest).insert(begin.size(), 'x') + longest);
    this->wait_until([&] { return transport.losses == 1; });
    EXPECT_EQ(transport.inbox.take().size(), 1u);
}

/// One command, which may be asked again: how often it has been answered and failed.
struct Ending
{
    std::atomic<unsigned> answers{0}, errors{0};
    std::atomic<int> own{0}, *waiting = &own; ///< may be counted together with others

    template <typename Transport>
    void ask(Transport& client)
    {
        ++*waiting;
        client.cmd_get_computer_name(AFunction1<AString>::member<&Ending::on_answer>(this),
                                     support::OnError::member<&Ending::on_error>(this));
    }

private:
    void on_answer(AString)
    {
        ++answers;
        --*waiting;
    }
    void on_error(AString, KVRP3::ErrorCode)
    {
        ++errors;
        --*waiting;
    }
};

// Whatever it does, the connection ends, the command with it, and the next connection works.
TYPED_TEST(Transports, lose_a_server_that_misbehaves_and_find_it_again)
{
    const QByteArray good = QByteArray::fromStdString(shapes[0]);
    const struct
    {
        Faults faults;
        QByteArray raw;
        std::size_t messages;
    } rows[] = {
        {{.refuse = true}, "", 0},
        {{.close_after_bytes = 30}, "", 0},
        {{.close_after_bytes = 30, .half_close = true}, "", 0},
        {{.mute = true}, QByteArray(10 << 20, '<'), 0},
        {{.mute = true}, good + "<report><a></b></report>" + good, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        Ending ending;
        Station station(row.faults);
        TypeParam transport(station.address());
        this->wait_until([&] { return transport.is_up() || transport.losses != 0; });
        ending.ask(transport);
        if (!row.raw.isEmpty()) {
            this->wait_until([&] { return station->counters().connected == 1; });
            station->send_raw(row.raw);
        }
        this->wait_until([&] { return transport.losses != 0 && ending.own == 0; });
        EXPECT_EQ(ending.errors, 1u);
        EXPECT_EQ(transport.inbox.take().size(), row.messages);

        station->set_faults({});
        this->wait_until([&] { // a connection from before may still be on its way down
            if (transport.is_up() && ending.own == 0 && ending.answers == 0)
                ending.ask(transport);
            return ending.answers == 1;
        });
    }
}

TYPED_TEST(Transports, can_be_destroyed_in_every_state)
{
    {
        SilentServer full(SilentServer::Full);
        const unsigned others = full.kept_waiting();
        const TypeParam connecting(full.address());
        this->wait_until([&] { return full.kept_waiting() > others; });
        EXPECT_FALSE(connecting.is_up());
    }
    // The flood ends for a Windows event loop, which may get to no timer before.
    for (const Faults& faults : {Faults{.mute = true}, Faults{.flood = true, .flood_count = 20000}}) {
        Ending ending;
        Station station(faults);
        TypeParam receiving(station.address());
        this->wait_until([&] { return receiving.is_up(); });
        ending.ask(receiving);
        this->wait_until([&] {
            return faults.flood ? station->counters().bytes_sent > 1000000
                                : station->counters().messages == 1;
        });
    }
}

TYPED_TEST(Transports, end_each_command_once_while_two_threads_send_and_the_server_drops_them)
{
    const int count = support::scaled_traffic(100000); // from each thread
    const unsigned seed = std::random_device()();
    std::cout << "seed " << seed << '\n';
    Station station(Faults{// some 10 connections in all
                           .gather = 8,
                           .shuffle = true,
                           .close_chance = 5.0 / count,
                           .seed = seed});
    TypeParam transport(station.address());

    std::vector<Ending> endings(static_cast<std::size_t>(2 * count));
    std::atomic<int> waiting[2]{}, working{2};
    const auto send = [&](int who) {
        std::minstd_rand random(seed + static_cast<unsigned>(who));
        for (int i = who; i < 2 * count; i += 2) {
            // Commands without a connection fail at once. A few of them are wanted, not thousands.
            if (random() % 100 != 0)
                while (!transport.is_up() || waiting[who] > 100)
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
            Ending& ending = endings[static_cast<std::size_t>(i)];
            ending.waiting = &waiting[who];
            ending.ask(transport);
        }
        --working;
    };
    std::thread first(send, 0), second(send, 1);
    this->wait_until([&] { return working == 0; });
    first.join();
    second.join();
    station->set_faults({});
    this->wait_until([&] { return transport.outstanding_commands() == 0; });

    unsigned answers = 0;
    for (std::size_t i = 0; i < endings.size(); ++i) {
        answers += endings[i].answers;
        EXPECT_EQ(endings[i].answers + endings[i].errors, 1u) << "command " << i;
    }
    EXPECT_GT(transport.losses, 0u);
    EXPECT_GT(answers, 0u);
}

} // namespace
