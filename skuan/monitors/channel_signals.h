// The ten signals of a channel that others follow.
#pragma once

#include <skuan/monitors/asignal_monitor.h>
#include <skuan/monitors/channel_values.h>
#include <skuan/protocol/kvrp3_meta_types.h>
#include <skuan/time/time_meta_types.h>

/// The base of monitors that stand free of a session: a receiver connects, and nothing else. Positions count
/// fields.
class SKUAN_EXPORT ChannelSignals : public ASignalMonitor
{
    Q_OBJECT

public:
    explicit ChannelSignals(QObject* parent = nullptr);
    ~ChannelSignals() override;

Q_SIGNALS:
    void sig_status(KVRP3::ChannelStatus status);
    void sig_clipid(const QString& clip);
    void sig_speed(KVRP3::Speed speed);
    void sig_timecodes(KVRP3::ClipPosition position, const Vantor::ATimecode& display,
                       const Vantor::ATimecode& input);
    void sig_clip_position(KVRP3::ClipPosition position);
    void sig_aux_position(KVRP3::ClipPosition position);
    void sig_display_timecode(const Vantor::ATimecode& display);
    void sig_input_timecode(const Vantor::ATimecode& input);
    void sig_channel_information(const KVRP3::ChannelInformation& information);
    void sig_playback_mode(const AOption<KVRP3::Playback>& mode);

protected:
    static const QMetaMethod& signal(ChannelValue value);
    /// Its signature, normalised, in the form of SIGNAL.
    static QByteArray signature(ChannelValue value);
};
