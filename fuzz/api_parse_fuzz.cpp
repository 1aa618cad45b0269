// Replies and reports that are almost right: either nothing is called and a reason given, or one operation
// is called, and the values that it brings bring themselves once more.
#include <changed_tree.h>
#include <generated_tests/message_samples.h>

#include <skuan/protocol/kvrp3_api_parser.h>

namespace {

using Parser = samples::Logging<KVRP3::APIParser>;

AString l1(const char* text)
{
    return AString::l1(text);
}

XMLTree some_element(fuzz::Bytes& bytes)
{
    return fuzz::parsed(samples::understood[bytes.below(std::size(samples::understood))].first);
}

std::vector<std::string> values(const XMLTree& message)
{
    Parser parser;
    parser.parse(message);
    fuzz::require(parser.parse_ok() == parser.parse_error_msg().empty());
    fuzz::require(parser.log.seen.size() == (parser.parse_ok() ? 1 : 0));
    return parser.log.seen;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Bytes bytes(data, size);
    const XMLTree good = some_element(bytes);
    const bool is_report = samples::reports.count(good.get_tag().to_string()) != 0;
    AList<XMLTree> parts;
    if (!is_report)
        parts.push_back(XMLTree(l1("xid"), bytes.text()));
    parts.push_back(good);
    const XMLTree message = XMLTree(l1(is_report ? "report" : "reply"), parts);
    const auto seen = values(fuzz::changed(message, bytes, some_element));
    if (!seen.empty()) {
        const bool reported = samples::reports.count(fuzz::parsed(seen[0]).get_tag().to_string()) != 0;
        const std::string again =
            reported ? "<report>" + seen[0] + "</report>" : "<reply><xid>1</xid>" + seen[0] + "</reply>";
        fuzz::require(values(fuzz::parsed(again)) == seen);
    }
    return 0;
}
