// From a message to the one operation that belongs to it, and what is said when there is none.
#include <skuan/protocol/kvrp3_api_parser.h>

#include <support/memory_client.h>

namespace {

using KVRP3::ErrorCode;

/// Writes down each operation that is called.
class LoggingParser : public KVRP3::APIParser
{
public:
    std::vector<std::string> calls;

protected:
    void log(const char* operation, const AString& a = AString(), const AString& b = AString())
    {
        calls.push_back(std::string(operation) + " " + a.to_string() + " " + b.to_string());
    }
    void reply_ok(const AString& xid) override { log("ok", xid); }
    void reply_error(const AString& xid, AString message, ErrorCode code) override
    {
        log("error", xid, message + AString::l1("/") + ErrorCode_to_string(code));
    }
    void reply_computername(const AString& xid, AString name) override { log("computername", xid, name); }
    void reply_version_info(const AString&, AString version, AString path) override
    {
        log("version_info", version, path);
    }
    void report_userdict_change(AString key, AString value) override { log("userdict_change", key, value); }
};

TEST(APIParser, calls_the_operation_of_a_message)
{
    const std::pair<const char*, const char*> samples[] = {
        {"<reply><ok><whatever>1</whatever></ok><xid> 1 </xid></reply>", "ok  1  "},
        {"<reply><xid>5</xid><error><ErrorMessage>no such clip</ErrorMessage>"
         "<ErrorCode> clipnotfound\n</ErrorCode></error></reply>",
         "error 5 no such clip/clipnotfound"},
        {"<reply><xid>none7</xid><computername><New><x>1</x></New><ComputerName /></computername></reply>",
         "computername none7 "},
        {"<reply><xid>3</xid><version_info><SVNPath>p</SVNPath><SVNVersion>v</SVNVersion></version_info></"
         "reply>",
         "version_info v p"},
        {"<report><userdict_change><Key>k</Key><Value>v</Value></userdict_change></report>",
         "userdict_change k v"},
    };
    for (const auto& [message, call] : samples) {
        LoggingParser parser;
        parser.parse(XMLTree()); // a good message wipes out the failure before it
        EXPECT_FALSE(parser.parse_ok());
        parser.parse(support::tree(message));
        EXPECT_EQ(parser.calls, std::vector<std::string>{call}) << message;
        EXPECT_TRUE(parser.parse_ok()) << message;
    }
}

TEST(APIParser, says_what_is_wrong_with_a_message_and_calls_nothing)
{
    const struct
    {
        const char *message, *xid, *error;
    } samples[] = {
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
        {"<report><userdict_change><Value>%1</Value></userdict_change></report>", "",
         "Tag 'Key' not found within 'userdict_change'"},
    };
    for (const auto& sample : samples) {
        LoggingParser parser;
        parser.parse(support::tree(sample.message));
        EXPECT_TRUE(parser.calls.empty()) << sample.message;
        EXPECT_FALSE(parser.parse_ok()) << sample.message;
        EXPECT_EQ(parser.parse_xid().to_string(), sample.xid) << sample.message;
        EXPECT_EQ(parser.parse_error_msg().to_string(), sample.error) << sample.message;
    }
}

TEST(APIParser, the_hook_sees_messages_before_any_check)
{
    std::vector<std::string> seen;
    auto hook = [&seen](const XMLTree& message) { seen.push_back(message.get_tag().to_string()); };
    LoggingParser parser;
    parser.set_receive_debug_hook(AFunction1<const XMLTree&>::ref(hook));
    parser.parse(support::tree("<reply><xid>1</xid><ok /></reply>"));
    parser.parse(support::tree("<junk />"));
    EXPECT_EQ(seen, (std::vector<std::string>{"reply", "junk"}));
}

} // namespace
