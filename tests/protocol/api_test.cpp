// Commands out, answers in, and everything that can come between.
#include <support/memory_client.h>
#include <support/on_threads.h>

#include <QByteArray>

#include <algorithm>
#include <functional>

namespace {

using support::MemoryClient;
using support::Recorder;
using Calls = std::vector<std::string>;

constexpr auto l1 = AString::l1;

TEST(API, a_command_ends_with_its_reply)
{
    MemoryClient client;
    Recorder r;
    AString xid = client.cmd_get_version_info({}, r.error()); // one callback is enough to wait
    EXPECT_EQ(client.outstanding_commands(), 1u);
    client.reply(xid, "<version_info><SVNVersion>1</SVNVersion><SVNPath>p</SVNPath></version_info>");
    client.reply(xid, "<error><ErrorMessage>late</ErrorMessage><ErrorCode>general</ErrorCode></error>");
    EXPECT_EQ(client.outstanding_commands(), 0u);
    xid = client.cmd_get_computer_name(r.text(), r.error());
    client.reply(xid, "<ok />"); // not what was asked for: it ends the command all the same
    EXPECT_EQ(client.outstanding_commands(), 0u);
    EXPECT_EQ(r.calls, Calls());

    xid = client.cmd_download_clipids(r.ok(), r.text(), r.error());
    client.reply(xid, "<clipid><ClipID>a</ClipID></clipid>");
    client.reply(xid, "<listid><ListID>not asked for</ListID></listid>");
    client.reply(xid, "<clipid><ClipID>b</ClipID></clipid>");
    EXPECT_EQ(client.outstanding_commands(), 1u);
    client.reply(xid, "<ok />");
    client.reply(xid, "<clipid><ClipID>late</ClipID></clipid>");
    EXPECT_EQ(r.calls, (Calls{"a", "b", "ok"}));
    EXPECT_EQ(client.outstanding_commands(), 0u);
}

TEST(API, a_reply_that_cannot_be_read_leaves_the_command_waiting_until_it_is_forgotten)
{
    MemoryClient client;
    Recorder r;
    const AString xid = client.cmd_get_computer_name(r.text(), r.error());
    client.reply(xid, "<computername />");
    EXPECT_EQ(client.parse_error_msg(), l1("Tag 'ComputerName' not found within 'computername'"));
    EXPECT_EQ(client.parse_xid(), xid);
    EXPECT_EQ(client.outstanding_commands(), 1u);
    EXPECT_TRUE(client.forget_transaction(xid));
    EXPECT_FALSE(client.forget_transaction(xid));
    client.reply(xid, "<computername><ComputerName>late</ComputerName></computername>");
    EXPECT_EQ(r.calls, Calls());
}

TEST(API, all_commands_fail_in_the_text_order_of_their_xids)
{
    struct Entry
    {
        Calls* order;
        AString xid = AString();
        void failed(AString, KVRP3::ErrorCode) { order->push_back(xid.to_string()); }
    };
    MemoryClient client;
    Calls order;
    std::vector<Entry> entries(120, Entry{&order}); // enough for xids of different lengths
    for (Entry& entry : entries)
        entry.xid = client.cmd_sync({}, support::OnError::member<&Entry::failed>(&entry));
    client.fail_all_pending_commands();
    client.fail_all_pending_commands();
    EXPECT_EQ(order.size(), entries.size());
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_EQ(client.outstanding_commands(), 0u);
}

TEST(API, a_callback_may_send_again_on_the_dead_transport)
{
    MemoryClient client;
    client.dead = true;
    int failures = 0;
    std::function<void()> issue;
    auto failed = [&](AString, KVRP3::ErrorCode) {
        if (++failures < 5)
            issue();
    };
    issue = [&] { client.cmd_sync({}, support::OnError::ref(failed)); };
    issue(); // fails before it returns
    EXPECT_EQ(failures, 5);
    EXPECT_EQ(client.outstanding_commands(), 0u);
}

TEST(API, a_callback_that_finds_the_connection_lost_is_not_followed_by_its_own_error)
{
    MemoryClient client;
    Recorder r;
    auto ok = [&] {
        r.calls.push_back("ok");
        EXPECT_EQ(client.outstanding_commands(), 1u); // its own command counts until it returns
        client.fail_all_pending_commands();
    };
    const AString xid = client.cmd_sync(AFunction::ref(ok), r.error());
    client.reply(xid, "<ok />");
    EXPECT_EQ(r.calls, Calls{"ok"});
    EXPECT_EQ(client.outstanding_commands(), 0u);
}

TEST(API, the_sink_gets_chunks_of_at_most_1500_bytes)
{
    for (const unsigned length : {10u, 1400u, 1500u, 4000u, 9001u}) {
        MemoryClient client;
        const std::string text(length, 'x');
        client.cmd_debug_label(AString::from_string(text));
        EXPECT_LE(client.chunks.back().size(), 1500u);
        for (std::size_t i = 0; i + 1 < client.chunks.size(); ++i)
            EXPECT_EQ(client.chunks[i].size(), 1500u);
        EXPECT_NE(client.take().find("<DebugString>" + text + "</DebugString>"), std::string::npos);
    }
}

TEST(API, messages_of_two_threads_follow_one_another_whole)
{
    constexpr int per_thread = 500;
    MemoryClient client;
    support::on_threads(2, [&client](unsigned thread) {
        const AString label = AString::from_string(std::string(2000, "ab"[thread]));
        Recorder r;
        for (int i = 0; i < per_thread; ++i) {
            const AString xid = client.cmd_debug_label(label, r.ok(), r.error());
            EXPECT_TRUE(client.forget_transaction(xid));
        }
    });
    EXPECT_EQ(client.outstanding_commands(), 0u);

    const QByteArray all = QByteArray::fromStdString(client.take());
    for (const char c : {'a', 'b'})
        EXPECT_EQ(all.count("<DebugString>" + QByteArray(2000, c) + "</DebugString>"), per_thread);
}

} // namespace
