// Every example does what its first lines promise, and ends when there is no server.
#include <support/program.h>
#include <support/station.h>

#include <gmock/gmock.h>

using support::run;
using testing::EndsWith;
using testing::StartsWith;

namespace {

QString path_of(const char* example)
{
    return QStringLiteral(EXAMPLES_FOLDER "/") + QLatin1String(example);
}

TEST(Examples, SayWhatTheServerAnswers)
{
    support::need_application();
    const support::Station station("Köln <2>");
    const struct
    {
        const char *example, *beginning, *end;
    } rows[] = {
        {"01_ask_name", "Köln <2>\n", ""},
        {"02_ask_name_qt", "Köln <2>\n", ""},
        {"03_list_clips", "bars_and_tone\n", "\n22 clips\n"},
        {"04_watch_reports", "made: rushes\n", ""},
        {"05_clip_info", "bars_and_tone: ", " tracks\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.example);
        const auto ran = run(path_of(row.example), {station.address().toString()});
        EXPECT_EQ(ran.code, 0);
        EXPECT_THAT(ran.out.toStdString(), StartsWith(row.beginning));
        EXPECT_THAT(ran.out.toStdString(), EndsWith(row.end));
        EXPECT_EQ(ran.err, "");
    }
}

// 01_ask_name goes on trying for ten seconds by design, so it is not asked here.
TEST(Examples, EndWithoutAServer)
{
    support::need_application();
    const QString nobody = QString::fromStdString(support::own_loopback_address());
    for (const char* example : {"02_ask_name_qt", "03_list_clips", "04_watch_reports", "05_clip_info"}) {
        const auto ran = run(path_of(example), {nobody});
        EXPECT_EQ(ran.code, 1) << example;
        EXPECT_THAT(ran.err.toStdString(), EndsWith(": no connection\n")) << example;
    }
}

} // namespace
