// A full cue_clip, from its values to the bytes that go to the socket: ours, as a command builder does
// it, against building with the usual XML writers.
#include <skuan/markup/name_table.h>
#include <skuan/markup/xml_tree.h>

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QXmlStreamWriter>

#include <string>

#ifdef HAVE_PUGIXML
#include <pugixml.hpp>
#endif

namespace {

struct Argument
{
    const char* tag;
    const char* text;
};

constexpr Argument arguments[] = {
    {"Channel", "C"},         {"ClipID", "news_0042"}, {"Loop", "loopto"},    {"GotoPosition", "1500"},
    {"ClipPosition", "3000"}, {"Angle", "2"},          {"Playback", "field"}, {"Speed", "0.5"},
    {"ClipScope", "vclip"},   {"LoopIn", "1500"},      {"LoopOut", "2999"},   {"BlackOnCue", ""},
};

/// Where the bytes go in each case.
struct Wire
{
    std::string bytes;
    void put(const char* data, unsigned n) { bytes.append(data, n); }
};

void ours(benchmark::State& state)
{
    AString tags[std::size(arguments)];  // a command builder looks its tags up once
    AString texts[std::size(arguments)]; // and a program has its values as strings already
    for (std::size_t i = 0; i < std::size(arguments); ++i) {
        tags[i] = skuan::tag_name(arguments[i].tag);
        texts[i] = AString::l1(arguments[i].text);
    }
    const AString& cmd_tag = skuan::tag_name("cmd");
    const AString& xid_tag = skuan::tag_name("xid");
    const AString& cue_clip_tag = skuan::tag_name("cue_clip");
    Wire wire;
    for (auto _ : state) {
        wire.bytes.clear();
        AList<XMLTree> children;
        for (std::size_t i = 0; i < std::size(arguments); ++i)
            children.emplace_back(tags[i], texts[i]);
        XMLTree cmd(cmd_tag, XMLTree(xid_tag, 14u));
        cmd.add_subnode(XMLTree(cue_clip_tag, std::move(children)));
        cmd.send_utf8(AFunction2<const char*, unsigned>::member<&Wire::put>(&wire), XMLTree::flatten_lines,
                      true);
        benchmark::DoNotOptimize(wire.bytes);
    }
    state.SetLabel(std::to_string(wire.bytes.size()) + " bytes");
}
BENCHMARK(ours)->Name("write_cue_clip/ours");

#ifdef HAVE_PUGIXML
void pugi(benchmark::State& state)
{
    struct Writer : pugi::xml_writer
    {
        std::string bytes;
        void write(const void* data, std::size_t n) override
        {
            bytes.append(static_cast<const char*>(data), n);
        }
    };
    Writer writer;
    for (auto _ : state) {
        writer.bytes.clear();
        pugi::xml_document document;
        pugi::xml_node cmd = document.append_child("cmd");
        cmd.append_child("xid").text().set(14u);
        pugi::xml_node command = cmd.append_child("cue_clip");
        for (const Argument& argument : arguments) {
            pugi::xml_node child = command.append_child(argument.tag);
            if (*argument.text)
                child.text().set(argument.text);
        }
        cmd.print(writer, "", pugi::format_raw);
        benchmark::DoNotOptimize(writer.bytes);
    }
}
BENCHMARK(pugi)->Name("write_cue_clip/pugixml");
#endif

void qxmlstream(benchmark::State& state)
{
    QString tags[std::size(arguments)];
    QString texts[std::size(arguments)];
    for (std::size_t i = 0; i < std::size(arguments); ++i) {
        tags[i] = QString::fromLatin1(arguments[i].tag);
        texts[i] = QString::fromLatin1(arguments[i].text);
    }
    const QString cmd = QStringLiteral("cmd");
    const QString xid = QStringLiteral("xid");
    const QString cue_clip = QStringLiteral("cue_clip");
    for (auto _ : state) {
        QByteArray bytes;
        QXmlStreamWriter writer(&bytes);
        writer.writeStartElement(cmd);
        writer.writeTextElement(xid, QString::number(14));
        writer.writeStartElement(cue_clip);
        for (std::size_t i = 0; i < std::size(arguments); ++i) {
            if (texts[i].isEmpty())
                writer.writeEmptyElement(tags[i]);
            else
                writer.writeTextElement(tags[i], texts[i]);
        }
        writer.writeEndElement();
        writer.writeEndElement();
        benchmark::DoNotOptimize(bytes);
    }
}
BENCHMARK(qxmlstream)->Name("write_cue_clip/qxmlstreamwriter");

} // namespace
