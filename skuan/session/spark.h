// One long-lived session with one server: it stays connected by itself and owns what mirrors the server.
#pragma once

#include <skuan/export.h>
#include <skuan/protocol/kvrp3_api_qt.h>

#include <QHostAddress>
#include <QPointer>
#include <QString>

#include <array>
#include <atomic>
#include <cstdint>
#include <variant>

class AlertModel;
class ATimer;
class CFChannelConfig;
class CFModel;
class SparkChannelMonitor;
class SparkOutputMonitor;
class SparkStatus;
class SparkTimecode;
class USModel;

/// What a long-running operator program talks through. From its construction on it looks every 200 ms whether
/// a connection to its server has to be attempted, with no limit and no back-off; each attempt starts clean.
/// All commands that have no answer when a connection is lost fail at once. What has failed is not sent any
/// more, and nothing is sent a second time but what the session itself registers for.
///
/// Threads: it lives on one thread, normally that of the user interface; the socket, all callbacks and all
/// signals are there. Commands may be issued on any thread: their bytes are handed over, in order, and
/// whether there is a connection is only seen there, so that a failure may come after the call has returned.
/// That goes for commands issued on the session's own thread too. Everything else here is for that thread, if
/// it does not say otherwise. Other threads must have ended their commands before the session is destroyed.
class SKUAN_EXPORT Spark : public KVRP3::APIQt
{
    Q_OBJECT

public:
    /// `local`: the server is on this machine, and the process-wide models serve it.
    explicit Spark(bool local, QObject* parent = nullptr);

    /// `local` if that is this machine's computer name. The name is only compared: which server it is to be
    /// is still for `set_server` to say.
    explicit Spark(const QString& server, QObject* parent = nullptr);

    /// Ends the connection, and an attempt that is under way. Outstanding commands are dropped without a
    /// call.
    ~Spark() override;

    /// Takes effect with the next attempt: a connection that stands stays. The same name again: nothing.
    void set_server(const QString& name);

    /// Attempts at once. To be called without a connection: if there is one, or an attempt, then nothing is
    /// heard any more for the rest of this session's life, neither of that connection nor of later ones. That
    /// is meant; `forget_server` first avoids it. The same address again: nothing.
    void set_server(const QHostAddress& address);

    /// The address 127.0.0.1.
    void set_server_localhost();

    /// Ends the connection, or the attempt at one, before it returns, and attempts none until a server is set
    /// again. `disconnect_from_server`, in contrast, lasts until the next attempt.
    void forget_server();

    /// Commands of other threads are handed over from the beginning, so that there is nothing left to change.
    void enable_threading() {}

    /// Has the server tell of melts, of exports: from now on, for good, on every connection.
    void require_melt_notification();
    void require_export_notification();

    /// Has the server tell of a channel's play list, or chase list, until it is unrequested as often.
    /// Channels are counted from 0 to 31. One count stands for both kinds: whoever mixes them on a channel
    /// finds that the last unrequest unregisters only its own kind. That is meant. One too many is reported,
    /// and changes nothing.
    void request_listplay_notification(unsigned channel);
    void unrequest_listplay_notification(unsigned channel);
    void request_chaseplay_notification(unsigned channel);
    void unrequest_chaseplay_notification(unsigned channel);

    /// How many connections there have been, the present one included: a value that was stamped with another
    /// number is of an earlier one.
    std::uint64_t generation() const { return generation_; }

    // What mirrors the server, owned by the session and not to be deleted. Two sessions with the server of
    // this machine share the mirrors of the first one: null when that has gone.

    CFModel* cf_model() const;
    USModel* us_model() const;
    const CFChannelConfig* channel_config() const { return channel_config_; }

    // What each channel and each output is doing, 0 to 11; any other one is reported, and null. They take the
    // reports of status, clip, speed, timecode, auxiliary audio and information: the session's own signals
    // for these six stay silent. Somebody who emits those reaches the monitors.

    SparkChannelMonitor* get_channel_monitor(unsigned channel) const;
    SparkOutputMonitor* get_output_monitor(unsigned output) const;

    /// How the session stands with its server. Never null.
    const SparkStatus* status() const { return status_; }

    /// The server's alerts, which it is asked to tell of from the first call on, on every connection. Never
    /// null. Any thread.
    AlertModel* get_alert_model();

Q_SIGNALS:
    /// Internal: the hop to the session's thread. The bytes are dropped if the command of that number has
    /// failed.
    void indirect_send(const QByteArray& bytes, quint64 command = ~quint64(0));

protected:
    void send(const void* data, unsigned length) override;
    /// Takes the timecodes of channels and of the LTC input, which come with every field. They are decoded on
    /// another thread, and the newest of each channel comes back: one to a turn of the event loop, so that
    /// everything else has its turn too.
    bool parse_intercept(const XMLTree& message) override;

    void do_report_channel_status(KVRP3::Channel channel, KVRP3::ChannelStatus status,
                                  AOption<KVRP3::ClipID> clip) override;
    void do_report_channel_clipid(KVRP3::Channel channel, KVRP3::ClipID clip) override;
    void do_report_channel_speed(KVRP3::Channel channel, KVRP3::Speed speed) override;
    void do_report_channel_timecode(KVRP3::Channel channel, KVRP3::ClipPosition position,
                                    KVRP3::DisplayTimecode display, KVRP3::InputTimecode input) override;
    void do_report_channel_aux_audio_timecode(KVRP3::Channel channel, KVRP3::ClipPosition position) override;
    void do_report_channel_info(KVRP3::Channel channel, KVRP3::ChannelInformation information) override;

private Q_SLOTS:
    void slot_connected();
    void slot_indirect_send(const QByteArray& bytes, quint64 command);
    void stay_connected();
    void hand_over_timecodes();
    void process_timecode();
    void process_ltc();

private:
    friend class ChannelMonitor;
    friend class SparkStatus;

    static constexpr unsigned most_counted_channels = 32;
    static constexpr unsigned monitor_count = 12; ///< of channels, and of outputs

    static unsigned toIndex(KVRP3::Channel channel) { return static_cast<unsigned>(channel); }
    SparkChannelMonitor* toMonitor(KVRP3::Channel channel) const; ///< null for no such channel
    void make_monitors();

    void require(bool& flag, KVRP3::ReportType type);
    void request(unsigned channel, KVRP3::ChannelReportType type);
    void unrequest(unsigned channel, KVRP3::ChannelReportType type);

    std::variant<std::monostate, QString, QHostAddress> server_;
    bool melt_notification_required_ = false;
    bool export_notification_required_ = false;
    std::array<unsigned, most_counted_channels> notification_counts_{};
    std::atomic<AlertModel*> alert_model_{nullptr}; ///< once it is there, it stays
    SparkTimecode* timecode_ = nullptr;
    bool handing_over_timecodes_ = false; ///< in this turn of the event loop
    ATimer* timecode_pacing_ = nullptr;   ///< a child, as are all that follow
    ATimer* attempts_ = nullptr;
    std::uint64_t generation_ = 0;
    QPointer<CFModel> cf_model_;
    QPointer<USModel> us_model_;
    CFChannelConfig* channel_config_ = nullptr;
    SparkStatus* status_ = nullptr;
    std::array<SparkChannelMonitor*, monitor_count> channel_monitors_{};
    std::array<SparkOutputMonitor*, monitor_count> output_monitors_{};
};
