// What the simulator costs as a process of its own: channels that play to many clients, many reports, a
// start, a long list of clips through skuanctl, and doing nothing. Times are those of its processor, but for
// starts and lists.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int client_count = 20;
constexpr auto measured = std::chrono::seconds(2);

double seconds_since(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

[[noreturn]] void give_up(const char* what)
{
    std::perror(what);
    std::abort();
}

/// A program with its output on a pipe.
class Process
{
public:
    explicit Process(std::vector<std::string> words)
    {
        int ends[2];
        if (pipe(ends) != 0)
            give_up("pipe");
        process_ = fork();
        if (process_ == 0) {
            dup2(ends[1], STDOUT_FILENO);
            close(ends[0]);
            close(ends[1]);
            std::vector<char*> arguments;
            for (std::string& word : words)
                arguments.push_back(word.data());
            arguments.push_back(nullptr);
            execv(arguments[0], arguments.data());
            _exit(127);
        }
        close(ends[1]);
        out_ = ends[0];
    }
    ~Process()
    {
        if (process_ > 0)
            kill(process_, SIGKILL);
        wait();
        close(out_);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// The bytes that there are next; 0 at the end.
    std::size_t read(std::array<char, 65536>& buffer)
    {
        return static_cast<std::size_t>(std::max<ssize_t>(0, ::read(out_, buffer.data(), buffer.size())));
    }

    /// User and system time so far, in seconds.
    double cpu_time() const
    {
        std::ifstream file("/proc/" + std::to_string(process_) + "/schedstat");
        double nanoseconds = 0;
        file >> nanoseconds;
        return nanoseconds / 1e9;
    }

    /// Waits for the end; the peak of its memory, in MB.
    double wait()
    {
        rusage usage{};
        if (process_ > 0)
            wait4(process_, nullptr, 0, &usage);
        process_ = 0;
        return static_cast<double>(usage.ru_maxrss) / 1024;
    }

private:
    pid_t process_ = 0;
    int out_ = -1;
};

std::string own_address()
{
    return "127.202." + std::to_string(getpid() >> 8 & 255) + "." + std::to_string(getpid() & 255);
}

class Simulator : public Process
{
public:
    explicit Simulator(std::vector<std::string> options = {}) : Process(words(std::move(options)))
    {
        std::array<char, 65536> line;
        if (read(line) == 0)
            give_up("skuan-sim does not start");
    }

private:
    static std::vector<std::string> words(std::vector<std::string> options)
    {
        options.insert(options.begin(), {SKUAN_SIM, "--address", own_address(), "--status-port", "0"});
        return options;
    }
};

/// A socket that counts what comes.
class Client
{
public:
    Client() : socket_(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_port = htons(8913);
        inet_pton(AF_INET, own_address().c_str(), &place.sin_addr);
        if (connect(socket_, reinterpret_cast<sockaddr*>(&place), sizeof place) != 0)
            give_up("connect");
    }
    ~Client() { close(socket_); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    int socket() const { return socket_; }

    void say(const std::string& command)
    {
        const std::string message = "<cmd><xid>1</xid>" + command + "</cmd>";
        if (send(socket_, message.data(), message.size(), MSG_NOSIGNAL) !=
            static_cast<ssize_t>(message.size()))
            give_up("send");
    }
    void ask(const std::string& command)
    {
        const long answered = replies;
        for (say(command); replies == answered;)
            take();
    }
    void take()
    {
        std::array<char, 65536> bytes;
        const ssize_t count = recv(socket_, bytes.data(), bytes.size(), 0);
        if (count <= 0)
            give_up("the simulator has closed the connection");
        for (ssize_t i = 0; i < count; ++i) { // messages are told apart by their ends
            reports += end_of_report_.is_over_at(bytes[static_cast<std::size_t>(i)]);
            replies += end_of_reply_.is_over_at(bytes[static_cast<std::size_t>(i)]);
        }
    }

    long reports = 0, replies = 0;

private:
    struct End
    {
        const char* text;
        int matched = 0;
        bool is_over_at(char c)
        {
            matched = c == text[matched] ? matched + 1 : c == '<';
            if (text[matched] != '\0')
                return false;
            matched = 0;
            return true;
        }
    };

    const int socket_;
    End end_of_report_{"</report>"}, end_of_reply_{"</reply>"};
};

/// Clients that are registered for all there is.
class Audience
{
public:
    Audience()
    {
        std::string channels, classes, others;
        for (char channel = 'A'; channel <= 'L'; ++channel)
            channels += std::string("<Channel>") + channel + "</Channel>";
        for (const char* name :
             {"status", "clipid", "speed", "timecode", "info", "listplay", "chaseplay", "aux_audio_timecode"})
            classes += std::string("<ChannelReportType>") + name + "</ChannelReportType>";
        for (const char* name :
             {"clip_change", "config_change", "disk_space", "temperature", "melt", "directory_change",
              "playlist_change", "chaselist_change", "export", "alerts", "chase_ltc_timecode", "ltc_input"})
            others += std::string("<ReportType>") + name + "</ReportType>";
        for (Client& client : clients) {
            client.ask("<channel_reports_register><ChannelSet>" + channels +
                       "</ChannelSet><ChannelReportSet>" + classes +
                       "</ChannelReportSet></channel_reports_register>");
            client.ask("<reports_register><ReportSet>" + others + "</ReportSet></reports_register>");
        }
    }

    /// Takes what comes within that time.
    void listen(Clock::duration time)
    {
        std::array<pollfd, client_count> sockets;
        for (std::size_t i = 0; i < client_count; ++i)
            sockets[i] = {clients[i].socket(), POLLIN, 0};
        const auto end = Clock::now() + time;
        for (auto left = time; left > left.zero(); left = end - Clock::now()) {
            poll(sockets.data(), client_count,
                 static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count()));
            for (std::size_t i = 0; i < client_count; ++i)
                if (sockets[i].revents != 0)
                    clients[i].take();
        }
    }

    long reports() const
    {
        long all = 0;
        for (const Client& client : clients)
            all += client.reports;
        return all;
    }

    std::array<Client, client_count> clients;
};

/// Counts of a run: of one core the share that the simulator took, and the reports a second to all clients.
void tell(benchmark::State& state, double cpu, double time, long reports)
{
    state.SetIterationTime(cpu);
    state.counters["core_percent"] = 100 * cpu / time;
    state.counters["reports_per_second"] = static_cast<double>(reports) / time;
}

template <class Work>
void measure(benchmark::State& state, const Simulator& simulator, Audience& audience, Work work)
{
    for (auto _ : state) {
        const double cpu = simulator.cpu_time();
        const long reports = audience.reports();
        const auto start = Clock::now();
        work();
        tell(state, simulator.cpu_time() - cpu, seconds_since(start), audience.reports() - reports);
    }
}

void idle(benchmark::State& state)
{
    const Simulator simulator;
    Audience audience;
    for (Client& client : audience.clients) // or it would hear the timecode at the server's input
        client.ask("<report_unregister><ReportType>ltc_input</ReportType></report_unregister>");
    audience.listen(std::chrono::milliseconds(200));
    measure(state, simulator, audience, [&] { audience.listen(measured); });
}
BENCHMARK(idle)->Name("Idle20Clients/ours")->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

void twelve_channels(benchmark::State& state)
{
    const auto seed = std::filesystem::temp_directory_path() / ("skuan_bench_" + std::to_string(getpid()));
    std::ofstream(seed)
        << "<state><configuration><item><ConfigurationItemName>VideoStandard</ConfigurationItemName>"
           "<ConfigurationItemValue>1080_60i</ConfigurationItemValue></item></configuration></state>";
    const Simulator simulator({"--from", seed.string()});
    std::filesystem::remove(seed);
    Audience audience;
    for (char channel = 'A'; channel <= 'L'; ++channel) {
        const std::string tag = std::string("<Channel>") + channel + "</Channel>";
        audience.clients[0].ask("<cue_clip>" + tag + "<ClipID>sports/derby_1st_half</ClipID></cue_clip>");
        audience.clients[0].ask("<play>" + tag + "</play>");
    }
    audience.listen(std::chrono::milliseconds(200));
    measure(state, simulator, audience, [&] { audience.listen(measured); });
}
BENCHMARK(twelve_channels)
    ->Name("TwelveChannels20Clients/ours")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

void reports(benchmark::State& state)
{
    const Simulator simulator;
    Audience audience;
    Client author;
    long told = 0;
    measure(state, simulator, audience, [&] {
        const auto start = Clock::now();
        for (auto due = start; due < start + measured; due += std::chrono::milliseconds(10)) {
            for (int i = 0; i < 10; ++i, ++told)
                author.say(
                    "<modify_clip_attributes><ClipID>news/weather_tonight</ClipID><ClipAttrChange><Title>x"
                    "</Title></ClipAttrChange></modify_clip_attributes>");
            while (author.replies < told)
                author.take();
            audience.listen(due + std::chrono::milliseconds(10) - Clock::now());
        }
    });
    audience.listen(std::chrono::milliseconds(200));
    long least = told;
    for (const Client& client : audience.clients)
        least = std::min(least, client.reports);
    if (least < told)
        state.SkipWithError("a client has missed reports");
}
BENCHMARK(reports)
    ->Name("Reports1000To20Clients/ours")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

void start(benchmark::State& state)
{
    for (auto _ : state) {
        const auto began = Clock::now();
        const Simulator simulator;
        state.SetIterationTime(seconds_since(began));
    }
}
BENCHMARK(start)->Name("Start/ours")->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

void clip_list(benchmark::State& state)
{
    constexpr long clips = 100'000;
    const Simulator simulator({"--clip-count", std::to_string(clips)});
    for (auto _ : state) {
        std::array<char, 65536> buffer;
        const auto began = Clock::now();
        Process list({SKUANCTL, "--host", own_address(), "clip", "list"});
        long lines = 0;
        double first = 0;
        while (const std::size_t count = list.read(buffer)) {
            first = lines == 0 ? seconds_since(began) : first;
            lines += std::count(buffer.data(), buffer.data() + count, '\n');
        }
        const double time = seconds_since(began);
        state.SetIterationTime(time);
        state.counters["first_line_ms"] = 1e3 * first;
        state.counters["us_per_clip"] = 1e6 * time / clips;
        state.counters["peak_MB"] = list.wait();
        if (lines != clips)
            state.SkipWithError("clips are missing");
    }
}
BENCHMARK(clip_list)
    ->Name("ClipList100000/ours")
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

} // namespace
