// One signal behind each column: connecting it is all there is to do.
#include <skuanctl/monitor_columns.h>

#include <skuan/monitors/spark_channel_monitor.h>
#include <skuan/monitors/tally_model.h>
#include <skuan/session/spark.h>

namespace {

using KVRP3::ChannelInformation;

QJsonValue text_or_null(const QString& text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonValue status_of(KVRP3::ChannelStatus status)
{
    return QString(ChannelStatus_to_string(status));
}

QJsonValue count_of(unsigned fields)
{
    return qint64(fields);
}

QJsonValue label_of(const Vantor::ATimecode& timecode)
{
    return timecode.is_defined() ? QJsonValue(QString(timecode.toString(4))) : QJsonValue();
}

QJsonValue multiple_of(int speed)
{
    return speed / 65536.0;
}

QJsonValue loop_of(const ChannelInformation& information)
{
    return information.has_loop ? QJsonValue(QString(Loop_to_string(information.loop))) : QJsonValue();
}

QJsonValue length_of(const ChannelInformation& information)
{
    return information.has_cliplength ? count_of(information.cliplength) : QJsonValue();
}

template <auto signal, auto value_of>
void follow(const ColumnFeed& feed)
{
    QObject::connect(feed.session.get_channel_monitor(feed.channel), signal, feed.receiver,
                     [take = feed.take](const auto& value) { take(value_of(value)); });
}

void follow_tally(const ColumnFeed& feed)
{
    static const char* const names[] = {"", "offline", "yellow", "red", "green"};
    auto* const tally = new TallyModel(feed.session.us_model(), feed.channel, feed.receiver);
    const auto tell = [tally, take = feed.take] { take(text_or_null(names[tally->get_state()])); };
    QObject::connect(tally, &TallyModel::changed, feed.receiver, tell);
    tell();
}

} // namespace

const std::vector<MonitorColumn>& monitor_columns()
{
    using M = SparkChannelMonitor;
    constexpr Qt::Alignment left = Qt::AlignLeft, right = Qt::AlignRight;
    static const std::vector<MonitorColumn> rows = {
        {"status", 11, left, true, follow<&M::report_status, status_of>},
        {"clip", 0, left, true, follow<&M::report_clipid, text_or_null>},
        {"position", 8, right, true, follow<&M::report_clip_position, count_of>},
        {"timecode", 11, right, true, follow<&M::report_display_timecode, label_of>},
        {"speed", 7, right, true, follow<&M::report_speed, multiple_of>},
        {"loop", 8, left, true, follow<&M::report_information, loop_of>},
        {"tally", 7, left, true, follow_tally},
        {"input", 11, right, false, follow<&M::report_input_timecode, label_of>},
        {"length", 8, right, false, follow<&M::report_information, length_of>},
    };
    return rows;
}
