// The totals of the process.
#include <skuan/time/timerat.h>

#include <skuan/foundation/portable_mutex.h>

#include <QLoggingCategory>

#include <map>
#include <optional>
#include <string>

Q_LOGGING_CATEGORY(logTimeRat, "skuan.timerat", QtWarningMsg)

namespace TimeRat {

namespace {

struct Totals
{
    PortableMutex mutex; ///< of runs; a Measure does not lock, meant so
    std::map<std::string, HRTime> by_name;
    std::optional<Measure> run;
};

/// Never destroyed: measures may outlive whatever is.
Totals& totals()
{
    static Totals& all = *new Totals;
    return all;
}

} // namespace

Measure::~Measure()
{
    HRTime& total = totals().by_name[name_ ? name_ : ""];
    if (start_.is_badtime())
        return;
    const HRTime spent = HRTime::now() - start_;
    total = total.is_badtime() ? spent : total + spent;
}

MeasureRun::MeasureRun()
{
    Totals& all = totals();
    const PortableMutexLock lock(all.mutex);
    all.run.reset();
    all.by_name.clear();
    all.run.emplace("Total");
}

MeasureRun::~MeasureRun()
{
    Totals& all = totals();
    const PortableMutexLock lock(all.mutex);
    all.run.reset();
    const auto by_name = all.by_name; // whoever takes what is logged may measure too
    for (const auto& [name, total] : by_name)
        qCDebug(logTimeRat, "%s:\t%s", name.c_str(), total.to_string().c_str());
}

} // namespace TimeRat
