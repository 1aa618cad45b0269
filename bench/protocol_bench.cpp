// What the protocol adds to the markup, from the bytes of a message to typed values and from a call to
// bytes; and what the same costs when a program writes it by hand with Qt.
#include "messages.h"

#include <skuan/markup/name_table.h>
#include <skuan/markup/xml_parse.h>
#include <skuan/protocol/kvrp3_api.h>

#include <benchmark/benchmark.h>

#include <QString>
#include <QVector>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <string>

namespace {

using Iterations = benchmark::IterationCount;

class Client : public KVRP3::API
{
public:
    void take(const std::string& bytes) { input_stream(bytes.data(), static_cast<unsigned>(bytes.size())); }
    void on_clip(KVRP3::ClipInfo clip)
    {
        ++calls;
        benchmark::DoNotOptimize(clip.clip_length);
    }
    void on_ok() { ++calls; }

    unsigned long bytes = 0;
    Iterations calls = 0;

protected:
    void send(const void*, unsigned length) override { bytes += length; }
    void report_channel_timecode(KVRP3::Channel, unsigned position, KVRP3::Timecode, KVRP3::Timecode) override
    {
        ++calls;
        benchmark::DoNotOptimize(position);
    }
};

void parse_alone(XMLParseEngine& engine, const std::string& bytes)
{
    const char* at = bytes.data();
    for (auto left = static_cast<unsigned>(bytes.size()); left != 0;) {
        const unsigned taken = engine.input_bytes(left, at);
        at += taken;
        left -= taken;
        for (XMLTree tree = engine.get_xml(); !tree.is_null(); tree = engine.get_xml())
            benchmark::DoNotOptimize(tree);
    }
}

void parse_alone(benchmark::State& state, const std::string& bytes)
{
    XMLParseEngine engine(32768);
    engine.config_tag("reply");
    engine.config_tag("report");
    for (auto _ : state)
        parse_alone(engine, bytes);
}

// The hand-written side: each value by its name into the field of a struct.

struct QtTimecode
{
    bool valid = false;
    QString standard, drop;
    int position = 0;
};

QtTimecode qt_timecode(QXmlStreamReader& reader)
{
    QtTimecode value;
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("Valid"))
            value.valid = reader.readElementText() == QLatin1String("true");
        else if (reader.name() == QLatin1String("VideoStandard"))
            value.standard = reader.readElementText();
        else if (reader.name() == QLatin1String("FieldNumber"))
            value.position = reader.readElementText().toInt();
        else if (reader.name() == QLatin1String("DropFrameFlag"))
            value.drop = reader.readElementText();
        else
            reader.skipCurrentElement();
    }
    return value;
}

struct QtReport
{
    QString channel;
    unsigned position = 0;
    QtTimecode display, input;
};

void timecode_ours(benchmark::State& state)
{
    Client client;
    for (auto _ : state)
        client.take(timecode_report);
    if (client.calls != state.iterations())
        state.SkipWithError("a report was lost");
}
BENCHMARK(timecode_ours)->Name("Timecode/ours");
BENCHMARK_CAPTURE(parse_alone, timecode, timecode_report)->Name("Timecode/parse alone");

void timecode_with_qt(benchmark::State& state)
{
    const QByteArray bytes = QByteArray::fromStdString(timecode_report);
    for (auto _ : state) {
        QXmlStreamReader reader(bytes);
        QtReport report;
        reader.readNextStartElement();
        reader.readNextStartElement();
        while (reader.readNextStartElement()) {
            if (reader.name() == QLatin1String("Channel"))
                report.channel = reader.readElementText();
            else if (reader.name() == QLatin1String("ClipPosition"))
                report.position = reader.readElementText().toUInt();
            else if (reader.name() == QLatin1String("DisplayTimecode"))
                report.display = qt_timecode(reader);
            else if (reader.name() == QLatin1String("InputTimecode"))
                report.input = qt_timecode(reader);
            else
                reader.skipCurrentElement();
        }
        benchmark::DoNotOptimize(report);
        if (report.input.position != 1800000)
            state.SkipWithError("the report was misread");
    }
}
BENCHMARK(timecode_with_qt)->Name("Timecode/QXmlStreamReader");

/// Many replies at a time, as each needs a command that waits for it. They are made anew each time on both
/// sides, so that neither reads from a warmer memory.
constexpr int clips = 100;

template <typename NextXid>
std::string clipinfo_replies(NextXid next_xid)
{
    std::string replies;
    for (int i = 0; i != clips; ++i)
        replies += clipinfo_reply(next_xid());
    return replies;
}

void clipinfo_ours(benchmark::State& state)
{
    Client client;
    const auto on_clip = AFunction1<KVRP3::ClipInfo>::member<&Client::on_clip>(&client);
    for (auto _ : state) {
        state.PauseTiming();
        const std::string replies = clipinfo_replies(
            [&] { return client.cmd_get_clip_info(AString::l1("a"), on_clip, {}).to_string(); });
        state.ResumeTiming();
        client.take(replies);
    }
    if (client.calls != state.iterations() * clips)
        state.SkipWithError("a reply was lost");
}
BENCHMARK(clipinfo_ours)->Name("Clipinfo/ours");

void clipinfo_parsed_alone(benchmark::State& state)
{
    XMLParseEngine engine(32768);
    engine.config_tag("reply");
    engine.config_tag("report");
    for (auto _ : state) {
        state.PauseTiming();
        const std::string replies = clipinfo_replies([] { return std::string("1234567"); });
        state.ResumeTiming();
        parse_alone(engine, replies);
    }
}
BENCHMARK(clipinfo_parsed_alone)->Name("Clipinfo/parse alone");

const AString clip_id = AString::l1("news_0042"), xid = AString::l1("1234567");

void cue_clip_ours(benchmark::State& state)
{
    Client client;
    KVRP3::APICommand& sender = client;
    for (auto _ : state)
        sender.cmd_cue_clip(xid, KVRP3::Channel_C, clip_id, true, KVRP3::Loop_loopto, true, 1500, true, 3000,
                            true, 2, true, KVRP3::Playback_field, true, 32768, true, KVRP3::ClipScope_vclip,
                            true, 1500, true, 2999, true, true);
    benchmark::DoNotOptimize(client.bytes);
}
BENCHMARK(cue_clip_ours)->Name("CueClip/ours");

void cue_clip_by_hand(benchmark::State& state)
{
    const auto tag = [](const char* name) { return skuan::tag_name(name); };
    const AString cmd = tag("cmd"), xid_tag = tag("xid"), cue_clip = tag("cue_clip"),
                  channel = tag("Channel"), clip = tag("ClipID"), loop = tag("Loop"),
                  go = tag("GotoPosition"), position = tag("ClipPosition"), angle = tag("Angle"),
                  playback = tag("Playback"), speed = tag("Speed"), scope = tag("ClipScope"),
                  loop_in = tag("LoopIn"), loop_out = tag("LoopOut"), black = tag("BlackOnCue");
    const AString c = AString::l1("C"), loopto = AString::l1("loopto"), field = AString::l1("field"),
                  half = AString::l1("0.5"), vclip = AString::l1("vclip");
    unsigned long bytes = 0;
    auto sink = [&bytes](const char*, unsigned n) { bytes += n; };
    for (auto _ : state) {
        AList<XMLTree> arguments;
        arguments.push_back(XMLTree(channel, c));
        arguments.push_back(XMLTree(clip, clip_id));
        arguments.push_back(XMLTree(loop, loopto));
        arguments.push_back(XMLTree(go, 1500u));
        arguments.push_back(XMLTree(position, 3000u));
        arguments.push_back(XMLTree(angle, 2u));
        arguments.push_back(XMLTree(playback, field));
        arguments.push_back(XMLTree(speed, half));
        arguments.push_back(XMLTree(scope, vclip));
        arguments.push_back(XMLTree(loop_in, 1500u));
        arguments.push_back(XMLTree(loop_out, 2999u));
        arguments.push_back(XMLTree(black));
        AList<XMLTree> parts;
        parts.push_back(XMLTree(xid_tag, xid));
        parts.push_back(XMLTree(cue_clip, std::move(arguments)));
        const XMLTree message(cmd, std::move(parts));
        message.send_utf8(AFunction2<const char*, unsigned>::ref(sink), XMLTree::flatten_lines, true);
    }
    benchmark::DoNotOptimize(bytes);
}
BENCHMARK(cue_clip_by_hand)->Name("CueClip/by hand");

struct QtCueClip
{
    QString xid = "1234567", channel = "C", clip = "news_0042", loop = "loopto", playback = "field",
            scope = "vclip";
    unsigned go = 1500, position = 3000, angle = 2, loop_in = 1500, loop_out = 2999;
    double speed = 0.5;
    bool black = true;
};

void cue_clip_with_qt(benchmark::State& state)
{
    const QtCueClip cue;
    QByteArray bytes;
    for (auto _ : state) {
        bytes.clear();
        QXmlStreamWriter writer(&bytes);
        writer.writeStartElement("cmd");
        writer.writeTextElement("xid", cue.xid);
        writer.writeStartElement("cue_clip");
        writer.writeTextElement("Channel", cue.channel);
        writer.writeTextElement("ClipID", cue.clip);
        writer.writeTextElement("Loop", cue.loop);
        writer.writeTextElement("GotoPosition", QString::number(cue.go));
        writer.writeTextElement("ClipPosition", QString::number(cue.position));
        writer.writeTextElement("Angle", QString::number(cue.angle));
        writer.writeTextElement("Playback", cue.playback);
        writer.writeTextElement("Speed", QString::number(cue.speed));
        writer.writeTextElement("ClipScope", cue.scope);
        writer.writeTextElement("LoopIn", QString::number(cue.loop_in));
        writer.writeTextElement("LoopOut", QString::number(cue.loop_out));
        if (cue.black)
            writer.writeEmptyElement("BlackOnCue");
        writer.writeEndElement();
        writer.writeEndElement();
        benchmark::DoNotOptimize(bytes);
    }
}
BENCHMARK(cue_clip_with_qt)->Name("CueClip/QXmlStreamWriter");

/// A command with callbacks and its answer, with `depth` others outstanding.
void command_and_reply(benchmark::State& state)
{
    Client client;
    const AFunction ok = AFunction::member<&Client::on_ok>(&client);
    for (int i = 1; i < state.range(0); ++i)
        client.cmd_sync(ok, {});
    const AString &reply = skuan::tag_name("reply"), &xid_tag = skuan::tag_name("xid"),
                  &ok_tag = skuan::tag_name("ok");
    for (auto _ : state) {
        const AString command_xid = client.cmd_sync(ok, {});
        AList<XMLTree> parts;
        parts.push_back(XMLTree(xid_tag, command_xid));
        parts.push_back(XMLTree(ok_tag));
        client.parse(XMLTree(reply, std::move(parts)));
    }
    if (client.calls != state.iterations())
        state.SkipWithError("a reply was lost");
}
BENCHMARK(command_and_reply)->Name("Outstanding/ours")->Arg(1)->Arg(1000);

} // namespace
