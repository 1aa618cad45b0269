// Signals of callback groups and of reports, and the ends that a group and its commands can come to.
#include <generated_tests/message_samples.h>
#include <skuan/protocol/callback_guard_p.h>
#include <skuan/protocol/kvrp3_api_qt.h>

#include <support/blocked_thread.h>
#include <support/core_application.h>
#include <support/memory_client.h>
#include <support/station.h>

#include <QPointer>

#include <functional>

namespace {

using samples::replies;
using Calls = std::vector<std::string>;

constexpr auto l1 = AString::l1;

class CallbackGroups : public support::CoreApplication
{
protected:
    CallbackGroups()
    {
        client->set_send_debug_hook(AFunction1<const XMLTree&>::member<&CallbackGroups::sent>(this));
        client->connect_to_server(station.address());
        wait_until([&] { return client->is_connected() && station->counters().connected == 1; });
    }
    /// No test may leave a guard behind.
    ~CallbackGroups() override
    {
        client.reset();
        EXPECT_EQ(KVRP3::CallbackGuard::living(), guards_before);
    }

    unsigned guards() const { return KVRP3::CallbackGuard::living() - guards_before; }
    void reply(const AString& to, const std::string& body)
    {
        station->send_raw(
            QByteArray::fromStdString("<reply><xid>" + to.to_string() + "</xid>" + body + "</reply>"));
    }
    /// The same, and waits until it has been dealt with.
    void reply_to_end(const AString& to, const std::string& body)
    {
        const unsigned outstanding = client->outstanding_commands();
        reply(to, body);
        wait_until([&] { return client->outstanding_commands() == outstanding - 1; });
    }

    const unsigned guards_before = KVRP3::CallbackGuard::living();
    support::Station station{simulator::Faults{.mute = true}};
    std::unique_ptr<KVRP3::APIQt> client{new KVRP3::APIQt};
    AString xid; ///< of the last command

private:
    void sent(const XMLTree& message) { xid = message.get_subnode(l1("xid")).get_content(); }
};

TEST_F(CallbackGroups, of_every_kind_give_their_replies_as_signals)
{
    const auto check = [this]<typename Group>(const Calls& answers,
                                              void (*issue)(KVRP3::APIQt&, const Group&)) {
        Group group;
        samples::Log log;
        samples::watch(group, log);
        Calls expected;
        issue(*client, group);
        for (const std::string& name : answers)
            reply(xid, expected.emplace_back(replies.at(name)));
        issue(*client, group);
        reply(xid, expected.emplace_back(replies.at("error")));
        wait_until([&] { return client->outstanding_commands() == 0; });
        settle();
        EXPECT_EQ(log.seen, expected);
    };
    samples::for_each_group(check);
}

TEST_F(CallbackGroups, are_not_needed_for_the_signals_of_reports)
{
    samples::Log log;
    samples::watch(*client, log);
    Calls expected;
    for (const auto& [name, report] : samples::reports) {
        station->send_raw(QByteArray::fromStdString("<report>" + report + "</report>"));
        expected.push_back(report);
    }
    wait_until([&] { return log.seen.size() == expected.size(); });
    EXPECT_EQ(log.seen, expected);
}

TEST_F(CallbackGroups, may_go_before_the_replies_to_their_commands)
{
    AString xids[3];
    {
        const KVRP3::CallbackGroup_set1 group;
        for (AString& each : xids) {
            client->cmd_sync(group);
            each = xid;
        }
        reply_to_end(xids[1], replies.at("ok"));
    }
    reply_to_end(xids[2], replies.at("error"));
    EXPECT_EQ(guards(), 1u); // for the one that is in flight
    reply_to_end(xids[0], replies.at("ok"));
    EXPECT_EQ(guards(), 0u);
}

TEST_F(CallbackGroups, may_go_in_the_midst_of_a_stream)
{
    using Group = KVRP3::CallbackGroup_set2;
    std::thread other;
    const std::function<void(Group*)> ends[] = {
        [](Group* group) { delete group; }, [](Group* group) { group->deleteLater(); },
        [&other](Group* group) { other = std::thread([group] { delete group; }); }, // once the slot has ended
    };
    for (const auto& end : ends) {
        QPointer<Group> group = new Group;
        int items = 0;
        QObject::connect(group, &Group::sig_clipid, [&] {
            if (++items == 1)
                end(group);
        });
        client->cmd_download_clipids(*group);
        reply(xid, replies.at("clipid"));
        wait_until([&] { return group.isNull(); });
        reply(xid, replies.at("clipid"));
        EXPECT_EQ(guards(), 1u);
        reply_to_end(xid, replies.at("ok"));
        EXPECT_EQ(items, 1);
        EXPECT_EQ(guards(), 0u);
    }
    other.join();
}

TEST_F(CallbackGroups, wait_for_a_slot_before_they_go)
{
    auto* const group = new KVRP3::CallbackGroup_set1;
    std::unique_ptr<support::BlockedThread> other;
    QObject::connect(group, &KVRP3::CallbackGroup_set1::sig_ok, [&] {
        other = std::make_unique<support::BlockedThread>([group] { delete group; });
        other->wait_until_blocked();
        EXPECT_FALSE(other->ended());
    });
    client->cmd_sync(*group);
    reply_to_end(xid, replies.at("ok"));
    other->join();
}

TEST_F(CallbackGroups, may_go_on_any_thread_at_any_time)
{
    for (int i = 0; i != 40; ++i) {
        std::atomic<int> oks{0};
        auto* const group = new KVRP3::CallbackGroup_set1;
        QObject::connect(group, &KVRP3::CallbackGroup_set1::sig_ok, [&oks] { ++oks; });
        client->cmd_sync(*group);
        std::thread other([&] {
            for (int pause = i * 5; pause != 0; --pause) // from long before the reply to long after it
                std::this_thread::yield();
            delete group;
        });
        reply_to_end(xid, replies.at("ok"));
        other.join();
        EXPECT_LE(oks, 1);
        EXPECT_EQ(guards(), 0u);
    }
}

TEST_F(CallbackGroups, are_let_go_by_commands_that_nobody_answers)
{
    {
        const KVRP3::CallbackGroup_set6 group;
        client->cmd_get_computer_name(group);
    }
    EXPECT_TRUE(client->forget_transaction(xid));
    EXPECT_EQ(guards(), 0u);

    samples::Log log;
    {
        const KVRP3::CallbackGroup_set6 group;
        samples::watch(group, log);
        client->cmd_get_computer_name(group);
        reply_to_end(xid, replies.at("ok")); // not an answer to this, and the end of it
        settle();
        EXPECT_EQ(log.seen, Calls());

        client->cmd_get_computer_name(group);
        client->disconnect_from_server();
        client->cmd_get_computer_name(group);
        settle();
        EXPECT_EQ(log.seen.size(), 2u);
    }
    EXPECT_EQ(guards(), 0u);

    const KVRP3::CallbackGroup_set6 group;
    client->cmd_get_computer_name(group);
    client.reset();
    EXPECT_EQ(guards(), 1u); // the group's own
}

} // namespace
