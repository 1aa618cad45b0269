// Replies and reports that are almost right: either nothing is called and a reason given, or one operation
// is called, perhaps a callback of a command that waits, and the values that it brings bring themselves
// once more.
#include <changed_tree.h>
#include <generated_tests/message_samples.h>

#include <skuan/protocol/kvrp3_api.h>

namespace {

AString l1(const char* text)
{
    return AString::l1(text);
}

XMLTree some_element(fuzz::Bytes& bytes)
{
    return fuzz::parsed(samples::understood[bytes.below(std::size(samples::understood))].first);
}

/// Commands that end with `ok`, with a stream and `ok`, and with a value wait for their answers.
struct Client : samples::Logging<KVRP3::API>
{
    samples::Log called; ///< by callbacks
    std::vector<AString> xids;

    Client()
    {
        ask<1>([this](auto... to) { return cmd_sync(to...); });
        ask<2>([this](auto... to) { return cmd_download_clipids(to...); });
        ask<15>([this](auto... to) { return cmd_download_melts(to...); });
        ask<6>([this](auto... to) { return cmd_get_computer_name(to...); });
    }
    void send(const void*, unsigned) override {}

private:
    template <int Group, typename Command>
    void ask(Command command)
    {
        xids.push_back(std::apply(command, samples::callbacks(std::integral_constant<int, Group>(), called)));
    }
};

std::vector<std::string> values(Client& client, const XMLTree& message)
{
    client.parse(message);
    const auto& seen = client.log.seen;
    fuzz::require(client.parse_ok() == client.parse_error_msg().empty());
    fuzz::require(seen.size() == (client.parse_ok() ? 1 : 0));
    fuzz::require(client.called.seen.empty() || client.called.seen == seen);
    return seen;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Bytes bytes(data, size);
    Client client, another;
    const XMLTree good = some_element(bytes);
    const bool is_report = samples::reports.count(good.get_tag().to_string()) != 0;
    AList<XMLTree> parts;
    if (!is_report) {
        const unsigned which = bytes.next();
        parts.push_back(XMLTree(l1("xid"), which < client.xids.size() ? client.xids[which] : bytes.text()));
    }
    parts.push_back(good);
    const XMLTree message = XMLTree(l1(is_report ? "report" : "reply"), parts);
    const auto seen = values(client, fuzz::changed(message, bytes, some_element));
    if (!seen.empty()) {
        const bool reported = samples::reports.count(fuzz::parsed(seen[0]).get_tag().to_string()) != 0;
        const std::string again =
            reported ? "<report>" + seen[0] + "</report>" : "<reply><xid>1</xid>" + seen[0] + "</reply>";
        fuzz::require(values(another, fuzz::parsed(again)) == seen);
    }
    return 0;
}
