// The signals as a table.
#include <skuan/monitors/channel_signals.h>

ChannelSignals::ChannelSignals(QObject* parent) : ASignalMonitor(parent) {}

ChannelSignals::~ChannelSignals() = default;

const QMetaMethod& ChannelSignals::signal(ChannelValue value)
{
    using C = ChannelSignals;
    static const QMetaMethod table[channel_value_count] = {
        QMetaMethod::fromSignal(&C::sig_status),
        QMetaMethod::fromSignal(&C::sig_clipid),
        QMetaMethod::fromSignal(&C::sig_speed),
        QMetaMethod::fromSignal(&C::sig_timecodes),
        QMetaMethod::fromSignal(&C::sig_clip_position),
        QMetaMethod::fromSignal(&C::sig_aux_position),
        QMetaMethod::fromSignal(&C::sig_display_timecode),
        QMetaMethod::fromSignal(&C::sig_input_timecode),
        QMetaMethod::fromSignal(&C::sig_channel_information),
        QMetaMethod::fromSignal(&C::sig_playback_mode),
    };
    return table[static_cast<unsigned>(value)];
}

QByteArray ChannelSignals::signature(ChannelValue value)
{
    return '2' + signal(value).methodSignature();
}
