// Runs begin together and end each by itself.
#include <skuanctl/program.h>

#include <QCoreApplication>

#include <algorithm>

Program::Program(const Options& options) : options_(options), output_(options.json)
{
    int widest = 0;
    for (const QString& host : options_.hosts)
        widest = std::max(widest, host.size());
    const int column = options_.hosts.size() > 1 ? widest : 0;
    codes_.resize(static_cast<std::size_t>(options_.hosts.size()), exit_ok);
    for (const QString& host : options_.hosts) {
        const std::size_t number = runs_.size();
        runs_.push_back(std::make_unique<Run>(options_, host, column, output_));
        connect(runs_.back().get(), &Run::ended, this, [this, number](ExitCode code) {
            codes_[number] = code;
            run_ended();
        });
    }
    running_ = runs_.size();

    connect(&interrupt_, &Interrupt::pressed, this, [this] {
        output_.flush();
        exit(exit_interrupted);
    });
    connect(&output_, &Output::broken, this, [this](const QString& why) {
        if (!why.isEmpty() && !over_)
            output_.error({exit_cannot_write, why, {}});
        exit(exit_cannot_write);
    });
}

void Program::start()
{
    for (const auto& run : runs_)
        run->start();
}

void Program::run_ended()
{
    if (--running_ > 0 || !output_.flush()) // should this break, it ends the program in its own way
        return;
    const auto failed =
        std::find_if(codes_.begin(), codes_.end(), [](ExitCode code) { return code != exit_ok; });
    exit(failed == codes_.end() ? exit_ok : *failed);
}

void Program::exit(ExitCode code)
{
    if (over_)
        return;
    over_ = true;
    QCoreApplication::exit(code);
}
