// The worked values in the page on timecode are what the library says.
#include <skuan/time/atimecode.h>
#include <skuan/time/timecode_fields.h>

#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

using namespace Vantor;

namespace {

TEST(TimecodePage, is_right)
{
    QFile page(TIMECODE_PAGE);
    ASSERT_TRUE(page.open(QFile::ReadOnly));
    int rows = 0;
    for (const QString& line : QString::fromUtf8(page.readAll()).remove('`').split('\n')) {
        QStringList cells = line.split(" | ");
        cells.front().remove("| ");
        cells.back().remove(" |");
        const VideoFrequency rate = toVideoFrequency(AString(cells[0]));
        if (!isValid(rate) || cells.size() < 3)
            continue;
        ++rows;
        SCOPED_TRACE(line.toStdString());
        const DropframeFlag flag = toDropframeFlag(AString(cells[1]));
        if (cells.size() == 7) {
            EXPECT_EQ(timecode_fields_per_second(rate, flag), cells[2].toUInt());
            EXPECT_EQ(timecode_fields_per_minute(rate, flag), cells[3].toUInt());
            EXPECT_EQ(timecode_fields_per_10minutes(rate, flag), cells[4].toUInt());
            EXPECT_EQ(timecode_fields_per_hour(rate, flag), cells[5].toUInt());
            EXPECT_EQ(timecode_fields_per_day(rate, flag), cells[6].toUInt());
        } else if (cells.size() == 4) {
            EXPECT_EQ(QString(ATimecode(rate, flag, cells[2].toUInt()).toString(4)), cells[3]);
        } else {
            EXPECT_EQ(ATimecode(rate, AString(cells[1])).get_nfields(), cells[2].toUInt());
        }
    }
    EXPECT_EQ(rows, 6 + 15 + 11);
    EXPECT_EQ((ATimecode(VideoFrequency_59_94Hz, AString("00,00,59,28")) + 4).toString(4).to_string(),
              "00,01,00,02"); // its first example
}

} // namespace
