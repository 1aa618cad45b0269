// Looking which signals have receivers.
#include <skuan/monitors/spark_monitor.h>

#include <skuan/monitors/channel_values_p.h>
#include <skuan/monitors/look_later_p.h>

using skuan::all_channel_values;

namespace {

struct Row
{
    QMetaMethod signal;
    void (SparkMonitor::*emit_value)();
};

const Row& row(ChannelValue value)
{
    using S = SparkMonitor;
    static const Row table[channel_value_count] = {
        {QMetaMethod::fromSignal(&S::report_status), &S::emit_status},
        {QMetaMethod::fromSignal(&S::report_clipid), &S::emit_clipid},
        {QMetaMethod::fromSignal(&S::report_speed), &S::emit_speed},
        {QMetaMethod::fromSignal(&S::report_timecodes), &S::emit_timecodes},
        {QMetaMethod::fromSignal(&S::report_clip_position), &S::emit_clip_position},
        {QMetaMethod::fromSignal(&S::report_aux_position), &S::emit_aux_position},
        {QMetaMethod::fromSignal(&S::report_display_timecode), &S::emit_display_timecode},
        {QMetaMethod::fromSignal(&S::report_input_timecode), &S::emit_input_timecode},
        {QMetaMethod::fromSignal(&S::report_information), &S::emit_information},
        {QMetaMethod::fromSignal(&S::report_playback_mode), &S::emit_playback_mode},
    };
    return table[static_cast<unsigned>(value)];
}

} // namespace

SparkMonitor::SparkMonitor(QObject* session)
    : QObject(session), look_later_(std::make_unique<skuan::LookLater>())
{
}

SparkMonitor::~SparkMonitor() = default;

const QMetaMethod& SparkMonitor::signal(ChannelValue value)
{
    return row(value).signal;
}

void SparkMonitor::emit_timecodes()
{
    const Timecodes& now = values_.timecodes;
    Q_EMIT report_timecodes(now.clip_position, now.display_timecode, now.input_timecode);
}

void SparkMonitor::tell(ChannelValue value)
{
    if (wants(value))
        (this->*row(value).emit_value)();
}

void SparkMonitor::connectNotify(const QMetaMethod& connected)
{
    for (const ChannelValue value : all_channel_values)
        if (signal(value) == connected) {
            look(value);
            tell(value);
        }
}

void SparkMonitor::disconnectNotify(const QMetaMethod&)
{
    look_later_->start(this, &SparkMonitor::look);
}

void SparkMonitor::look()
{
    for (const ChannelValue value : all_channel_values)
        look(value);
}

void SparkMonitor::look(ChannelValue value)
{
    const bool now = isSignalConnected(signal(value));
    if (now == wants(value))
        return;
    wanted_[static_cast<std::size_t>(value)] = now;
    wish_changed(value);
}
