// How long a verb stays for reports: --count, --listen and --timeout.
#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

class Run;

/// Of one run. Lives on the main thread.
class Patience
{
public:
    /// `enough` is called when --listen has passed, if that ends the run well.
    Patience(Run& run, std::function<void()> enough);

    /// Whether the verb stays at all.
    bool is_asked() const;

    /// From now on time counts.
    void begin();

    /// One more report has come.
    void count();

    /// As many have come as were asked for.
    bool is_over() const;

private:
    void listened_long_enough();
    void fail(std::chrono::milliseconds within);

    Run& run_;
    const std::function<void()> enough_;
    int reports_ = 0;
    QTimer listening_; // for all reports
    QTimer hearing_;   // for the next one
};
