// Registering for what is wanted, and telling what is reported.
#include <skuan/monitors/spark_channel_monitor.h>

#include <skuan/monitors/channel_reports_p.h>
#include <skuan/monitors/channel_values_p.h>
#include <skuan/session/spark.h>

using namespace KVRP3;
using skuan::all_channel_values;
using skuan::ChannelReports;
using skuan::report_of;
using Vantor::ATimecode;

SparkChannelMonitor::SparkChannelMonitor(Spark* spark, unsigned channel)
    : SparkMonitor(spark),
      spark_(spark),
      channel_(static_cast<Channel>(channel)),
      reports_(new ChannelReports(this))
{
    setObjectName(QStringLiteral("SparkChannelMonitor %1").arg(channel));
}

SparkChannelMonitor::~SparkChannelMonitor() = default;

void SparkChannelMonitor::wish_changed(ChannelValue value)
{
    if (!needs(report_of(value), value))
        update_registry(report_of(value), wants(value));
}

bool SparkChannelMonitor::needs(ChannelReportType report, AOption<ChannelValue> besides) const
{
    for (const ChannelValue value : all_channel_values)
        if (report_of(value) == report && wants(value) && !(besides && besides.value() == value))
            return true;
    return false;
}

void SparkChannelMonitor::update_registry(ChannelReportType report, bool on)
{
    if (!spark_->is_connected())
        return; // `spark_connected` comes
    if (on)
        spark_->cmd_channel_report_register(channel_, report);
    else if (!for_good_[report])
        spark_->cmd_channel_report_unregister(channel_, report);
}

void SparkChannelMonitor::register_for_good(ChannelReportType report)
{
    for_good_.set(report);
    update_registry(report, true);
}

void SparkChannelMonitor::spark_connected()
{
    for_good_.reset();
    for (const ChannelReportType report :
         {ChannelReportType_status, ChannelReportType_clipid, ChannelReportType_speed,
          ChannelReportType_timecode, ChannelReportType_aux_audio_timecode, ChannelReportType_info})
        if (needs(report))
            update_registry(report, true);
}

void SparkChannelMonitor::spark_status(ChannelStatus status, const AOption<AString>& clip)
{
    values_.status = status;
    tell(ChannelValue::status);
    if (clip) {
        values_.clipid = clip.value();
        tell(ChannelValue::clipid);
    }
    Q_EMIT reports_->status(status, clip);
}

void SparkChannelMonitor::spark_clipid(const AString& clip)
{
    values_.clipid = clip;
    tell(ChannelValue::clipid);
    Q_EMIT reports_->clipid(clip);
}

void SparkChannelMonitor::spark_speed(Speed speed)
{
    values_.speed = speed;
    tell(ChannelValue::speed);
    Q_EMIT reports_->speed(speed);
}

void SparkChannelMonitor::spark_timecode(ClipPosition position, const KVRP3::Timecode& display,
                                         const KVRP3::Timecode& input)
{
    const Timecodes timecodes{position, ATimecode(display), ATimecode(input)};
    values_.timecodes = timecodes;
    tell(ChannelValue::timecodes);
    tell(ChannelValue::clip_position);
    tell(ChannelValue::display_timecode);
    tell(ChannelValue::input_timecode);
    Q_EMIT reports_->timecode(timecodes);
}

void SparkChannelMonitor::spark_info(const ChannelInformation& information)
{
    values_.information = information;
    tell(ChannelValue::information);
    tell(ChannelValue::playback_mode); // as it was: the information's own is not taken, which is meant
    Q_EMIT reports_->info(information);
}

void SparkChannelMonitor::spark_aux_audio_timecode(ClipPosition position)
{
    values_.aux_position = position;
    tell(ChannelValue::aux_position);
    Q_EMIT reports_->aux_audio_timecode(position);
}
