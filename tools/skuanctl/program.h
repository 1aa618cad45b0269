// The verb against each of the hosts at once, and the exit code of it all.
#pragma once

#include <skuanctl/interrupt.h>
#include <skuanctl/run.h>

/// Lives on the main thread, in QCoreApplication's event loop, which it ends with the exit code: that of the
/// first host, in their order, whose run failed.
class Program : public QObject
{
    Q_OBJECT
public:
    explicit Program(const Options& options);

    /// Within the event loop.
    void start();

private:
    void run_ended();
    void exit(ExitCode code);

    const Options options_;
    Output output_;
    Interrupt interrupt_;
    std::vector<std::unique_ptr<Run>> runs_;
    std::vector<ExitCode> codes_; // of the runs, in their order
    std::size_t running_ = 0;
    bool over_ = false;
};
