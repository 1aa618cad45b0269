// Counting reports, and the time between them.
#include <skuanctl/patience.h>
#include <skuanctl/run.h>

Patience::Patience(Run& run, std::function<void()> enough) : run_(run), enough_(std::move(enough))
{
    listening_.setSingleShot(true);
    QObject::connect(&listening_, &QTimer::timeout, &listening_, [this] { listened_long_enough(); });
    hearing_.setSingleShot(true);
    QObject::connect(&hearing_, &QTimer::timeout, &hearing_, [this] { fail(run_.options().timeout); });
}

bool Patience::is_asked() const
{
    const Options& options = run_.options();
    return options.verb->stay >= Stay::always || options.count || options.listen;
}

void Patience::begin()
{
    const Options& options = run_.options();
    if (options.listen)
        listening_.start(*options.listen);
    if (options.has_timeout && options.verb->stay != Stay::holding)
        hearing_.start(options.timeout);
}

void Patience::count()
{
    ++reports_;
    if (hearing_.isActive())
        hearing_.start();
}

bool Patience::is_over() const
{
    const auto& count = run_.options().count;
    return count && reports_ >= *count;
}

void Patience::listened_long_enough()
{
    if (run_.options().count)
        fail(*run_.options().listen);
    else
        enough_();
}

void Patience::fail(std::chrono::milliseconds within)
{
    const auto& count = run_.options().count;
    const QString came = count ? QStringLiteral("%1 of %2 reports came").arg(reports_).arg(*count)
                               : QStringLiteral("no report came");
    run_.fail({exit_timed_out, came + QStringLiteral(" within ") + in_seconds(within), {}});
}
