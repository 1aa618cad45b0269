// What the protocol costs on top of the bare sockets: round trips of one command, a stream of reports,
// and many commands at once. The server is a few lines of blocking sockets in the same program.
#include <bench/application.h>
#include <skuan/protocol/kvrp3_api_qt.h>
#include <skuan/protocol/kvrp3_client.h>

#include <QEventLoop>
#include <QHostAddress>
#include <QTcpSocket>

#include <benchmark/benchmark.h>

#include <arpa/inet.h>
#include <atomic>
#include <netinet/tcp.h>
#include <sched.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

/// 92 bytes, if the xid has 6 digits as most will.
const std::string command = "<cmd>\r\n<xid>123456</xid>\r\n<delete_clip>\r\n<ClipID>news0042</ClipID>\r\n"
                            "</delete_clip>\r\n</cmd>";
const std::string
    reply_head = "<reply>\r\n<xid>",
    reply_tail =
        "</xid>\r\n<error>\r\n<ErrorMessage>none</ErrorMessage>\r\n<ErrorCode>general</ErrorCode>\r\n"
        "</error>\r\n</reply>\r\n";
const std::string end_of_command = "</cmd>", end_of_reply = "</reply>";

/// 12 elements beside the root and some 400 bytes; the client knows two of the tags.
const std::string report =
    "<report>\r\n<clip_changed>\r\n<ClipID>news_0042</ClipID>\r\n<Length>15000</Length>\r\n"
    "<InTrim>0</InTrim>\r\n<OutTrim>14999</OutTrim>\r\n<VideoStandard>HD_1080i50</VideoStandard>\r\n"
    "<AudioTracks>8</AudioTracks>\r\n<Created>2024-03-01 18:30:05</Created>\r\n<Owner>newsroom "
    "two</Owner>\r\n"
    "<Locked>false</Locked>\r\n<Growing>false</Growing>\r\n<Flags>0</Flags>\r\n"
    "<Title>Evening news, opening</Title>\r\n</clip_changed>\r\n</report>\r\n";

int checked(int result)
{
    if (result < 0) {
        perror("transport_bench");
        std::abort();
    }
    return result;
}

void set_no_delay(int socket)
{
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

bool send_all(int socket, const std::string& bytes)
{
    return send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

/// Serves one client: answers each command, or sends reports as fast as they are taken.
class Server
{
public:
    enum Work { Answer, Report };

    explicit Server(Work work) : listener_(checked(socket(AF_INET, SOCK_STREAM, 0)))
    {
        static unsigned count = 0;
        place.sin_family = AF_INET;
        place.sin_port = htons(8913);
        place.sin_addr.s_addr =
            htonl(0x7fc80000u + static_cast<unsigned>(getpid()) % 0x8000u * 64 % 0x30000u + ++count);
        checked(bind(listener_, reinterpret_cast<sockaddr*>(&place), sizeof place));
        checked(listen(listener_, 1));
        thread_ = std::thread([this, work] {
            const int client = checked(accept(listener_, nullptr, nullptr));
            set_no_delay(client);
            work == Answer ? answer(client) : send_reports(client);
            close(client);
        });
    }
    ~Server()
    {
        thread_.join(); // the client has gone by now
        close(listener_);
    }

    unsigned address() const { return ntohl(place.sin_addr.s_addr); }

    sockaddr_in place{};

private:
    static void answer(int client)
    {
        std::string in, out;
        char buffer[65536];
        for (ssize_t n; (n = recv(client, buffer, sizeof buffer, 0)) > 0;) {
            in.append(buffer, static_cast<std::size_t>(n));
            out.clear();
            std::size_t done = 0;
            for (std::size_t end; (end = in.find(end_of_command, done)) != std::string::npos;) {
                const std::size_t xid = in.find("<xid>", done) + 5;
                out += reply_head;
                out.append(in, xid, in.find('<', xid) - xid);
                out += reply_tail;
                done = end + end_of_command.size();
            }
            in.erase(0, done);
            if (!out.empty() && !send_all(client, out))
                return;
        }
    }
    static void send_reports(int client)
    {
        std::string dozen;
        for (int i = 0; i < 12; ++i)
            dozen += report;
        while (send_all(client, dozen))
            continue;
    }

    int listener_;
    std::thread thread_;
};

/// Keeps this thread, and those that it starts meanwhile, on one processor.
class OneCore
{
public:
    OneCore()
    {
        sched_getaffinity(0, sizeof before_, &before_);
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(sched_getcpu(), &one);
        sched_setaffinity(0, sizeof one, &one);
    }
    ~OneCore() { sched_setaffinity(0, sizeof before_, &before_); }

private:
    cpu_set_t before_;
};

void finish(benchmark::State& state)
{
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024;
}

void raw_round_trip(benchmark::State& state)
{
    const OneCore one_core;
    Server server(Server::Answer);
    const int client = checked(socket(AF_INET, SOCK_STREAM, 0));
    checked(connect(client, reinterpret_cast<sockaddr*>(&server.place), sizeof server.place));
    set_no_delay(client);
    char buffer[2048];
    for (auto _ : state) {
        send_all(client, command);
        for (std::string got; got.find(end_of_reply) == std::string::npos;) {
            const ssize_t n = recv(client, buffer, sizeof buffer, 0);
            got.append(buffer, static_cast<std::size_t>(checked(static_cast<int>(n))));
        }
    }
    close(client);
    finish(state);
}
BENCHMARK(raw_round_trip)->Name("ClientRoundTrip/raw")->UseRealTime();

/// Has `deep` commands outstanding all the time. Each answer is one iteration.
template <typename Transport>
class Sender : public Transport
{
public:
    template <typename Argument>
    Sender(benchmark::State& state, Argument argument) : Transport(argument), state_(state)
    {
    }

    void begin(int deep)
    {
        while (deep-- > 0)
            issue();
    }

protected:
    virtual void end() = 0;

private:
    void issue()
    {
        this->cmd_delete_clip(
            clip_, AFunction(),
            AFunction2<AString, KVRP3::ErrorCode>::template member<&Sender::answered>(this));
    }
    void answered(AString, KVRP3::ErrorCode)
    {
        if (over_)
            return;
        if (state_.KeepRunning()) {
            issue();
        } else {
            over_ = true;
            end();
        }
    }

    benchmark::State& state_;
    const AString clip_ = AString::l1("news0042");
    bool over_ = false;
};

class BlockingSender : public Sender<KVRP3::Client>
{
public:
    using Sender::Sender;
    ~BlockingSender() override { stop(); }

protected:
    void connected() override { begin(1); }
    void end() override { stop(); }
};

class EventDrivenSender : public Sender<KVRP3::APIQt>
{
public:
    explicit EventDrivenSender(benchmark::State& state) : Sender(state, nullptr) {}
    QEventLoop loop;

protected:
    void end() override { loop.quit(); }
};

void client_round_trip(benchmark::State& state)
{
    const OneCore one_core;
    Server server(Server::Answer);
    {
        BlockingSender client(state, server.address());
        client.run_forever();
    }
    finish(state);
}
BENCHMARK(client_round_trip)->Name("ClientRoundTrip/ours")->UseRealTime();

void socket_round_trip(benchmark::State& state)
{
    bench::need_application();
    const OneCore one_core;
    Server server(Server::Answer);
    {
        QTcpSocket client;
        QEventLoop loop;
        QByteArray got;
        QObject::connect(&client, &QTcpSocket::connected, [&] {
            client.setSocketOption(QAbstractSocket::LowDelayOption, 1);
            client.write(command.data(), static_cast<qint64>(command.size()));
        });
        QObject::connect(&client, &QTcpSocket::readyRead, [&] {
            got += client.readAll();
            if (!got.contains(end_of_reply.c_str()))
                return;
            got.clear();
            if (state.KeepRunning())
                client.write(command.data(), static_cast<qint64>(command.size()));
            else
                loop.quit();
        });
        client.connectToHost(QHostAddress(server.address()), 8913);
        loop.exec();
    }
    finish(state);
}
BENCHMARK(socket_round_trip)->Name("QtRoundTrip/QTcpSocket")->UseRealTime();

void send_through_qt(benchmark::State& state, int deep)
{
    bench::need_application();
    Server server(Server::Answer);
    {
        EventDrivenSender client(state);
        QObject::connect(&client, &KVRP3::APIQt::connected, [&] { client.begin(deep); });
        client.connect_to_server(QHostAddress(server.address()));
        client.loop.exec();
    }
    finish(state);
}

void qt_round_trip(benchmark::State& state)
{
    const OneCore one_core;
    send_through_qt(state, 1);
}
BENCHMARK(qt_round_trip)->Name("QtRoundTrip/ours")->UseRealTime();

void qt_commands(benchmark::State& state)
{
    send_through_qt(state, 1000);
}
BENCHMARK(qt_commands)->Name("Commands1000Deep/ours")->UseRealTime();

class Receiver : public KVRP3::APIQt
{
public:
    explicit Receiver(benchmark::State& state) : state_(state) {}
    QEventLoop loop;

protected:
    void do_report_clip_changed(AString) override
    {
        if (over_ || state_.KeepRunning())
            return;
        over_ = true;
        loop.quit();
    }

private:
    benchmark::State& state_;
    bool over_ = false;
};

void qt_reports(benchmark::State& state)
{
    bench::need_application();
    Server server(Server::Report);
    {
        Receiver client(state);
        client.connect_to_server(QHostAddress(server.address()));
        client.loop.exec();
    }
    finish(state);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * report.size()));
}
BENCHMARK(qt_reports)->Name("Reports/ours")->UseRealTime();

} // namespace
