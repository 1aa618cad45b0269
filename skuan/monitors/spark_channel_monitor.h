// One channel of a session's server as signals.
#pragma once

#include <skuan/monitors/spark_monitor.h>

class Spark;

namespace skuan {
class ChannelReports;
}

/// The session's own monitor of a channel, which it makes and owns: Spark::get_channel_monitor. The server is
/// registered with for a report exactly as long as a signal that the report serves has a receiver, on every
/// connection; what a ChannelMonitor has registered for stays so until the connection ends. Values stay when
/// a connection is lost, until a report brings others.
///
/// `report_playback_mode` always carries the unset value, whatever the channel's information says. That is
/// meant: who needs it reads the information.
class SKUAN_EXPORT SparkChannelMonitor : public SparkMonitor
{
    Q_OBJECT

public:
    ~SparkChannelMonitor() override;

    KVRP3::Channel channel() const { return channel_; }

protected:
    void wish_changed(ChannelValue value) override;

private:
    friend class ChannelMonitor;
    friend class Spark;

    SparkChannelMonitor(Spark* spark, unsigned channel);

    void spark_connected();
    void spark_status(KVRP3::ChannelStatus status, const AOption<AString>& clip);
    void spark_clipid(const AString& clip);
    void spark_speed(KVRP3::Speed speed);
    void spark_timecode(KVRP3::ClipPosition position, const KVRP3::Timecode& display,
                        const KVRP3::Timecode& input);
    void spark_info(const KVRP3::ChannelInformation& information);
    void spark_aux_audio_timecode(KVRP3::ClipPosition position);

    /// A monitor that is not the session's needs it for the rest of this connection.
    void register_for_good(KVRP3::ChannelReportType report);
    /// Everything that this one is told, for the monitors that are not the session's.
    const skuan::ChannelReports* reports() const { return reports_; }

    /// Whether a signal that this report serves is wanted, one signal aside.
    bool needs(KVRP3::ChannelReportType report, AOption<ChannelValue> besides = {}) const;
    void update_registry(KVRP3::ChannelReportType report, bool on);

    Spark* const spark_; ///< the parent
    const KVRP3::Channel channel_;
    skuan::ChannelReports* const reports_; ///< a child
    std::bitset<8> for_good_;              ///< by ChannelReportType: what is not unregistered
};
