// Every row of the catalogue in both directions: what goes out, what comes in, and what is refused and why.
#include <generated_tests/command_samples.h>
#include <generated_tests/message_samples.h>

#include <skuan/protocol/callback_guard_p.h>

#include <support/core_application.h>
#include <support/memory_client.h>
#include <support/station.h>

#include <QMetaMethod>
#include <QRegularExpression>

namespace {

using Calls = std::vector<std::string>;

using LoggingClient = samples::Logging<support::MemoryClient>;

constexpr auto l1 = AString::l1;

TEST(Catalogue, values_are_types_that_qt_knows_before_anything_is_made)
{
    const auto check = [](const QMetaObject& meta, const char* prefix) {
        for (int i = meta.methodOffset(); i != meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            for (const QByteArray& type : method.parameterTypes())
                EXPECT_TRUE(!method.name().startsWith(prefix) ||
                            QMetaType::isRegistered(QMetaType::type(type)))
                    << method.methodSignature().data();
        }
    };
    check(KVRP3::APIQt::staticMetaObject, "report_");
    samples::for_each_group([&]<typename Group>(auto&&...) { check(Group::staticMetaObject, "sig_"); });
}

bool is_report(const XMLTree& element)
{
    return samples::reports.count(element.get_tag().to_string()) != 0;
}

void put_in(LoggingClient& client, const std::string& xml)
{
    client.log.seen.clear();
    if (is_report(support::tree(xml)))
        client.inject("<report>" + xml + "</report>");
    else
        client.reply(l1("5"), xml);
}

TEST(Catalogue, messages_bring_their_values)
{
    LoggingClient client;
    for (const auto& [given, meant] : samples::understood) {
        put_in(client, given);
        EXPECT_EQ(client.log.seen, Calls{meant}) << given << client.parse_error_msg().to_string();
    }
    EXPECT_EQ(client.xid, l1("5"));
}

TEST(Catalogue, messages_with_a_fault_call_nothing_and_say_why)
{
    LoggingClient client;
    for (const auto& [given, error] : samples::refused) {
        put_in(client, given);
        EXPECT_EQ(client.log.seen, Calls()) << given;
        EXPECT_EQ(client.parse_error_msg().to_string(), error) << given;
        EXPECT_EQ(client.parse_xid(), is_report(support::tree(given)) ? AString() : l1("5")) << given;
    }
}

/// An APIQt whose socket is memory.
class QtClient : public KVRP3::APIQt
{
public:
    std::string bytes;

protected:
    void send(const void* data, unsigned length) override
    {
        bytes.append(static_cast<const char*>(data), length);
    }
};

/// The ways in which a command can be issued.
class Ways
{
public:
    template <int Number, typename Send, typename... A>
    void all(Send send, const char* xml, const A&... a)
    {
        const std::integral_constant<int, Number> number;
        const auto callbacks = samples::callbacks(number, log);
        const auto with_callbacks = [&](auto& to) {
            return std::apply([&](const auto&... callback) { return send(to, a..., callback...); },
                              callbacks);
        };
        const AString own = l1("mine");
        send(static_cast<KVRP3::APICommand&>(client), own, a...);
        client.expect(own, xml);
        AString xid = with_callbacks(client);
        client.expect(xid, xml);
        expect_answers(xid, samples::answers[Number]);
        xid = with_callbacks(client);
        client.take();
        expect_answers(xid, {"error"});
        send(client, a...);
        expect_command(client.take(), "none", xml);
        EXPECT_EQ(client.outstanding_commands(), 0u) << xml;

        KVRP3::APIQt& qt = memory; // one type of both, for the compiler's sake
        xid = with_callbacks(qt);
        expect_command(std::exchange(memory.bytes, {}), xid.to_string(), xml);
        EXPECT_TRUE(qt.forget_transaction(xid));
        send(qt, a...);
        expect_command(std::exchange(memory.bytes, {}), "none", xml);
        const auto group = samples::new_group(number);
        send(qt, a..., group);
        expect_command(std::exchange(memory.bytes, {}), "", xml);
        EXPECT_EQ(qt.outstanding_commands(), ++with_group);
        with_callbacks(live);
    }

    LoggingClient client;
    samples::Log log;
    QtClient memory;
    KVRP3::APIQt live; ///< to a server, if it is connected
    unsigned with_group = 0;

private:
    static void expect_command(const std::string& bytes, const std::string& xid, const char* xml)
    {
        const auto end = bytes.find("</xid>");
        ASSERT_NE(end, std::string::npos) << bytes;
        EXPECT_EQ(bytes.substr(0, 12 + xid.size()), support::crlf("<cmd>\n<xid>" + xid));
        EXPECT_EQ(bytes.substr(end), support::crlf("</xid>\n" + std::string(xml) + "\n</cmd>"));
    }
    /// Each reply reaches its own callback, and the last one ends the command.
    void expect_answers(const AString& xid, const std::vector<std::string>& names)
    {
        Calls expected;
        log.seen.clear();
        for (const std::string& name : names) {
            EXPECT_EQ(client.outstanding_commands(), 1u) << name;
            expected.push_back(samples::replies.at(name));
            client.reply(xid, expected.back());
        }
        EXPECT_EQ(log.seen, expected);
        EXPECT_EQ(client.outstanding_commands(), 0u);
    }
};

class CatalogueInUse : public support::CoreApplication
{
};

TEST_F(CatalogueInUse, commands_go_out_with_their_arguments_and_end_with_their_replies)
{
    const unsigned guards = KVRP3::CallbackGuard::living();
    {
        Ways ways;
        samples::call_all(ways);
        EXPECT_EQ(KVRP3::CallbackGuard::living(), guards + ways.with_group); // the groups are gone
    }
    EXPECT_EQ(KVRP3::CallbackGuard::living(), guards);
}

TEST_F(CatalogueInUse, a_server_understands_all_commands)
{
    Ways ways;
    support::Station station;
    KVRP3::APIQt& server = ways.live;
    server.connect_to_server(station.address());
    wait_until([&] { return server.is_connected(); });
    samples::call_all(ways);
    wait_until([&] { return server.outstanding_commands() == 0; });

    const QRegularExpression form(QStringLiteral(
        "<ErrorMessage>(\\w+ (cannot be &|holds \\d|stands more than|is missing in)|unknown|the message)"));
    EXPECT_FALSE(ways.log.seen.empty());
    for (const std::string& reply : ways.log.seen)
        EXPECT_FALSE(form.match(QString::fromStdString(reply)).hasMatch()) << reply;
}

// All records compare their fields by the same function, and by the list with which they are read and
// written.
TEST(Catalogue, records_differ_if_any_field_does)
{
    KVRP3::ChaseElement base;
    base.content_id.set_clipid(l1("a"));
    base.set_speed(1);
    void (*const changes[])(KVRP3::ChaseElement&) = {
        [](auto& v) { v.content_id.set_clipid(l1("b")); },
        [](auto& v) { v.content_id.has_clipid = false; },
        [](auto& v) { v.set_speed(2); },
        [](auto& v) { v.has_speed = false; },
        [](auto& v) { v.set_tc_start_trigger(0); },
    };
    for (const auto& change : changes) {
        KVRP3::ChaseElement other = base;
        change(other);
        EXPECT_TRUE(other != base && !(other == base)) << &change - changes;
    }
    KVRP3::ChaseElement same = base;
    same.angle = 7; // what is not there does not count
    EXPECT_TRUE(same == base && !(same != base));
}

TEST(Catalogue, enumerations_have_their_names_both_ways)
{
    const auto check = []<typename E>(const auto& names, AString (*to_string)(E),
                                      bool (*from_string)(const AString&, E*), bool (*valid)(int)) {
        const int count = static_cast<int>(names.size());
        for (int i = 0; i != count; ++i) {
            E value{};
            EXPECT_EQ(to_string(static_cast<E>(i)), l1(names[i]));
            EXPECT_TRUE(from_string(l1(names[i]), &value) && value == i) << names[i];
            EXPECT_TRUE(from_string(l1(names[i]), nullptr) && valid(i)) << names[i];
        }
        for (const int outside : {-1, count, 1 << 30}) {
            EXPECT_FALSE(valid(outside)) << names[0];
            EXPECT_EQ(to_string(static_cast<E>(outside)), AString()) << names[0];
        }
        E untouched = static_cast<E>(count - 1);
        for (const AString& unknown : {l1(""), l1(" "), l1("no such name"), l1(names[0]) + l1(" ")})
            EXPECT_FALSE(from_string(unknown, &untouched)) << names[0];
        EXPECT_EQ(untouched, count - 1);
    };
    samples::for_each_enumeration(check);
}

} // namespace
