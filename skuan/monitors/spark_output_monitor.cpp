// Following the routing, and taking from the source what is wanted.
#include <skuan/monitors/spark_output_monitor.h>

#include <skuan/foundation/atimer.h>
#include <skuan/monitors/channel_values_p.h>
#include <skuan/monitors/output_source_p.h>
#include <skuan/monitors/spark_channel_monitor.h>
#include <skuan/session/spark.h>

using skuan::all_channel_values;

SparkOutputMonitor::SparkOutputMonitor(Spark* spark, unsigned output)
    : SparkMonitor(spark), spark_(spark), output_(output), look_up_(new ATimer(true, this))
{
    setObjectName(QStringLiteral("SparkOutputMonitor %1").arg(output));
    connect(spark->channel_config(), &CFChannelConfig::changed, look_up_, qOverload<>(&ATimer::start));
    connect(look_up_, &ATimer::timeout, this, &SparkOutputMonitor::cf_changed);
    look_up_->start();
}

SparkOutputMonitor::~SparkOutputMonitor() = default;

void SparkOutputMonitor::cf_changed()
{
    const auto channel = skuan::output_source(*spark_->channel_config(), output_);
    set_channel_monitor(channel ? spark_->get_channel_monitor(channel.value()) : nullptr);
}

void SparkOutputMonitor::set_channel_monitor(SparkChannelMonitor* source)
{
    if (source == source_)
        return;
    if (source_)
        disconnect(source_, nullptr, this, nullptr);
    values_ = {};
    source_ = source;
    if (!source) {
        emit_all();
        return;
    }
    // The source tells what it has to each new connection, which comes in below.
    for (const ChannelValue value : all_channel_values)
        if (wants(value) && source_ == source) // slots may have brought about another one
            wish_changed(value);
}

void SparkOutputMonitor::emit_all()
{
    for (const ChannelValue value : all_channel_values)
        tell(value);
}

// "report_x" of the source goes to "ch_x" here: once, also where a slot has brought it about already while
// `set_channel_monitor` was on its way to it.
void SparkOutputMonitor::wish_changed(ChannelValue value)
{
    if (!source_)
        return;
    const QMetaMethod& report = signal(value);
    const QByteArray name = report.methodSignature().replace("report_", "ch_");
    const QMetaMethod slot = staticMetaObject.method(staticMetaObject.indexOfSlot(name));
    if (wants(value))
        connect(source_, report, this, slot, Qt::UniqueConnection);
    else
        disconnect(source_, report, this, slot);
}

void SparkOutputMonitor::ch_status(KVRP3::ChannelStatus status)
{
    values_.status = status;
    tell(ChannelValue::status);
}

void SparkOutputMonitor::ch_clipid(const QString& clip)
{
    values_.clipid = clip;
    tell(ChannelValue::clipid);
}

void SparkOutputMonitor::ch_speed(int speed)
{
    values_.speed = speed;
    tell(ChannelValue::speed);
}

void SparkOutputMonitor::ch_timecodes(unsigned position, const Vantor::ATimecode& display,
                                      const Vantor::ATimecode& input)
{
    values_.timecodes = {position, display, input};
    tell(ChannelValue::timecodes);
}

void SparkOutputMonitor::ch_clip_position(unsigned position)
{
    values_.timecodes.clip_position = position;
    tell(ChannelValue::clip_position);
}

void SparkOutputMonitor::ch_aux_position(unsigned position)
{
    values_.aux_position = position;
    tell(ChannelValue::aux_position);
}

void SparkOutputMonitor::ch_display_timecode(const Vantor::ATimecode& display)
{
    values_.timecodes.display_timecode = display;
    tell(ChannelValue::display_timecode);
}

void SparkOutputMonitor::ch_input_timecode(const Vantor::ATimecode& input)
{
    values_.timecodes.input_timecode = input;
    tell(ChannelValue::input_timecode);
}

void SparkOutputMonitor::ch_information(const KVRP3::ChannelInformation& information)
{
    values_.information = information;
    tell(ChannelValue::information);
}

void SparkOutputMonitor::ch_playback_mode(const AOption<KVRP3::Playback>& mode)
{
    values_.playback_mode = mode;
    tell(ChannelValue::playback_mode);
}
