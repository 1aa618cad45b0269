// What a session costs: how soon it is back, what commands of many threads take, and what a hundred sessions
// need while nothing happens.
#include <bench/application.h>
#include <skuan/config/cf_model.h>
#include <skuan/session/spark.h>

#include <simulator/server_thread.h>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QHash>
#include <QMutex>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <atomic>
#include <fstream>
#include <functional>
#include <memory>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

template <typename Condition>
void run_until(Condition condition)
{
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (condition())
            loop.quit();
    });
    look.start(1);
    loop.exec();
}

simulator::Settings settings(const char* address)
{
    bench::need_application();
    simulator::Settings settings;
    settings.address = QHostAddress(QLatin1String(address));
    settings.pace = 0;
    return settings;
}

/// From the moment at which the server listens again.
void back_in_session(benchmark::State& state)
{
    const simulator::Settings where = settings("127.192.0.11");
    simulator::ServerThread server(where);
    Spark spark(false);
    spark.set_server(where.address);
    double longest = 0;
    for (auto _ : state) {
        run_until([&] { return !spark.is_connected(); });
        if (!server.start())
            qFatal("session_bench: %s", qPrintable(server.error_text()));
        QElapsedTimer since;
        since.start();
        QEventLoop loop;
        QObject::connect(&spark, &Spark::connected, &loop, &QEventLoop::quit);
        loop.exec();
        const double seconds = double(since.nsecsElapsed()) / 1e9;
        state.SetIterationTime(seconds);
        longest = std::max(longest, seconds * 1000);
        server.stop();
    }
    state.counters["longest_ms"] = longest;
}
BENCHMARK(back_in_session)
    ->Name("BackInSession/ours")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);

/// Answers each command with "ok", on a thread of its own, and does as little as it can.
class Echo
{
public:
    explicit Echo(const char* address)
    {
        bench::need_application();
        thread_ = std::thread([this, address] {
            QTcpServer listener;
            if (!listener.listen(QHostAddress(QLatin1String(address)), 8913))
                qFatal("session_bench: %s", qPrintable(listener.errorString()));
            listens_ = true;
            listener.waitForNewConnection(-1);
            const std::unique_ptr<QTcpSocket> client(listener.nextPendingConnection());
            QByteArray in, out;
            while (client->bytesAvailable() != 0 || client->waitForReadyRead(-1)) {
                in += client->readAll();
                out.clear();
                int done = 0;
                for (int end; (end = in.indexOf("</cmd>", done)) >= 0; done = end + 6) {
                    const int xid = in.indexOf("<xid>", done) + 5;
                    out += "<reply>\r\n<xid>" + in.mid(xid, in.indexOf('<', xid) - xid) +
                           "</xid>\r\n<ok />\r\n</reply>\r\n";
                }
                in.remove(0, done);
                client->write(out);
                while (client->bytesToWrite() != 0)
                    client->waitForBytesWritten(-1);
            }
        });
        while (!listens_)
            std::this_thread::yield();
    }
    ~Echo() { thread_.join(); } // the client has gone by now

private:
    std::atomic<bool> listens_{false};
    std::thread thread_;
};

constexpr unsigned senders = 8;
constexpr unsigned from_each = 12'500;

/// `send(answered)` on eight threads at once, until all have been answered.
template <typename Send>
void send_on_threads(benchmark::State& state, Send send)
{
    for (auto _ : state) {
        std::atomic<unsigned> answers{0};
        std::vector<std::thread> threads;
        for (unsigned i = 0; i != senders; ++i)
            threads.emplace_back([&] {
                for (unsigned n = 0; n != from_each; ++n)
                    send(&answers);
            });
        run_until([&] { return answers == senders * from_each; });
        for (std::thread& thread : threads)
            thread.join();
    }
    state.SetItemsProcessed(state.iterations() * senders * from_each);
}

void count(void* answers)
{
    ++*static_cast<std::atomic<unsigned>*>(answers);
}

void commands_ours(benchmark::State& state)
{
    const Echo echo("127.192.0.12");
    Spark spark(false);
    spark.set_server(QHostAddress(QStringLiteral("127.192.0.12")));
    run_until([&] { return spark.is_connected() && spark.outstanding_commands() == 0; });
    const AString clip = AString::l1("news0042");
    send_on_threads(state, [&](std::atomic<unsigned>* answers) {
        spark.cmd_delete_clip(clip, AFunction(&count, answers), {});
    });
}
BENCHMARK(commands_ours)->Name("CommandsOfEightThreads/ours")->UseRealTime()->Unit(benchmark::kMillisecond);

/// What a program of its own does for the same: one signal to the thread of the socket, and a table of what
/// waits.
class PlainProgram : public QObject
{
    Q_OBJECT

public:
    explicit PlainProgram(const QHostAddress& address)
    {
        connect(this, &PlainProgram::command, this, &PlainProgram::write, Qt::QueuedConnection);
        connect(&socket_, &QTcpSocket::readyRead, this, [this] { read(socket_.readAll()); });
        socket_.connectToHost(address, 8913);
        run_until([this] { return socket_.state() == QAbstractSocket::ConnectedState; });
        socket_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    }
    void delete_clip(const QString& clip, std::function<void()> answered)
    {
        QByteArray xid;
        {
            const QMutexLocker lock(&mutex_);
            xid = QByteArray::number(++last_);
            pending_.insert(xid, std::move(answered));
        }
        Q_EMIT command(message(xid, clip));
    }

Q_SIGNALS:
    void command(const QByteArray& bytes);

protected:
    virtual QByteArray message(const QByteArray& xid, const QString& clip) = 0;
    virtual void read(const QByteArray& bytes) = 0;

    void end(const QByteArray& xid)
    {
        std::function<void()> answered;
        {
            const QMutexLocker lock(&mutex_);
            answered = pending_.take(xid);
        }
        if (answered)
            answered();
    }

private:
    void write(const QByteArray& bytes) { socket_.write(bytes); }

    QTcpSocket socket_;
    QMutex mutex_;
    unsigned last_ = 0;
    QHash<QByteArray, std::function<void()>> pending_;
};

/// With Qt's reader and writer of XML.
class XmlProgram : public PlainProgram
{
public:
    explicit XmlProgram(const QHostAddress& address) : PlainProgram(address) { reader_.addData("<replies>"); }

protected:
    QByteArray message(const QByteArray& xid, const QString& clip) override
    {
        QByteArray bytes;
        QXmlStreamWriter writer(&bytes);
        writer.writeStartElement(QStringLiteral("cmd"));
        writer.writeTextElement(QStringLiteral("xid"), QString::fromLatin1(xid));
        writer.writeStartElement(QStringLiteral("delete_clip"));
        writer.writeTextElement(QStringLiteral("ClipID"), clip);
        writer.writeEndElement();
        writer.writeEndElement();
        return bytes;
    }
    void read(const QByteArray& bytes) override
    {
        reader_.addData(bytes);
        while (!reader_.atEnd()) {
            reader_.readNext();
            if (reader_.isCharacters())
                text_ += reader_.text();
            else if (reader_.isStartElement())
                text_.clear();
            else if (reader_.isEndElement() && reader_.name() == QLatin1String("xid"))
                xid_ = text_.toLatin1();
            else if (reader_.isEndElement() && reader_.name() == QLatin1String("reply"))
                end(xid_);
        }
    }

private:
    QXmlStreamReader reader_;
    QString text_;
    QByteArray xid_;
};

/// With no idea of XML: the least that the hop can cost.
class BytesProgram : public PlainProgram
{
public:
    using PlainProgram::PlainProgram;

protected:
    QByteArray message(const QByteArray& xid, const QString& clip) override
    {
        return "<cmd>\r\n<xid>" + xid + "</xid>\r\n<delete_clip>\r\n<ClipID>" + clip.toUtf8() +
               "</ClipID>\r\n</delete_clip>\r\n</cmd>\r\n";
    }
    void read(const QByteArray& bytes) override
    {
        in_ += bytes;
        int done = 0;
        for (int next; (next = in_.indexOf("</reply>", done)) >= 0; done = next + 8) {
            const int xid = in_.indexOf("<xid>", done) + 5;
            end(in_.mid(xid, in_.indexOf('<', xid) - xid));
        }
        in_.remove(0, done);
    }

private:
    QByteArray in_;
};

template <typename Program>
void commands_plain(benchmark::State& state)
{
    const Echo echo("127.192.0.13");
    Program program(QHostAddress(QStringLiteral("127.192.0.13")));
    const QString clip = QStringLiteral("news0042");
    send_on_threads(state, [&](std::atomic<unsigned>* answers) {
        program.delete_clip(clip, [answers] { count(answers); });
    });
}
BENCHMARK_TEMPLATE(commands_plain, XmlProgram)
    ->Name("CommandsOfEightThreads/QXmlStream")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(commands_plain, BytesProgram)
    ->Name("CommandsOfEightThreads/bytes")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

double megabytes_resident()
{
    std::ifstream statm("/proc/self/statm");
    double all = 0, resident = 0;
    statm >> all >> resident;
    return resident * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

double seconds_of_processor()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// A hundred, with 50 items each, and their server, which counts too.
void idle(benchmark::State& state)
{
    const simulator::Settings where = settings("127.192.0.14");
    simulator::ServerThread server(where);
    if (!server.start())
        qFatal("session_bench: %s", qPrintable(server.error_text()));
    const double memory = megabytes_resident();
    std::vector<std::unique_ptr<Spark>> sparks(100);
    for (auto& spark : sparks) {
        spark = std::make_unique<Spark>(false);
        for (int i = 0; i != 50; ++i)
            spark->cf_model()->get_item(QStringLiteral("Channel_GrowingMxf%1%2")
                                            .arg(QLatin1String(i % 2 ? "ExportPath" : "FromNowhere"))
                                            .arg(i / 2));
        spark->set_server(where.address);
    }
    run_until([&] {
        return std::all_of(sparks.begin(), sparks.end(),
                           [](const auto& spark) { return spark->cf_model()->is_fully_scanned(); });
    });
    state.counters["MB_each"] = (megabytes_resident() - memory) / double(sparks.size());
    const double before = seconds_of_processor();
    QElapsedTimer since;
    since.start();
    for (auto _ : state) {
        QEventLoop loop;
        QTimer::singleShot(3000, &loop, &QEventLoop::quit);
        loop.exec();
    }
    state.counters["core_percent"] =
        (seconds_of_processor() - before) / (double(since.elapsed()) / 1000) * 100;
}
BENCHMARK(idle)->Name("HundredIdle/ours")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

#include "session_bench.moc"
