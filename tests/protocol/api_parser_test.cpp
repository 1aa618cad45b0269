// From a stream of bytes to messages, from a message to its operation, and what is said when there is none.
#include <generated_tests/message_values.h>

#include <support/memory_client.h>

namespace {

using Calls = std::vector<std::string>;

const std::string created = "<clip_created><ClipID>M\xc3\xbcnchen</ClipID></clip_created>";
const std::string deleted = "<clip_deleted><ClipID>b</ClipID></clip_deleted>";
const std::string two_messages = "<report>\r\n" + created + "\r\n</report><report>" + deleted + "</report>";

struct LoggingClient : samples::Logging<support::MemoryClient>
{
    const Calls& calls = log.seen;
    bool reset_at_next = false;

    void input(const std::string& bytes) { input_stream(bytes.data(), static_cast<unsigned>(bytes.size())); }

protected:
    void report_clip_created(AString clip) override
    {
        Logging::report_clip_created(clip);
        if (std::exchange(reset_at_next, false))
            reset_stream();
    }
};

TEST(APIParser, says_what_is_wrong_with_a_message_calls_nothing_and_goes_on)
{
    // Messages, their xids, and what is wrong with them.
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"<cmd><xid>1</xid><ok /></cmd>", "", "XML Message is not a <reply> or <report> message"},
        {"<reply><ok /></reply>", "", "Tag 'xid' not found within 'reply'"},
        {"<reply><xid>1</xid><ok /><xid>1</xid></reply>", "", "More than one tag 'xid' found within 'reply'"},
        {"<reply><xid>1</xid><ok /><clipid><ClipID>a</ClipID></clipid></reply>", "1",
         "XML Message contains multiple commands"},
        {"<reply><xid>1</xid><ok /><ok /></reply>", "1", "XML Message contains multiple commands"},
        {"<reply><xid>1</xid></reply>", "1", "XML Message contains no commands"},
        {"<reply><xid>1</xid><clip_created><ClipID>a</ClipID></clip_created></reply>", "1",
         "XML Message contains no commands"},
        {"<report><ok /></report>", "", "XML Message contains no commands"},
    };
    for (const auto& [message, xid, error] : rows) {
        LoggingClient client;
        client.inject(message);
        EXPECT_TRUE(client.calls.empty()) << message;
        EXPECT_FALSE(client.parse_ok()) << message;
        EXPECT_EQ(client.parse_xid().to_string(), xid) << message;
        EXPECT_EQ(client.parse_error_msg().to_string(), error) << message;
        client.inject("<reply><ok><whatever>1</whatever></ok><xid> 1 </xid></reply>");
        EXPECT_TRUE(client.parse_ok()) << message;
        EXPECT_EQ(client.calls, Calls{"<ok />"}) << message;
        EXPECT_EQ(client.xid, AString(" 1 ")) << message;
    }
}

TEST(APIParser2, one_input_may_be_longer_than_the_buffer)
{
    LoggingClient client;
    const auto one = QByteArray::fromStdString("<report>" + deleted + "</report>");
    client.input(one.repeated(2000).toStdString());
    EXPECT_FALSE(client.stream_broken());
    EXPECT_EQ(client.calls, Calls(2000, deleted));
}

TEST(APIParser2, bad_xml_breaks_the_stream_until_it_is_reset_and_a_bad_message_does_not)
{
    LoggingClient client;
    client.input("<report><clip_created /></report>");
    EXPECT_FALSE(client.stream_broken());
    EXPECT_FALSE(client.parse_ok());

    client.input("<report><a></b></report>");
    EXPECT_TRUE(client.stream_broken());
    client.input(two_messages);
    EXPECT_EQ(client.calls, Calls());

    client.reset_stream();
    client.reset_at_next = true; // ends the reading of this input
    client.input(two_messages);
    EXPECT_EQ(client.calls, Calls{created});
    client.input(two_messages);
    EXPECT_EQ(client.calls, (Calls{created, created, deleted}));
    EXPECT_FALSE(client.stream_broken());
}

} // namespace
