// What it costs to follow twelve channels at field rate, from the socket to the slots, and how late they
// hear.
#include <bench/application.h>
#include <skuan/monitors/spark_channel_monitor.h>
#include <skuan/session/spark.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QXmlStreamReader>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned channels = 12;
constexpr unsigned fields_per_second = 60;
constexpr unsigned seconds = 3; // of a run
constexpr unsigned fields = fields_per_second * seconds;

double processor_seconds(int whose)
{
    rusage usage{};
    getrusage(whose, &usage);
    const auto seconds_of = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) / 1e6; };
    return seconds_of(usage.ru_utime) + seconds_of(usage.ru_stime);
}

/// A server whose channels all play: with every field it tells of each channel the timecode and where the
/// auxiliary audio is. On a thread of its own.
class Source
{
public:
    explicit Source(const QHostAddress& address)
    {
        bench::need_application();
        thread_ = std::thread([this, address] { run(address); });
        while (!listens_)
            std::this_thread::yield();
    }
    ~Source() { thread_.join(); }

    void begin() { begun_ = true; }
    bool is_done() const { return done_; }
    double own_seconds() const { return own_seconds_; } ///< of processor; once it is done
    Clock::time_point sent(unsigned field) const { return sent_[field]; }

private:
    static QByteArray reports(unsigned field)
    {
        QByteArray text;
        for (unsigned i = 0; i != channels; ++i) {
            const QByteArray channel(1, static_cast<char>('A' + i)), position = QByteArray::number(field);
            text += "<report>\r\n<channel_timecode>\r\n<Channel>" + channel + "</Channel>\r\n<ClipPosition>" +
                    position +
                    "</ClipPosition>\r\n<DisplayTimecode>\r\n<Valid>true</Valid>\r\n"
                    "<VideoStandard>1080_59_94i</VideoStandard>\r\n<FieldNumber>" +
                    position +
                    "</FieldNumber>\r\n</DisplayTimecode>\r\n<InputTimecode>\r\n<Valid>false</Valid>\r\n"
                    "</InputTimecode>\r\n</channel_timecode>\r\n</report>\r\n"
                    "<report>\r\n<channel_aux_audio_timecode>\r\n<Channel>" +
                    channel + "</Channel>\r\n<ClipPosition>" + position +
                    "</ClipPosition>\r\n</channel_aux_audio_timecode>\r\n</report>\r\n";
        }
        return text;
    }
    void run(const QHostAddress& address)
    {
        QTcpServer listener;
        if (!listener.listen(address, 8913))
            qFatal("monitor_bench: %s", qPrintable(listener.errorString()));
        listens_ = true;
        listener.waitForNewConnection(-1);
        const std::unique_ptr<QTcpSocket> client(listener.nextPendingConnection());
        client->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        while (!begun_)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const double before = processor_seconds(RUSAGE_THREAD);
        auto next = Clock::now();
        for (unsigned field = 0; field != fields; ++field) {
            std::this_thread::sleep_until(next +=
                                          std::chrono::nanoseconds(1'000'000'000 / fields_per_second));
            const QByteArray bytes = reports(field);
            sent_[field] = Clock::now(); // seen by whoever has read the bytes
            if (send(int(client->socketDescriptor()), bytes.data(), std::size_t(bytes.size()), 0) !=
                bytes.size())
                qFatal("monitor_bench: the follower does not follow");
        }
        own_seconds_ = processor_seconds(RUSAGE_THREAD) - before;
        done_ = true;
    }

    std::vector<Clock::time_point> sent_ = std::vector<Clock::time_point>(fields);
    double own_seconds_ = 0;
    std::atomic<bool> listens_{false}, begun_{false}, done_{false};
    std::thread thread_;
};

/// Keeps what each slot was told, and how late.
class Follower : public QObject
{
    Q_OBJECT

public:
    explicit Follower(const Source& source) : source_(source) {}

    void position(unsigned field)
    {
        delays_.push_back(Clock::now() - source_.sent(field));
        at_the_end_ += field == fields - 1;
    }
    void any() { ++told_; }

    /// Whoever keeps up with every field has them all; the last one comes in any case.
    bool is_done() const { return at_the_end_ == channels; }
    void report(benchmark::State& state)
    {
        std::sort(delays_.begin(), delays_.end());
        const auto at = [this](double share) {
            const auto index = static_cast<std::size_t>(double(delays_.size() - 1) * share);
            return std::chrono::duration<double, std::micro>(delays_[index]).count();
        };
        state.counters["median_us"] = at(0.5);
        state.counters["p99_us"] = at(0.99);
        state.counters["slots"] = double(told_);
        state.counters["passed_over"] = double(channels * fields - delays_.size());
    }

private:
    const Source& source_;
    std::vector<Clock::duration> delays_;
    std::uint64_t told_ = 0;
    unsigned at_the_end_ = 0; ///< channels
};

/// Lets the source play to the follower. The time of an iteration is what a field costs the processor.
void follow(benchmark::State& state, Source& source, Follower& follower)
{
    for (auto _ : state) {
        QEventLoop loop;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (source.is_done() && follower.is_done())
                loop.quit();
        });
        look.start(200);
        const double before = processor_seconds(RUSAGE_SELF);
        source.begin();
        loop.exec();
        const double used = processor_seconds(RUSAGE_SELF) - before - source.own_seconds();
        state.SetIterationTime(used / fields);
        state.counters["core_percent"] = used / seconds * 100;
    }
    follower.report(state);
}

template <typename Condition>
void run_until(Condition condition)
{
    while (!condition())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// All ten signals of all channels.
void ours(benchmark::State& state)
{
    const QHostAddress address(QStringLiteral("127.192.0.21"));
    Source source(address);
    Follower follower(source);
    Spark session(false);
    for (unsigned i = 0; i != channels; ++i) {
        const SparkChannelMonitor* const channel = session.get_channel_monitor(i);
        using S = SparkMonitor;
        QObject::connect(channel, &S::report_status, &follower, &Follower::any);
        QObject::connect(channel, &S::report_clipid, &follower, &Follower::any);
        QObject::connect(channel, &S::report_speed, &follower, &Follower::any);
        QObject::connect(channel, &S::report_timecodes, &follower, &Follower::any);
        QObject::connect(channel, &S::report_aux_position, &follower, &Follower::any);
        QObject::connect(channel, &S::report_display_timecode, &follower, &Follower::any);
        QObject::connect(channel, &S::report_input_timecode, &follower, &Follower::any);
        QObject::connect(channel, &S::report_information, &follower, &Follower::any);
        QObject::connect(channel, &S::report_playback_mode, &follower, &Follower::any);
        bool is_first = true; // the value that a new receiver is told
        QObject::connect(channel, &S::report_clip_position, &follower,
                         [&follower, is_first](unsigned field) mutable {
                             if (!std::exchange(is_first, false))
                                 follower.position(field);
                         });
    }
    session.set_server(address);
    run_until([&] { return session.is_connected(); });
    follow(state, source, follower);
}
BENCHMARK(ours)->Name("TwelveChannels/ours")->UseManualTime()->Iterations(1)->Unit(benchmark::kMicrosecond);

/// What a program does that reads the same by itself: Qt's reader, and a signal for each report.
class Plain : public QObject
{
    Q_OBJECT

public:
    explicit Plain(const QHostAddress& address)
    {
        connect(&socket_, &QTcpSocket::readyRead, this, [this] { read(); });
        socket_.connectToHost(address, 8913);
        run_until([this] { return socket_.state() == QAbstractSocket::ConnectedState; });
        reader_.addData("<reports>");
    }

Q_SIGNALS:
    void timecode(unsigned channel, unsigned position, unsigned display, unsigned input);
    void aux_audio_timecode(unsigned channel, unsigned position);

private:
    void read()
    {
        reader_.addData(socket_.readAll());
        while (!reader_.atEnd()) {
            switch (reader_.readNext()) {
            case QXmlStreamReader::StartElement:
                text_.clear();
                if (reader_.name() == QLatin1String("DisplayTimecode"))
                    field_ = &display_;
                else if (reader_.name() == QLatin1String("InputTimecode"))
                    field_ = &input_;
                break;
            case QXmlStreamReader::Characters:
                text_ += reader_.text();
                break;
            case QXmlStreamReader::EndElement:
                end(reader_.name());
                break;
            default:
                break;
            }
        }
    }
    void end(const QStringRef& name)
    {
        if (name == QLatin1String("Channel"))
            channel_ = text_.at(0).unicode() - unsigned('A');
        else if (name == QLatin1String("ClipPosition"))
            position_ = text_.toUInt();
        else if (name == QLatin1String("FieldNumber"))
            *field_ = text_.toUInt();
        else if (name == QLatin1String("channel_timecode"))
            Q_EMIT timecode(channel_, position_, display_, input_);
        else if (name == QLatin1String("channel_aux_audio_timecode"))
            Q_EMIT aux_audio_timecode(channel_, position_);
    }

    QTcpSocket socket_;
    QXmlStreamReader reader_;
    QString text_;
    unsigned channel_ = 0, position_ = 0, display_ = 0, input_ = 0;
    unsigned* field_ = &display_;
};

void plain(benchmark::State& state)
{
    const QHostAddress address(QStringLiteral("127.192.0.22"));
    Source source(address);
    Follower follower(source);
    const Plain program(address);
    QObject::connect(&program, &Plain::aux_audio_timecode, &follower, &Follower::any);
    QObject::connect(&program, &Plain::timecode, &follower,
                     [&](unsigned, unsigned position, unsigned, unsigned) { follower.position(position); });
    follow(state, source, follower);
}
BENCHMARK(plain)
    ->Name("TwelveChannels/QXmlStream")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMicrosecond);

} // namespace

#include "monitor_bench.moc"
