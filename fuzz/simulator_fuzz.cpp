// What a hostile client may send to the simulated server: every byte of its answers is a reply or report
// that the library understands. After an odd first byte come the bytes of a connection; else they change
// commands that are good.
#include <changed_tree.h>
#include <generated_tests/command_samples.h>
#include <generated_tests/message_values.h>

#include <skuan/protocol/kvrp3_api_parser.h>

#include <simulator/message_reader_p.h>
#include <simulator/responder_p.h>

#include <memory>

namespace {

constexpr unsigned longest = 1024 * 1024; // message of a server that may store so little

XMLTree some_command(fuzz::Bytes& bytes)
{
    return fuzz::parsed(samples::command_texts[bytes.below(std::size(samples::command_texts))]);
}

QByteArray almost_commands(fuzz::Bytes& bytes)
{
    std::string all;
    for (int i = 0; i != 16 && !bytes.at_end(); ++i) {
        AList<XMLTree> parts;
        parts.push_back(XMLTree(AString::l1("xid"), AString::l1("1")));
        parts.push_back(some_command(bytes));
        const XMLTree command = fuzz::changed(XMLTree(AString::l1("cmd"), parts), bytes, some_command);
        all += command.flatten(XMLTree::flatten_compact).to_string();
    }
    return QByteArray::fromStdString(all);
}

/// Takes the server's bytes as a client does.
class Listener
{
public:
    Listener() : engine_(longest)
    {
        engine_.config_tag("reply");
        engine_.config_tag("report");
    }
    void hear(const QByteArray& bytes)
    {
        auto left = static_cast<unsigned>(bytes.size());
        for (const char* at = bytes.constData(); left != 0;) {
            const unsigned taken = engine_.input_bytes(left, at);
            at += taken;
            left -= taken;
            for (XMLTree tree = engine_.get_xml(); !tree.is_null(); tree = engine_.get_xml()) {
                parser_.parse(tree);
                fuzz::require(parser_.parse_ok() && parser_.log.seen.size() == 1);
                parser_.log.seen.clear();
            }
            fuzz::require(taken != 0 && !engine_.parse_error());
        }
    }

private:
    XMLParseEngine engine_;
    samples::Logging<KVRP3::APIParser> parser_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Bytes bytes(data, size);
    const bool raw = bytes.next() % 2 != 0;
    const QByteArray sent =
        raw ? QByteArray(reinterpret_cast<const char*>(data + 1), static_cast<int>(size - 1))
            : almost_commands(bytes);

    static const simulator::Settings settings = [] {
        simulator::Settings small;
        small.max_state = 64 * 1024;
        return small;
    }();
    simulator::Responder responder(settings);
    simulator::Budget backlog(settings.max_total_backlog);
    simulator::Session session(responder.budget(), backlog);
    session.overrun = [] {};
    static Listener listener; // holds nothing between two inputs, as answers are whole
    session.send = [](const QByteArray& report) { listener.hear(report); };
    responder.join(session);
    simulator::MessageReader reader(settings.max_message);
    reader.add(sent);
    simulator::Element message;
    for (;;) {
        const auto result = reader.next(message);
        if (result == simulator::MessageReader::Result::Broken)
            listener.hear(responder.refusal(reader.error_text()));
        if (result != simulator::MessageReader::Result::Message)
            break;
        listener.hear(responder.answer(std::move(message), session));
        responder.field(); // what it has begun goes on
    }
    responder.leave(session);
    return 0;
}
