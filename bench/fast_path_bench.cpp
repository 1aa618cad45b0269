// What the fast path takes: how many timecode reports a second its thread decodes, and how often the
// session's thread delivers all channels meanwhile.
#include <bench/application.h>
#include <skuan/foundation/semaphore.h>
#include <skuan/markup/xml_parse.h>
#include <skuan/monitors/spark_timecode.h>
#include <skuan/protocol/kvrp3_api_parser.h>
#include <skuan/session/spark.h>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#ifdef HAVE_PUGIXML
#include <pugixml.hpp>
#endif
#ifdef HAVE_QTXML
#include <QDomDocument>
#endif

#include <algorithm>
#include <array>
#include <atomic>
#include <ctime>
#include <iterator>
#include <vector>

namespace {

constexpr unsigned channels = 12;

QByteArray timecode(const char* tag, unsigned field)
{
    return QByteArray("<") + tag +
           "><Valid>true</Valid><VideoStandard>1080_59_94i</VideoStandard><FieldNumber>" +
           QByteArray::number(field) + "</FieldNumber><DropFrameFlag>df</DropFrameFlag></" + tag + ">";
}

/// As servers send it, with all that a timecode can have.
QByteArray report(unsigned number)
{
    return QByteArray("<report><channel_timecode><Channel>") + char('A' + number % channels) +
           "</Channel><ClipPosition>" + QByteArray::number(number) + "</ClipPosition>" +
           timecode("DisplayTimecode", 5'000'000 + number) + timecode("InputTimecode", 2'000'000 + number) +
           "</channel_timecode></report>";
}

std::vector<XMLTree> reports(unsigned count)
{
    std::vector<XMLTree> trees;
    for (unsigned i = 0; i != count; ++i)
        trees.push_back(XMLParse(AString(report(i).constData()), nullptr));
    return trees;
}

/// As many as may wait: none is left out.
constexpr unsigned batch = SparkTimecode::most_work;

/// From the moment at which a batch is there until all of it is decoded and stored.
void decode_ours(benchmark::State& state)
{
    bench::need_application();
    const std::vector<XMLTree> trees = reports(batch);
    SparkTimecode path;
    for (auto _ : state) {
        BinarySemaphore go_on(false);
        QMetaObject::invokeMethod(
            &path, [&] { go_on.semTake(); }, Qt::QueuedConnection);
        for (const XMLTree& tree : trees)
            path.add(1, tree);
        QElapsedTimer since;
        since.start();
        go_on.semGive();
        QMetaObject::invokeMethod(
            &path, [] {}, Qt::BlockingQueuedConnection);
        state.SetIterationTime(double(since.nsecsElapsed()) / 1e9);
        unsigned values = 0;
        for (SparkTimecode::ChannelTimecode value; path.take_timecode(1, &value); ++values)
            benchmark::DoNotOptimize(value);
        if (values != channels)
            state.SkipWithError("not all channels came");
    }
    state.SetItemsProcessed(state.iterations() * batch);
}
BENCHMARK(decode_ours)->Name("DecodeBatch/ours")->UseManualTime();

/// The common road, on the session's own thread.
void decode_by_parser(benchmark::State& state)
{
    struct Parser : KVRP3::APIParser
    {
        unsigned values = 0;

        void report_channel_timecode(KVRP3::Channel, KVRP3::ClipPosition position,
                                     KVRP3::DisplayTimecode display, KVRP3::InputTimecode input) override
        {
            values += position != 0 || display.valid || input.valid;
        }
    } parser;
    const std::vector<XMLTree> trees = reports(batch);
    for (auto _ : state)
        for (const XMLTree& tree : trees)
            parser.parse(tree);
    if (parser.values != state.iterations() * batch)
        state.SkipWithError("not all reports came");
    state.SetItemsProcessed(state.iterations() * batch);
}
BENCHMARK(decode_by_parser)->Name("DecodeBatch/APIParser");

/// What peers make of a report that they have as a tree.
struct Values
{
    int channel = 0;
    unsigned position = 0;
    struct Timecode
    {
        bool valid = false;
        int standard = 0;
        int field = 0;
        bool drop_frame = false;
    } display, input;
};

template <typename Name>
int standard(const Name& name)
{
    constexpr const char* standards[] = {"1080_60i", "1080_59_94i", "1080_50i", "625_50i", "525_59_94i"};
    const auto is_it = [&](const char* one) { return name == QLatin1String(one); };
    return int(std::find_if(std::begin(standards), std::end(standards), is_it) - standards);
}

#ifdef HAVE_PUGIXML
Values::Timecode read_timecode(const pugi::xml_node& node)
{
    return {node.child("Valid").text().as_bool(), standard(QLatin1String(node.child_value("VideoStandard"))),
            node.child("FieldNumber").text().as_int(),
            QLatin1String(node.child_value("DropFrameFlag")) == QLatin1String("df")};
}

void decode_pugixml(benchmark::State& state)
{
    std::vector<pugi::xml_document> trees(batch);
    for (unsigned i = 0; i != batch; ++i)
        trees[i].load_string(report(i).constData());
    for (auto _ : state)
        for (const auto& tree : trees) {
            const pugi::xml_node body = tree.child("report").child("channel_timecode");
            const Values values{
                *body.child_value("Channel") - 'A', body.child("ClipPosition").text().as_uint(),
                read_timecode(body.child("DisplayTimecode")), read_timecode(body.child("InputTimecode"))};
            benchmark::DoNotOptimize(values);
        }
    state.SetItemsProcessed(state.iterations() * batch);
}
BENCHMARK(decode_pugixml)->Name("DecodeBatch/pugixml");
#endif

#ifdef HAVE_QTXML
Values::Timecode read_timecode(const QDomElement& element)
{
    const auto text = [&](const char* tag) { return element.firstChildElement(QLatin1String(tag)).text(); };
    return {text("Valid") == QLatin1String("true"), standard(text("VideoStandard")),
            text("FieldNumber").toInt(), text("DropFrameFlag") == QLatin1String("df")};
}

void decode_qdom(benchmark::State& state)
{
    std::vector<QDomDocument> trees(batch);
    for (unsigned i = 0; i != batch; ++i)
        trees[i].setContent(report(i));
    for (auto _ : state)
        for (const auto& tree : trees) {
            const QDomElement body = tree.documentElement().firstChildElement();
            const Values values{body.firstChildElement("Channel").text().at(0).unicode() - 'A',
                                body.firstChildElement("ClipPosition").text().toUInt(),
                                read_timecode(body.firstChildElement("DisplayTimecode")),
                                read_timecode(body.firstChildElement("InputTimecode"))};
            benchmark::DoNotOptimize(values);
        }
    state.SetItemsProcessed(state.iterations() * batch);
}
BENCHMARK(decode_qdom)->Name("DecodeBatch/QDom");
#endif

/// A session that gets reports as from its socket, over and over, and counts what comes of them.
class LoadedSpark : public Spark
{
public:
    LoadedSpark() : Spark(false) {}

    void get_report() { (void)parse_intercept(reports_[got_++ % reports_.size()]); }
    unsigned got() const { return got_; }

    std::array<unsigned, channels> delivered{};

protected:
    void do_report_channel_timecode(KVRP3::Channel channel, KVRP3::ClipPosition, KVRP3::DisplayTimecode,
                                    KVRP3::InputTimecode) override
    {
        ++delivered[channel];
    }

private:
    const std::vector<XMLTree> reports_ = reports(50 * channels);
    unsigned got_ = 0;
};

double processor_seconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

/// In each turn of its event loop the session's thread gets the reports that are due at this rate; but never
/// more than may wait, so that none is left out.
void under_load(benchmark::State& state)
{
    bench::need_application();
    const auto rate = double(state.range(0));
    LoadedSpark spark;
    QObject behind; // on the path's thread: what is sent there arrives after the work before it
    behind.moveToThread(spark.findChild<QThread*>(QStringLiteral("SparkTimecode")));
    double seconds = 0, of_decoder = 0;
    for (auto _ : state) {
        const unsigned before = spark.got();
        std::atomic<unsigned> decoded{before};
        QEventLoop loop;
        QTimer feed;
        QElapsedTimer since;
        QObject::connect(&feed, &QTimer::timeout, [&] {
            const double elapsed = double(since.nsecsElapsed()) / 1e9;
            if (elapsed >= 2)
                return loop.quit();
            const unsigned due = std::min(before + unsigned(rate * elapsed), decoded + batch);
            if (spark.got() == due)
                return;
            while (spark.got() != due)
                spark.get_report();
            const auto tell = [&decoded, due] { decoded = due; };
            QMetaObject::invokeMethod(&behind, tell, Qt::QueuedConnection);
        });
        since.start();
        feed.start(0);
        loop.exec();
        seconds += double(since.nsecsElapsed()) / 1e9;
        state.SetIterationTime(seconds);
        const auto end = [&] { of_decoder = processor_seconds(); };
        QMetaObject::invokeMethod(&behind, end, Qt::BlockingQueuedConnection);
    }
    state.SetItemsProcessed(spark.got());
    const unsigned rarest = *std::min_element(spark.delivered.begin(), spark.delivered.end());
    state.counters["each_channel_per_second"] = double(rarest) / seconds;
    state.counters["decoder_core_percent"] = of_decoder / seconds * 100;
}
BENCHMARK(under_load)
    ->Name("AllChannelsUnderLoad/ours")
    ->Arg(12 * 60)
    ->Arg(12 * 60 * 100)
    ->Arg(400'000)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace
