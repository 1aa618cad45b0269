// Staying connected, and what is asked of the server on every connection.
#include <skuan/session/spark.h>

#include <skuan/config/cf_channel_config.h>
#include <skuan/config/cf_model.h>
#include <skuan/config/us_model.h>
#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/atimer.h>
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
    cf_model_ = CFModel::create(local, this);
    us_model_ = USModel::create(local, this);
    channel_config_ = new CFChannelConfig(cf_model_, us_model_, this);

    status_ = new SparkStatus(this);

    attempts_ = new ATimer(this);
    connect(attempts_, &ATimer::timeout, this, &Spark::stay_connected);
    attempts_->start(attempt_interval);
    connect(this, &Spark::indirect_send, this, &Spark::slot_indirect_send, Qt::QueuedConnection);
    connect(this, &Spark::connected, this, &Spark::slot_connected);
}

Spark::~Spark() = default;

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
