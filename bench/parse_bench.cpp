// Bytes of one message to a tree: ours, as a transport does it, against the usual XML readers.
#include "corpora.h"

#include <skuan/markup/xml_parse.h>

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QString>
#include <QXmlStreamReader>

#include <memory>
#include <string>
#include <vector>

#ifdef HAVE_PUGIXML
#include <pugixml.hpp>
#endif
#ifdef HAVE_EXPAT
#include <expat.h>
#endif
#ifdef HAVE_QTXML
#include <QDomDocument>
#endif

namespace {

/// The plainest tree with owned strings, for readers that build none.
template <typename Text>
struct Node
{
    Text tag;
    Text content;
    std::vector<Node> children;
};

void ours(benchmark::State& state, const std::string& message)
{
    XMLParseEngine engine(65536);
    engine.config_tag("reply");
    engine.config_tag("report");
    for (auto _ : state) {
        engine.input_bytes(static_cast<unsigned>(message.size()), message.data());
        XMLTree tree = engine.get_xml();
        if (tree.is_null())
            state.SkipWithError("no tree");
        benchmark::DoNotOptimize(tree);
    }
}

#ifdef HAVE_PUGIXML
void pugi(benchmark::State& state, const std::string& message)
{
    for (auto _ : state) {
        pugi::xml_document document;
        if (!document.load_buffer(message.data(), message.size()))
            state.SkipWithError("no tree");
        benchmark::DoNotOptimize(document);
    }
}
#endif

#ifdef HAVE_EXPAT
struct ExpatTree
{
    using Element = Node<std::string>;
    Element root;
    std::vector<Element*> open;

    static void start(void* self, const XML_Char* name, const XML_Char**)
    {
        auto* tree = static_cast<ExpatTree*>(self);
        Element* parent = tree->open.empty() ? &tree->root : tree->open.back();
        parent->children.push_back({name, {}, {}});
        tree->open.push_back(&parent->children.back());
    }
    static void end(void* self, const XML_Char*) { static_cast<ExpatTree*>(self)->open.pop_back(); }
    static void text(void* self, const XML_Char* bytes, int n)
    {
        auto* tree = static_cast<ExpatTree*>(self);
        if (!tree->open.empty())
            tree->open.back()->content.append(bytes, static_cast<std::size_t>(n));
    }
};

void expat(benchmark::State& state, const std::string& message)
{
    XML_Parser parser = XML_ParserCreate("UTF-8");
    for (auto _ : state) {
        ExpatTree tree;
        XML_ParserReset(parser, "UTF-8");
        XML_SetUserData(parser, &tree);
        XML_SetElementHandler(parser, ExpatTree::start, ExpatTree::end);
        XML_SetCharacterDataHandler(parser, ExpatTree::text);
        if (XML_Parse(parser, message.data(), static_cast<int>(message.size()), 1) != XML_STATUS_OK)
            state.SkipWithError("no tree");
        benchmark::DoNotOptimize(tree);
    }
    XML_ParserFree(parser);
}
#endif

#ifdef HAVE_QTXML
void qdom(benchmark::State& state, const std::string& message)
{
    const QByteArray bytes = QByteArray::fromStdString(message);
    for (auto _ : state) {
        QDomDocument document;
        if (!document.setContent(bytes))
            state.SkipWithError("no tree");
        benchmark::DoNotOptimize(document);
    }
}
#endif

void qxmlstream(benchmark::State& state, const std::string& message)
{
    using Element = Node<QString>;
    const QByteArray bytes = QByteArray::fromStdString(message);
    for (auto _ : state) {
        Element root;
        std::vector<Element*> open = {&root};
        QXmlStreamReader reader(bytes);
        while (!reader.atEnd()) {
            switch (reader.readNext()) {
            case QXmlStreamReader::StartElement:
                open.back()->children.push_back({reader.name().toString(), {}, {}});
                open.push_back(&open.back()->children.back());
                break;
            case QXmlStreamReader::EndElement:
                open.pop_back();
                break;
            case QXmlStreamReader::Characters:
                open.back()->content += reader.text();
                break;
            default:
                break;
            }
        }
        if (reader.hasError())
            state.SkipWithError("no tree");
        benchmark::DoNotOptimize(root);
    }
}

[[maybe_unused]] const bool registered = [] {
    const std::pair<const char*, std::string> messages[] = {
        {"channel_timecode", corpora::channel_timecode()},
        {"channel_status", corpora::channel_status()},
        {"clipinfo", corpora::clipinfo()},
        {"metadata_500", corpora::metadata()},
    };
    for (const auto& [name, message] : messages) {
        const auto add = [name = std::string(name), message = message](const char* side, auto run) {
            benchmark::RegisterBenchmark(("parse_" + name + "/" + side).c_str(), run, message);
        };
        add("ours", ours);
#ifdef HAVE_PUGIXML
        add("pugixml", pugi);
#endif
#ifdef HAVE_EXPAT
        add("expat_tree", expat);
#endif
#ifdef HAVE_QTXML
        add("qdom", qdom);
#endif
        add("qxmlstream_tree", qxmlstream);
    }
    return true;
}();

} // namespace
