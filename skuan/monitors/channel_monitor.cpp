// Which signal needs which report, and when the server is asked for it.
#include <skuan/monitors/channel_monitor.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/monitors/channel_reports_p.h>
#include <skuan/monitors/channel_values_p.h>
#include <skuan/monitors/spark_channel_monitor.h>
#include <skuan/session/spark.h>

#include <utility>

using namespace KVRP3;
using skuan::all_channel_values;
using skuan::report_of;

namespace {

// Two signals lack one or the other, which is meant.

/// A new receiver has the report registered for, if there is a connection.
bool registers(ChannelValue value)
{
    return value != ChannelValue::playback_mode;
}

/// When a connection begins, having a receiver has the report registered for.
bool registers_again(ChannelValue value)
{
    return value != ChannelValue::timecodes;
}

} // namespace

ChannelMonitor::ChannelMonitor(QObject* parent) : ChannelSignals(parent) {}

ChannelMonitor::~ChannelMonitor() = default;

void ChannelMonitor::config(Spark* session, Channel channel)
{
    config_api(session);
    config_channel(channel);
}

void ChannelMonitor::config_api(Spark* session)
{
    if (api_ == session)
        return;
    if (!SKUAN_CHECK(api_ == nullptr)) {
        disconnect(api_, nullptr, this, nullptr);
        if (const SparkChannelMonitor* const former = is_configured_ ? api_->toMonitor(channel_) : nullptr)
            disconnect(former->reports(), nullptr, this, nullptr);
    }
    api_ = session;
    check_config_done();
}

void ChannelMonitor::config_channel(Channel channel)
{
    if (is_configured_) {
        (void)SKUAN_CHECK(channel == channel_);
        return;
    }
    setObjectName(QStringLiteral("ChannelMonitor%1").arg(static_cast<unsigned>(channel)));
    channel_ = channel;
    is_configured_ = true;
    check_config_done();
}

void ChannelMonitor::check_config_done()
{
    if (!api_ || !is_configured_)
        return;
    connect(api_, &Spark::connected, this, &ChannelMonitor::connected);
    connect(api_, &Spark::disconnected, this, &ChannelMonitor::disconnected);
    if (const SparkChannelMonitor* const sessions_own = api_->toMonitor(channel_)) {
        using skuan::ChannelReports;
        const ChannelReports* const reports = sessions_own->reports();
        connect(reports, &ChannelReports::status, this, &ChannelMonitor::report_channel_status);
        connect(reports, &ChannelReports::clipid, this, &ChannelMonitor::report_channel_clipid);
        connect(reports, &ChannelReports::speed, this, &ChannelMonitor::report_channel_speed);
        connect(reports, &ChannelReports::timecode, this, &ChannelMonitor::report_channel_timecode);
        connect(reports, &ChannelReports::info, this, &ChannelMonitor::report_channel_info);
        connect(reports, &ChannelReports::aux_audio_timecode, this,
                &ChannelMonitor::report_channel_aux_audio_timecode);
    }
    if (!std::exchange(is_subscribed_, true))
        for (const ChannelValue value : all_channel_values)
            if (registers(value)) // and nothing is done when receivers go
                add_sigattach_monitor(signature(value), "1attached (QByteArray)");
    if (is_connected())
        connected();
}

bool ChannelMonitor::is_connected() const
{
    return api_ && api_->is_connected();
}

bool ChannelMonitor::has_receiver(ChannelReportType report) const
{
    for (const ChannelValue value : all_channel_values)
        if (report_of(value) == report && registers_again(value) && isSignalConnected(signal(value)))
            return true;
    return false;
}

bool ChannelMonitor::serves(ChannelReportType report, const char* sig)
{
    for (const ChannelValue value : all_channel_values)
        if (report_of(value) == report && signature(value) == sig)
            return true;
    return false;
}

void ChannelMonitor::attached(const QByteArray& sig)
{
    for (const ChannelValue value : all_channel_values)
        if (signature(value) == sig)
            register_report(report_of(value));
}

void ChannelMonitor::register_report(ChannelReportType report)
{
    if (!is_connected()) {
        if (report == ChannelReportType_timecode)
            reemit_timecode();
    } else if (SparkChannelMonitor* const sessions_own = api_->toMonitor(channel_)) {
        sessions_own->register_for_good(report);
    }
}

void ChannelMonitor::connected()
{
    for (const ChannelReportType report :
         {ChannelReportType_status, ChannelReportType_clipid, ChannelReportType_speed,
          ChannelReportType_timecode, ChannelReportType_info, ChannelReportType_aux_audio_timecode})
        if (is_connected() &&
            (has_receiver(report) || (report == ChannelReportType_timecode && timecode_uses_ != 0)))
            register_report(report);
}

void ChannelMonitor::disconnected()
{
    const ChannelValues initial;
    report_channel_status(initial.status, {});
    report_channel_clipid({});
    report_channel_speed(initial.speed);
    report_channel_timecode(initial.timecodes);
    report_channel_info(initial.information);
    report_channel_aux_audio_timecode(initial.aux_position);
}

void ChannelMonitor::report_channel_status(ChannelStatus status, const AOption<AString>& clip)
{
    Q_EMIT sig_status(status);
    if (clip)
        report_channel_clipid(clip.value());
}

void ChannelMonitor::report_channel_clipid(const AString& clip)
{
    Q_EMIT sig_clipid(clip);
}

void ChannelMonitor::report_channel_speed(Speed speed)
{
    Q_EMIT sig_speed(speed);
}

void ChannelMonitor::report_channel_timecode(const ChannelTimecodes& timecodes)
{
    timecodes_ = timecodes;
    Q_EMIT sig_timecodes(timecodes.clip_position, timecodes.display_timecode, timecodes.input_timecode);
    reemit_timecode();
}

void ChannelMonitor::reemit_timecode()
{
    Q_EMIT sig_clip_position(timecodes_.clip_position);
    Q_EMIT sig_display_timecode(timecodes_.display_timecode);
    Q_EMIT sig_input_timecode(timecodes_.input_timecode);
}

void ChannelMonitor::report_channel_info(const ChannelInformation& information)
{
    Q_EMIT sig_channel_information(information);
    Q_EMIT sig_playback_mode(information.has_playback ? AOption<Playback>(information.playback)
                                                      : AOption<Playback>());
}

void ChannelMonitor::report_channel_aux_audio_timecode(ClipPosition position)
{
    Q_EMIT sig_aux_position(position);
}

void ChannelMonitor::timecode_use_add()
{
    if (timecode_uses_++ == 0)
        register_report(ChannelReportType_timecode);
}

void ChannelMonitor::timecode_use_remove()
{
    --timecode_uses_;
}
