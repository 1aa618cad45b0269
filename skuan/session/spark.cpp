// Staying connected, and what is asked of the server on every connection.
#include <skuan/session/spark.h>

#include <skuan/config/cf_channel_config.h>
#include <skuan/config/cf_model.h>
#include <skuan/config/us_model.h>
#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/athread.h>
#include <skuan/foundation/atimer.h>
#include <skuan/monitors/alert_model.h>
#include <skuan/monitors/spark_channel_monitor.h>
#include <skuan/monitors/spark_output_monitor.h>
#include <skuan/monitors/spark_timecode.h>
#include <skuan/platform/host_name.h>
#include <skuan/session/spark_status.h>

namespace {
constexpr int attempt_interval = 200; // ms
}

Spark::Spark(const QString& server, QObject* parent)
    : Spark(server == QString::fromStdString(skuan::platform::host_name()), parent)
{
}

Spark::Spark(bool local, QObject* parent) : KVRP3::APIQt(parent)
{
    setObjectName(QStringLiteral("Spark"));
    timecode_ = new SparkTimecode;
    timecode_->thread()->setParent(this); // or it would need an event loop to go
    timecode_pacing_ = new ATimer(true, this);
    connect(timecode_, &SparkTimecode::timecode_available, timecode_pacing_, qOverload<>(&ATimer::start));
    connect(timecode_pacing_, &ATimer::timeout, this, &Spark::process_timecode);
    connect(timecode_, &SparkTimecode::ltc_available, this, &Spark::process_ltc);

    cf_model_ = CFModel::create(local, this);
    us_model_ = USModel::create(local, this);
    channel_config_ = new CFChannelConfig(cf_model_, us_model_, this);

    status_ = new SparkStatus(this);

    attempts_ = new ATimer(this);
    connect(attempts_, &ATimer::timeout, this, &Spark::stay_connected);
    attempts_->start(attempt_interval);
    connect(this, &Spark::indirect_send, this, &Spark::slot_indirect_send, Qt::QueuedConnection);
    make_monitors();
    connect(this, &Spark::connected, this, &Spark::slot_connected);
}

Spark::~Spark()
{
    delete timecode_;
    delete alert_model_;
}

// Reports reach the monitors without the public signals, and so do those that somebody emits.
void Spark::make_monitors()
{
    for (unsigned i = 0; i != monitor_count; ++i)
        channel_monitors_[i] = new SparkChannelMonitor(this, i);
    for (unsigned i = 0; i != monitor_count; ++i)
        output_monitors_[i] = new SparkOutputMonitor(this, i);
    connect(this, &Spark::report_channel_status, this, &Spark::do_report_channel_status);
    connect(this, &Spark::report_channel_clipid, this, &Spark::do_report_channel_clipid);
    connect(this, &Spark::report_channel_speed, this, &Spark::do_report_channel_speed);
    connect(this, &Spark::report_channel_timecode, this, &Spark::do_report_channel_timecode);
    connect(this, &Spark::report_channel_aux_audio_timecode, this,
            &Spark::do_report_channel_aux_audio_timecode);
    connect(this, &Spark::report_channel_info, this, &Spark::do_report_channel_info);
}

CFModel* Spark::cf_model() const
{
    return cf_model_;
}

USModel* Spark::us_model() const
{
    return us_model_;
}

void Spark::set_server(const QString& name)
{
    server_ = name;
}

void Spark::set_server(const QHostAddress& address)
{
    const QHostAddress* const present = std::get_if<QHostAddress>(&server_);
    if (present && *present == address)
        return;
    if (socket_state() != QAbstractSocket::UnconnectedState)
        cut_off_socket();
    server_ = address;
    stay_connected();
}

void Spark::set_server_localhost()
{
    set_server(QHostAddress(QHostAddress::LocalHost));
    stay_connected();
}

void Spark::forget_server()
{
    server_.emplace<std::monostate>();
    abandon_connection();
}

// An attempt that is under way is left alone.
void Spark::stay_connected()
{
    status_->look();
    if (std::holds_alternative<std::monostate>(server_) ||
        socket_state() != QAbstractSocket::UnconnectedState)
        return;
    status_->count_attempt();
    if (const QString* const name = std::get_if<QString>(&server_))
        connect_to_server(*name);
    else if (const QHostAddress* const address = std::get_if<QHostAddress>(&server_))
        connect_to_server(*address);
}

void Spark::slot_connected()
{
    ++generation_;
    if (melt_notification_required_)
        cmd_report_register(KVRP3::ReportType_melt);
    if (export_notification_required_)
        cmd_report_register(KVRP3::ReportType_export);
    if (alert_model_)
        cmd_report_register(KVRP3::ReportType_alerts);
    for (unsigned i = 0; i < most_counted_channels; ++i) {
        if (notification_counts_[i] == 0)
            continue;
        // Whatever the listeners hold from the last connection goes; the server then tells the present state.
        const auto channel = static_cast<KVRP3::Channel>(i);
        Q_EMIT report_channel_listplay_unloaded(channel);
        cmd_channel_report_register(channel, KVRP3::ChannelReportType_listplay);
        Q_EMIT report_channel_chaseplay_unloaded(channel);
        cmd_channel_report_register(channel, KVRP3::ChannelReportType_chaseplay);
    }
    for (SparkChannelMonitor* const monitor : channel_monitors_)
        monitor->spark_connected();
}

void Spark::require_melt_notification()
{
    require(melt_notification_required_, KVRP3::ReportType_melt);
}

void Spark::require_export_notification()
{
    require(export_notification_required_, KVRP3::ReportType_export);
}

void Spark::require(bool& flag, KVRP3::ReportType type)
{
    if (!std::exchange(flag, true) && is_connected())
        cmd_report_register(type);
}

// Two threads may both make one; the second of them has made it in vain.
AlertModel* Spark::get_alert_model()
{
    if (AlertModel* const present = alert_model_)
        return present;
    auto* const made = new AlertModel(this);
    AlertModel* present = nullptr;
    if (!alert_model_.compare_exchange_strong(present, made)) {
        delete made;
        return present;
    }
    if (is_connected())
        cmd_report_register(KVRP3::ReportType_alerts);
    return made;
}

void Spark::request_listplay_notification(unsigned channel)
{
    request(channel, KVRP3::ChannelReportType_listplay);
}

void Spark::unrequest_listplay_notification(unsigned channel)
{
    unrequest(channel, KVRP3::ChannelReportType_listplay);
}

void Spark::request_chaseplay_notification(unsigned channel)
{
    request(channel, KVRP3::ChannelReportType_chaseplay);
}

void Spark::unrequest_chaseplay_notification(unsigned channel)
{
    unrequest(channel, KVRP3::ChannelReportType_chaseplay);
}

void Spark::request(unsigned channel, KVRP3::ChannelReportType type)
{
    if (!SKUAN_CHECK(channel < most_counted_channels))
        return;
    ++notification_counts_[channel];
    cmd_channel_report_register(static_cast<KVRP3::Channel>(channel), type);
}

void Spark::unrequest(unsigned channel, KVRP3::ChannelReportType type)
{
    if (!SKUAN_CHECK(channel < most_counted_channels) || !SKUAN_CHECK(notification_counts_[channel] != 0))
        return;
    if (--notification_counts_[channel] == 0)
        cmd_channel_report_unregister(static_cast<KVRP3::Channel>(channel), type);
}

SparkChannelMonitor* Spark::get_channel_monitor(unsigned channel) const
{
    return SKUAN_CHECK(channel < monitor_count) ? channel_monitors_[channel] : nullptr;
}

SparkOutputMonitor* Spark::get_output_monitor(unsigned output) const
{
    return SKUAN_CHECK(output < monitor_count) ? output_monitors_[output] : nullptr;
}

SparkChannelMonitor* Spark::toMonitor(KVRP3::Channel channel) const
{
    const unsigned index = toIndex(channel);
    return index < monitor_count ? channel_monitors_[index] : nullptr;
}

void Spark::do_report_channel_status(KVRP3::Channel channel, KVRP3::ChannelStatus status,
                                     AOption<KVRP3::ClipID> clip)
{
    if (SparkChannelMonitor* const monitor = toMonitor(channel))
        monitor->spark_status(status, clip);
}

void Spark::do_report_channel_clipid(KVRP3::Channel channel, KVRP3::ClipID clip)
{
    if (SparkChannelMonitor* const monitor = toMonitor(channel))
        monitor->spark_clipid(clip);
}

void Spark::do_report_channel_speed(KVRP3::Channel channel, KVRP3::Speed speed)
{
    if (SparkChannelMonitor* const monitor = toMonitor(channel))
        monitor->spark_speed(speed);
}

void Spark::do_report_channel_timecode(KVRP3::Channel channel, KVRP3::ClipPosition position,
                                       KVRP3::DisplayTimecode display, KVRP3::InputTimecode input)
{
    if (SparkChannelMonitor* const monitor = toMonitor(channel))
        monitor->spark_timecode(position, display, input);
}

void Spark::do_report_channel_aux_audio_timecode(KVRP3::Channel channel, KVRP3::ClipPosition position)
{
    if (SparkChannelMonitor* const monitor = toMonitor(channel))
        monitor->spark_aux_audio_timecode(position);
}

void Spark::do_report_channel_info(KVRP3::Channel channel, KVRP3::ChannelInformation information)
{
    if (SparkChannelMonitor* const monitor = toMonitor(channel))
        monitor->spark_info(information);
}

bool Spark::parse_intercept(const XMLTree& message)
{
    if (!message.has_tag_z("report") || message.count_subnodes() != 1)
        return false;
    const XMLTree& body = message.get_subnodes().front();
    if (!body.has_tag_z("channel_timecode") && !body.has_tag_z("ltc_timecode"))
        return false;
    timecode_->add(generation_, message);
    if (!std::exchange(handing_over_timecodes_, true))
        QMetaObject::invokeMethod(this, &Spark::hand_over_timecodes, Qt::QueuedConnection);
    return true;
}

// The reports of a field come together, and are handed over together.
void Spark::hand_over_timecodes()
{
    handing_over_timecodes_ = false;
    timecode_->work_off();
}

// The next turn is asked for first: a slot may well run an event loop of its own.
void Spark::process_timecode()
{
    SparkTimecode::ChannelTimecode newest;
    if (!timecode_->take_timecode(generation_, &newest))
        return;
    timecode_pacing_->start();
    do_report_channel_timecode(newest.channel, newest.clip_position, newest.display, newest.input);
}

void Spark::process_ltc()
{
    KVRP3::Timecode newest;
    if (timecode_->take_ltc(generation_, &newest))
        do_report_ltc_timecode(newest);
}

void Spark::send(const void* data, unsigned length)
{
    Q_EMIT indirect_send(QByteArray(static_cast<const char*>(data), static_cast<int>(length)),
                         command_in_hand());
}

// Also the rest of a message whose beginning went to a connection that has ended: a new one gets none of it.
void Spark::slot_indirect_send(const QByteArray& bytes, quint64 command)
{
    if (!has_failed(command))
        KVRP3::APIQt::send(bytes.constData(), static_cast<unsigned>(bytes.size()));
}
