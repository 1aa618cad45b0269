// One channel of a server as signals, for programs that make their monitors themselves.
#pragma once

#include <skuan/monitors/channel_signals.h>

#include <QPointer>

#include <atomic>

class Spark;

/// Follows a channel for whoever connects to its signals: it registers for the reports that they need, on
/// each connection of its session anew, and tells each report as it comes, changed or not. It never
/// unregisters: that is what a SparkChannelMonitor is for, and meant. Without a connection the values go back
/// to what they were at first, and the signals say so.
///
/// A receiver hears the next report. Only one of timecodes that comes while there is no connection makes
/// them be told at once, to all receivers.
///
/// Belongs to its maker, and lives on the session's thread, where everything here belongs. It may outlive
/// the session. A slot must not delete it, but may call `deleteLater`.
class SKUAN_EXPORT ChannelMonitor : public ChannelSignals
{
    Q_OBJECT

public:
    explicit ChannelMonitor(QObject* parent = nullptr);
    ~ChannelMonitor() override;

    // It follows nothing until it has both. The channel is set once: another one is reported, and changes
    // nothing. Another session, while the first one lives, is reported, and takes its place.

    void config(Spark* session, KVRP3::Channel channel);
    void config_api(Spark* session);
    void config_channel(KVRP3::Channel channel);
    /// Whether the channel has been set, to this one.
    bool channel_is(KVRP3::Channel channel) const { return is_configured_ && channel_ == channel; }

    // Whether a signal that this report serves has a receiver. For timecodes, `sig_timecodes` does not
    // count: with no other receivers, they are not registered for on a new connection. That is meant.

    bool has_receiver_status() const { return has_receiver(KVRP3::ChannelReportType_status); }
    bool has_receiver_clipid() const { return has_receiver(KVRP3::ChannelReportType_clipid); }
    bool has_receiver_speed() const { return has_receiver(KVRP3::ChannelReportType_speed); }
    bool has_receiver_info() const { return has_receiver(KVRP3::ChannelReportType_info); }
    bool has_receiver_timecode() const { return has_receiver(KVRP3::ChannelReportType_timecode); }
    bool has_receiver_aux_timecode() const
    {
        return has_receiver(KVRP3::ChannelReportType_aux_audio_timecode);
    }

    // Whether this is the signature of such a signal, normalised, in the form of SIGNAL. Any thread.

    static bool is_sig_status(const char* sig) { return serves(KVRP3::ChannelReportType_status, sig); }
    static bool is_sig_clipid(const char* sig) { return serves(KVRP3::ChannelReportType_clipid, sig); }
    static bool is_sig_speed(const char* sig) { return serves(KVRP3::ChannelReportType_speed, sig); }
    static bool is_sig_info(const char* sig) { return serves(KVRP3::ChannelReportType_info, sig); }
    static bool is_sig_timecode(const char* sig) { return serves(KVRP3::ChannelReportType_timecode, sig); }
    static bool is_sig_aux_timecode(const char* sig)
    {
        return serves(KVRP3::ChannelReportType_aux_audio_timecode, sig);
    }

    // For who needs the timecode reports without a receiver here. Each add has its remove, on any thread.

    void timecode_use_add();
    void timecode_use_remove();

private Q_SLOTS:
    void attached(const QByteArray& signal);
    void connected();
    void disconnected();
    void report_channel_status(KVRP3::ChannelStatus status, const AOption<AString>& clip);
    void report_channel_clipid(const AString& clip);
    void report_channel_speed(KVRP3::Speed speed);
    void report_channel_timecode(const ChannelTimecodes& timecodes);
    void report_channel_info(const KVRP3::ChannelInformation& information);
    void report_channel_aux_audio_timecode(KVRP3::ClipPosition position);

private:
    static bool serves(KVRP3::ChannelReportType report, const char* sig);

    void check_config_done();
    bool is_connected() const;
    bool has_receiver(KVRP3::ChannelReportType report) const;
    void register_report(KVRP3::ChannelReportType report);
    void reemit_timecode();

    QPointer<Spark> api_;
    bool is_configured_ = false; ///< has its channel
    bool is_subscribed_ = false;
    KVRP3::Channel channel_{};
    ChannelTimecodes timecodes_; ///< as they were told last
    std::atomic<unsigned> timecode_uses_{0};
};
