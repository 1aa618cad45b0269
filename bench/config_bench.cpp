// The mirror of the configuration: what reading it costs, how long a whole scan takes, and what a server that
// reports without end does to the program's event loop.
#include <bench/application.h>
#include <skuan/config/cf_model.h>
#include <skuan/protocol/kvrp3_api_qt.h>

#include <simulator/server_thread.h>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QMutex>
#include <QTimer>

#include <algorithm>

namespace {

/// A model in session with a server of its own.
class Session
{
public:
    Session()
    {
        bench::need_application();
        simulator::Settings settings;
        settings.address = QHostAddress(QStringLiteral("127.192.0.9"));
        settings.pace = 0;
        server_ = std::make_unique<simulator::ServerThread>(settings);
        if (!server_->start())
            qFatal("config_bench: %s", qPrintable(server_->error_text()));
        api_.connect_to_server(settings.address);
        run_until([this] { return api_.is_connected(); });
    }
    simulator::Server* server() { return server_->server(); }
    KVRP3::APIQt& api() { return api_; }

    /// Turns the event loop until `condition` holds, and gives its longest pause in ms.
    template <typename Condition>
    static double run_until(Condition condition)
    {
        QElapsedTimer since;
        qint64 longest = 0;
        QEventLoop loop;
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, &loop, [&] {
            longest = std::max(longest, since.nsecsElapsed());
            since.restart();
            if (condition())
                loop.quit();
        });
        tick.setTimerType(Qt::PreciseTimer);
        tick.start(1);
        since.start();
        loop.exec();
        return double(longest) / 1e6;
    }

private:
    std::unique_ptr<simulator::ServerThread> server_;
    KVRP3::APIQt api_;
};

/// The least that a value read from any thread can cost with Qt's means: a lock and a shared string.
struct PlainItem
{
    mutable QMutex mutex;
    QString value = QStringLiteral("1080_50i");

    QString get() const
    {
        const QMutexLocker lock(&mutex);
        return value;
    }
};

void item_get_ours(benchmark::State& state)
{
    CFItemModel item(QStringLiteral("VideoStandard"));
    item.set(QStringLiteral("1080_50i"));
    for (auto _ : state)
        benchmark::DoNotOptimize(item.get());
}

void item_get_plain(benchmark::State& state)
{
    const PlainItem item;
    for (auto _ : state)
        benchmark::DoNotOptimize(item.get());
}

/// 200 items asked for, every one of them fetched: among them some that the server does not have.
void scan(benchmark::State& state)
{
    Session session;
    for (auto _ : state) {
        CFModel* const model = CFModel::create(false, &session.api());
        for (int i = 0; i != 200; ++i)
            model->get_item(QStringLiteral("Channel_GrowingMxfExportPath%1").arg(i));
        QEventLoop loop;
        QObject::connect(model, &CFModel::fully_scanned, &loop, &QEventLoop::quit);
        loop.exec();
        delete model;
    }
}

QByteArray report(int number, int records)
{
    QByteArray items;
    for (int i = 0; i != records; ++i) {
        const QByteArray value = QByteArray::number(number * records + i);
        items += "<ConfigurationItem><ConfigurationItemName>Item" + QByteArray::number(i % 50) +
                 "</ConfigurationItemName><ConfigurationItemAccess>user</ConfigurationItemAccess>"
                 "<ConfigurationItemEffectiveValue>" +
                 value + "</ConfigurationItemEffectiveValue><ConfigurationItemBootValue>" + value +
                 "</ConfigurationItemBootValue><ConfigurationItemSavedValue>" + value +
                 "</ConfigurationItemSavedValue><ConfigurationItemAllowedValues>"
                 "</ConfigurationItemAllowedValues></ConfigurationItem>";
    }
    return "<report><config_changed><ConfigurationChange>" + items +
           "</ConfigurationChange></config_changed></report>\r\n";
}

/// 100,000 records as fast as they go, so many to a report.
void flood(benchmark::State& state)
{
    constexpr int all = 100'000;
    const int records = static_cast<int>(state.range(0));
    QByteArray bytes;
    for (int i = 0; i != all / records; ++i)
        bytes += report(i, records);

    Session session;
    CFModel* const model = CFModel::create(false, &session.api());
    int taken = 0;
    QObject::connect(model, &CFModel::changed, [&] { ++taken; });
    double pause = 0;
    for (auto _ : state) {
        taken = 0;
        session.server()->send_raw(bytes);
        pause = std::max(pause, Session::run_until([&] { return taken >= all; }));
    }
    state.SetItemsProcessed(state.iterations() * all);
    state.counters["pause_ms"] = pause;
}

BENCHMARK(item_get_ours)->Name("ItemGet/ours");
BENCHMARK(item_get_plain)->Name("ItemGet/qmutex");
BENCHMARK(scan)->Name("Scan200/ours")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(flood)->Name("Flood/ours")->Arg(1)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
