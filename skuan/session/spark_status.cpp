// Compares what is with what was told, so that whatever changes often costs nothing by itself.
#include <skuan/session/spark_status.h>

#include <skuan/foundation/atimer.h>
#include <skuan/session/spark.h>

#include <tuple>

namespace {

bool differ(const SparkStatus::Values& a, const SparkStatus::Values& b)
{
    const auto all = [](const SparkStatus::Values& v) {
        return std::tie(v.state, v.attempts, v.connections, v.last_error, v.traffic, v.outstanding_commands);
    };
    return !(all(a) == all(b));
}

} // namespace

SparkStatus::SparkStatus(Spark* spark) : QObject(spark), spark_(spark), look_soon_(new ATimer(true, this))
{
    connect(look_soon_, &ATimer::timeout, this, &SparkStatus::look);
    connect(spark, &Spark::stateChanged, look_soon_, qOverload<>(&ATimer::start));
}

SparkStatus::Values SparkStatus::values() const
{
    Values values;
    values.state = spark_->is_connected()                                    ? State::connected
                   : std::holds_alternative<std::monostate>(spark_->server_) ? State::no_server
                                                                             : State::trying;
    values.attempts = attempts_;
    values.connections = spark_->generation();
    values.last_error = last_error();
    values.traffic = spark_->traffic();
    values.outstanding_commands = spark_->outstanding_commands();
    return values;
}

AOption<std::chrono::milliseconds> SparkStatus::next_attempt() const
{
    if (std::holds_alternative<std::monostate>(spark_->server_) ||
        spark_->socket_state() != QAbstractSocket::UnconnectedState)
        return {};
    return std::chrono::milliseconds(spark_->attempts_->remainingTime());
}

// A socket forgets its error when it has to go.
QString SparkStatus::last_error() const
{
    const QString present = spark_->error_text();
    return present.isEmpty() ? error_before_ : present;
}

void SparkStatus::count_attempt()
{
    error_before_ = last_error();
    ++attempts_;
}

void SparkStatus::look()
{
    const Values now = values();
    if (!differ(now, told_))
        return;
    told_ = now;
    Q_EMIT changed();
}
