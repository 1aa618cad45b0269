// What a session's monitors have in common: ten signals, and knowing which of them are wanted.
#pragma once

#include <skuan/export.h>
#include <skuan/monitors/channel_values.h>
#include <skuan/protocol/kvrp3_meta_types.h>
#include <skuan/time/time_meta_types.h>

#include <QMetaMethod>
#include <QObject>

#include <bitset>
#include <memory>

namespace skuan {
class LookLater;
}

/// Receivers connect, and nothing else. Whatever a signal needs is there from its first receiver until its
/// last one has gone, however it went: by any form of `disconnect`, or by its end. The latter is seen from
/// the event loop, so that a receiver that is exchanged within one turn costs nothing.
///
/// With every connection, before `connect` returns, the present value is told, to all receivers of that
/// signal. Positions count fields.
///
/// Who disconnects all receivers of a channel's monitor at once disconnects the monitors of outputs, too.
///
/// Lives on the session's thread, where everything here belongs, connections too.
class SKUAN_EXPORT SparkMonitor : public QObject
{
    Q_OBJECT

public:
    using Timecodes = ChannelTimecodes;

    ~SparkMonitor() override;

    // The signals, each the same for all monitors. Any thread.

    static QMetaMethod sig_status() { return signal(ChannelValue::status); }
    static QMetaMethod sig_clipid() { return signal(ChannelValue::clipid); }
    static QMetaMethod sig_speed() { return signal(ChannelValue::speed); }
    static QMetaMethod sig_timecodes() { return signal(ChannelValue::timecodes); }
    static QMetaMethod sig_clip_position() { return signal(ChannelValue::clip_position); }
    static QMetaMethod sig_aux_position() { return signal(ChannelValue::aux_position); }
    static QMetaMethod sig_display_timecode() { return signal(ChannelValue::display_timecode); }
    static QMetaMethod sig_input_timecode() { return signal(ChannelValue::input_timecode); }
    static QMetaMethod sig_information() { return signal(ChannelValue::information); }
    static QMetaMethod sig_playback_mode() { return signal(ChannelValue::playback_mode); }

    // What a monitor has as long as it has been told nothing. Any thread.

    static KVRP3::ChannelStatus default_status() { return ChannelValues().status; }
    static QString default_clipid() { return {}; }
    static KVRP3::Speed default_speed() { return 0; }
    static Timecodes default_timecodes() { return {}; }
    static KVRP3::ClipPosition default_clip_position() { return 0; }
    static KVRP3::ClipPosition default_aux_position() { return 0; }
    static Vantor::ATimecode default_display_timecode() { return {}; }
    static Vantor::ATimecode default_input_timecode() { return {}; }
    static KVRP3::ChannelInformation default_information() { return {}; }
    static AOption<KVRP3::Playback> default_playback_mode() { return {}; }

    // Tell the present value once more.

    void emit_status() { Q_EMIT report_status(values_.status); }
    void emit_clipid() { Q_EMIT report_clipid(values_.clipid); }
    void emit_speed() { Q_EMIT report_speed(values_.speed); }
    void emit_timecodes();
    void emit_clip_position() { Q_EMIT report_clip_position(values_.timecodes.clip_position); }
    void emit_aux_position() { Q_EMIT report_aux_position(values_.aux_position); }
    void emit_display_timecode() { Q_EMIT report_display_timecode(values_.timecodes.display_timecode); }
    void emit_input_timecode() { Q_EMIT report_input_timecode(values_.timecodes.input_timecode); }
    void emit_information() { Q_EMIT report_information(values_.information); }
    void emit_playback_mode() { Q_EMIT report_playback_mode(values_.playback_mode); }

Q_SIGNALS:
    void report_status(KVRP3::ChannelStatus status);
    void report_clipid(const QString& clip);
    void report_speed(int speed);
    void report_timecodes(unsigned position, const Vantor::ATimecode& display,
                          const Vantor::ATimecode& input);
    void report_clip_position(unsigned position);
    void report_aux_position(unsigned position);
    void report_display_timecode(const Vantor::ATimecode& display);
    void report_input_timecode(const Vantor::ATimecode& input);
    void report_information(const KVRP3::ChannelInformation& information);
    void report_playback_mode(const AOption<KVRP3::Playback>& mode);

protected:
    explicit SparkMonitor(QObject* session);

    void connectNotify(const QMetaMethod& signal) override;
    void disconnectNotify(const QMetaMethod& signal) override;

    static const QMetaMethod& signal(ChannelValue value);
    bool wants(ChannelValue value) const { return wanted_[static_cast<std::size_t>(value)]; }
    /// If it is wanted.
    void tell(ChannelValue value);
    /// A signal has got its first receiver, or lost its last one, which is now what `wants` says.
    virtual void wish_changed(ChannelValue value) = 0;

    ChannelValues values_;

private:
    void look();
    void look(ChannelValue value);

    std::bitset<channel_value_count> wanted_;
    const std::unique_ptr<skuan::LookLater> look_later_;
};
