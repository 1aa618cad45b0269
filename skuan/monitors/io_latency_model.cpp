// One question, and its answer or none.
#include <skuan/monitors/io_latency_model.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/session/spark.h>

#include <QDebug>

#include <utility>

IOLatencyModel::IOLatencyModel(Spark* spark, QObject* parent) : QObject(parent), spark_(spark)
{
    if (!SKUAN_CHECK(spark))
        return;
    connect(spark, &Spark::connected, this, &IOLatencyModel::fetch_value);
    connect(&answers_, &KVRP3::CallbackGroup_set23::sig_io_latency, this, &IOLatencyModel::update);
    fetch_value();
}

void IOLatencyModel::fetch_value()
{
    qDebug("Fetching value...");
    spark_->cmd_get_io_latency(answers_);
}

void IOLatencyModel::update(unsigned value)
{
    qDebug("IO latency: %u", value);
    if (std::exchange(value_, value) != value)
        Q_EMIT changed();
}
