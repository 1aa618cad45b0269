// Signals through a pipe: a handler may do little more than write.
#include <simulator/platform_stop_p.h>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace simulator {

namespace {
int pipe_ends[2] = {-1, -1};

void on_signal(int)
{
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(pipe_ends[1], &byte, 1);
}

void handle_signals(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT})
        ::sigaction(number, &action, nullptr);
}
} // namespace

StopSignal::StopSignal(QObject* parent) : QObject(parent)
{
    if (::pipe(pipe_ends) != 0)
        return; // then a signal ends the process in the system's own way
    for (const int end : pipe_ends)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    notifier_ = std::make_unique<QSocketNotifier>(pipe_ends[0], QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (::read(pipe_ends[0], &byte, 1) == 1)
            Q_EMIT stop();
    });
    handle_signals(on_signal);
}

StopSignal::~StopSignal()
{
    if (!notifier_)
        return;
    handle_signals(SIG_DFL);
    notifier_.reset();
    ::close(pipe_ends[0]);
    ::close(pipe_ends[1]);
}

} // namespace simulator
