// One video output of a session's server as signals.
#pragma once

#include <skuan/monitors/spark_monitor.h>

class ATimer;
class Spark;
class SparkChannelMonitor;

/// The session's own monitor of an output, which it makes and owns: Spark::get_output_monitor. It passes on
/// the signals of the channel that the configuration routes to the output, through any number of reroutings,
/// and takes from that channel's monitor only what is wanted here. Without a source it has the values that
/// stand for an unknown channel, and tells them when the source has gone.
///
/// The first receiver of a signal is told the present value twice, once as the channel's monitor tells it.
/// That is meant.
class SKUAN_EXPORT SparkOutputMonitor : public SparkMonitor
{
    Q_OBJECT

public:
    ~SparkOutputMonitor() override;

    void emit_all(); ///< tells all values that are wanted once more

protected:
    void wish_changed(ChannelValue value) override;

private Q_SLOTS:
    void cf_changed();

    // What the source tells.

    void ch_status(KVRP3::ChannelStatus status);
    void ch_clipid(const QString& clip);
    void ch_speed(int speed);
    void ch_timecodes(unsigned position, const Vantor::ATimecode& display, const Vantor::ATimecode& input);
    void ch_clip_position(unsigned position);
    void ch_aux_position(unsigned position);
    void ch_display_timecode(const Vantor::ATimecode& display);
    void ch_input_timecode(const Vantor::ATimecode& input);
    void ch_information(const KVRP3::ChannelInformation& information);
    void ch_playback_mode(const AOption<KVRP3::Playback>& mode);

private:
    friend class Spark;

    SparkOutputMonitor(Spark* spark, unsigned output);

    void set_channel_monitor(SparkChannelMonitor* source);

    Spark* const spark_; ///< the parent
    const unsigned output_;
    ATimer* const look_up_;                 ///< a child
    SparkChannelMonitor* source_ = nullptr; ///< the session's
};
