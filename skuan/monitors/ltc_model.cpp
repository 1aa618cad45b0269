// Both ends of a connection make what was known void.
#include <skuan/monitors/ltc_model.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/session/spark.h>

LTCModel::LTCModel(Spark* spark, QObject* parent) : QObject(parent), spark_(spark)
{
    if (!SKUAN_CHECK(spark))
        return;
    connect(spark, &Spark::connected, this, &LTCModel::connected);
    connect(spark, &Spark::disconnected, this, &LTCModel::disconnected);
    connect(spark, &Spark::report_ltc_timecode, this, &LTCModel::report_ltc_timecode);
    if (spark->is_connected())
        connected();
}

void LTCModel::connected()
{
    Spark* const spark = spark_; // a slot may end this
    set({});
    spark->cmd_report_register(KVRP3::ReportType_ltc_input);
}

void LTCModel::disconnected()
{
    set({});
}

void LTCModel::report_ltc_timecode(const KVRP3::Timecode& timecode)
{
    set(Vantor::ATimecode(timecode));
}

void LTCModel::set(const Vantor::ATimecode& value)
{
    if (value_ == value)
        return;
    value_ = value;
    Q_EMIT changed();
}
