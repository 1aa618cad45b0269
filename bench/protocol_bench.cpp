// What the protocol adds to the markup: from bytes to a typed call against parsing alone, and from a
// command to bytes against building and writing the same tree by hand.
#include <skuan/markup/name_table.h>
#include <skuan/markup/xml_parse.h>
#include <skuan/protocol/kvrp3_api.h>

#include <benchmark/benchmark.h>

#include <string>

namespace {

const std::string report =
    "<report>\r\n<userdict_change>\r\n<Key>GRE_3_status</Key>\r\n"
    "<Value>writing:d:\\export\\news_0042.mxf</Value>\r\n</userdict_change>\r\n</report>";

class Client : public KVRP3::API
{
public:
    using API::input_stream;

    unsigned long bytes = 0;
    benchmark::IterationCount reports = 0;

protected:
    void send(const void*, unsigned length) override { bytes += length; }
    void report_userdict_change(AString, AString) override { ++reports; }
};

void report_from_bytes(benchmark::State& state)
{
    Client client;
    for (auto _ : state)
        client.input_stream(report.data(), static_cast<unsigned>(report.size()));
    if (client.reports != state.iterations())
        state.SkipWithError("a report was lost");
}
BENCHMARK(report_from_bytes)->Name("Report/ours");

void report_parsed_alone(benchmark::State& state)
{
    XMLParseEngine engine(32768);
    engine.config_tag("reply");
    engine.config_tag("report");
    for (auto _ : state) {
        engine.input_bytes(static_cast<unsigned>(report.size()), report.data());
        benchmark::DoNotOptimize(engine.get_xml());
        benchmark::DoNotOptimize(engine.get_xml());
    }
}
BENCHMARK(report_parsed_alone)->Name("Report/parse alone");

void write_command(benchmark::State& state)
{
    Client client;
    KVRP3::APICommand& sender = client;
    const AString xid = AString::l1("1234567"), database = AString::l1("vantor.lodra"),
                  prefix = AString::l1("news_0042/");
    for (auto _ : state)
        sender.cmd_watch_metadata_database(xid, database, prefix);
}
BENCHMARK(write_command)->Name("Command/ours");

void write_command_by_hand(benchmark::State& state)
{
    const AString &cmd = skuan::tag_name("cmd"), &xid_tag = skuan::tag_name("xid"),
                  &watch = skuan::tag_name("watch_metadata_database"),
                  &database_tag = skuan::tag_name("MetadataDatabase"),
                  &prefix_tag = skuan::tag_name("MetadataPrefix");
    const AString xid = AString::l1("1234567"), database = AString::l1("vantor.lodra"),
                  prefix = AString::l1("news_0042/");
    std::string out;
    auto sink = [&out](const char* bytes, unsigned n) { out.append(bytes, n); };
    for (auto _ : state) {
        AList<XMLTree> arguments;
        arguments.push_back(XMLTree(database_tag, database));
        arguments.push_back(XMLTree(prefix_tag, prefix));
        AList<XMLTree> parts;
        parts.push_back(XMLTree(xid_tag, xid));
        parts.push_back(XMLTree(watch, std::move(arguments)));
        const XMLTree message(cmd, std::move(parts));
        out.clear();
        message.send_utf8(AFunction2<const char*, unsigned>::ref(sink), XMLTree::flatten_lines, true);
    }
}
BENCHMARK(write_command_by_hand)->Name("Command/by hand");

/// A command with callbacks and its answer, with `depth` others outstanding.
void command_and_reply(benchmark::State& state)
{
    Client client;
    struct Count
    {
        benchmark::IterationCount ok = 0;
        void on_ok() { ++ok; }
    } count;
    const AFunction ok = AFunction::member<&Count::on_ok>(&count);
    for (int i = 1; i < state.range(0); ++i)
        client.cmd_sync(ok, {});
    const AString &reply = skuan::tag_name("reply"), &xid_tag = skuan::tag_name("xid"),
                  &ok_tag = skuan::tag_name("ok");
    for (auto _ : state) {
        const AString xid = client.cmd_sync(ok, {});
        AList<XMLTree> parts;
        parts.push_back(XMLTree(xid_tag, xid));
        parts.push_back(XMLTree(ok_tag));
        client.parse(XMLTree(reply, std::move(parts)));
    }
    if (count.ok != state.iterations())
        state.SkipWithError("a reply was lost");
}
BENCHMARK(command_and_reply)->Name("Outstanding/ours")->Arg(1)->Arg(1000);

} // namespace
