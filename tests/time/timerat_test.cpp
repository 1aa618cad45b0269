// A run of measures, on a clock that does what the test says.
#include <skuan/time/timerat.h>

#include <support/hand_clock.h>

#include <QLoggingCategory>

#include <gtest/gtest.h>

namespace {

std::string logged;

TEST(TimeRat, adds_up_by_name_and_logs_in_order)
{
    support::HandClock clock(1000);
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
            clock.advance(10);
            const TimeRat::Measure inner("decode");
            clock.advance(5);
        }
    }
    EXPECT_EQ(logged, "Total:\t0.045\ndecode:\t0.015\nread:\t0.045\n");
    logged.clear();
    {
        const TimeRat::MeasureRun first;
        const TimeRat::Measure late("late"); // ends within the second run's totals
        clock.advance(1);
        const TimeRat::MeasureRun second; // forgets the first
        clock.advance(2);
    }
    EXPECT_EQ(logged, "Total:\t0.002\nTotal:\t0.002\nlate:\t0.003\n");
    qInstallMessageHandler(handler);
    QLoggingCategory::setFilterRules({});
}

} // namespace
