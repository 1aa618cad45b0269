// A stopwatch with many hands: how long a program spends in what it names.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/hr_time.h>

/// A run begins and ends with a MeasureRun, and in between each Measure adds its life to the total of its
/// name. What the run took as a whole has the name "Total".
///
/// The totals are the process's, and measures do not lock: a run and its measures belong to one thread at a
/// time.
namespace TimeRat {

class SKUAN_EXPORT Measure
{
public:
    /// `name` is kept, not copied: a literal.
    explicit Measure(const char* name) : name_(name), start_(HRTime::now()) {}
    ~Measure();
    Measure(const Measure&) = delete;
    Measure& operator=(const Measure&) = delete;

private:
    const char* name_;
    HRTime start_;
};

class SKUAN_EXPORT MeasureRun
{
public:
    /// Ends the run before, if it still goes on, and forgets its totals.
    MeasureRun();
    /// Logs all totals under `skuan.timerat`, for debugging: "NAME:", a tab and the time, in order of names.
    ~MeasureRun();
    MeasureRun(const MeasureRun&) = delete;
    MeasureRun& operator=(const MeasureRun&) = delete;
};

} // namespace TimeRat
