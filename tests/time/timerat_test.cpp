// A run of measures, on a clock that does what the test says.
#include <skuan/foundation/hr_clock_p.h>
#include <skuan/time/timerat.h>

#include <QLoggingCategory>

#include <gtest/gtest.h>

namespace {

std::int64_t ns = 1;
std::string logged;

void elapse(std::int64_t ms)
{
    ns += ms * 1'000'000;
}

TEST(TimeRat, adds_up_by_name_and_logs_in_order)
{
    const auto machine = skuan::hr_clock.exchange([] { return ns; });
    QLoggingCategory::setFilterRules("skuan.timerat.debug=true");
    const auto handler =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& context, const QString& text) {
            if (type == QtDebugMsg && std::string(context.category) == "skuan.timerat")
                logged += text.toStdString() + '\n';
        });
    {
        const TimeRat::MeasureRun run;
        for (int i = 0; i != 3; ++i) {
            const TimeRat::Measure outer("read");
            elapse(10);
            const TimeRat::Measure inner("decode");
            elapse(5);
        }
    }
    EXPECT_EQ(logged, "Total:\t0.045\ndecode:\t0.015\nread:\t0.045\n");
    logged.clear();
    {
        const TimeRat::MeasureRun first;
        const TimeRat::Measure late("late"); // ends within the second run's totals
        elapse(1);
        const TimeRat::MeasureRun second; // forgets the first
        elapse(2);
    }
    EXPECT_EQ(logged, "Total:\t0.002\nTotal:\t0.002\nlate:\t0.003\n");
    qInstallMessageHandler(handler);
    QLoggingCategory::setFilterRules({});
    skuan::hr_clock = machine;
}

} // namespace
