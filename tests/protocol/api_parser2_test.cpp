// Messages out of a byte stream: cut and glued anywhere, broken for good, and reset from within.
#include <support/memory_client.h>

namespace {

using support::MemoryClient;

const char* const two_messages =
    "<report>\r\n<clip_created>\r\n<ClipID>M\xc3\xbcnchen</ClipID>\r\n</clip_created>\r\n"
    "</report><report><clip_deleted><ClipID>b</ClipID></clip_deleted></report>";

class StreamClient : public MemoryClient
{
public:
    std::string calls;
    bool reset_at_next = false;

    void input(const std::string& bytes) { input_stream(bytes.data(), static_cast<unsigned>(bytes.size())); }

protected:
    void report_clip_created(AString clip) override { called("+" + clip.to_string()); }
    void report_clip_deleted(AString clip) override { called("-" + clip.to_string()); }

private:
    void called(const std::string& call)
    {
        calls += call;
        if (std::exchange(reset_at_next, false))
            reset_stream();
    }
};

TEST(APIParser2, one_input_may_be_longer_than_the_buffer)
{
    StreamClient client;
    std::string flood;
    while (flood.size() < 100000)
        flood += "<report><clip_deleted><ClipID>x</ClipID></clip_deleted></report>";
    client.input(flood);
    EXPECT_FALSE(client.stream_broken());
    EXPECT_EQ(client.calls.size() / 2, flood.size() / 64);
}

TEST(APIParser2, bad_xml_breaks_the_stream_until_it_is_reset_and_a_bad_message_does_not)
{
    StreamClient client;
    client.input("<report><clip_created /></report>");
    EXPECT_FALSE(client.stream_broken());
    EXPECT_FALSE(client.parse_ok());

    client.input("<report><a></b></report>");
    EXPECT_TRUE(client.stream_broken());
    client.input(two_messages);
    EXPECT_EQ(client.calls, "");

    client.reset_stream();
    EXPECT_FALSE(client.stream_broken());
    client.input(two_messages);
    EXPECT_EQ(client.calls, "+M\xc3\xbcnchen-b");
}

TEST(APIParser2, a_reset_from_a_callback_ends_the_reading_of_this_input)
{
    StreamClient client;
    client.reset_at_next = true;
    client.input(two_messages);
    EXPECT_EQ(client.calls, "+M\xc3\xbcnchen");
    client.input("<report><clip_deleted><ClipID>c</ClipID></clip_deleted></report>");
    EXPECT_EQ(client.calls, "+M\xc3\xbcnchen-c");
    EXPECT_FALSE(client.stream_broken());
}

} // namespace
