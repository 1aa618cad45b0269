// What a server reports of one channel, for the monitors of it that are not the session's own.
#pragma once

#include <skuan/foundation/aoption.h>
#include <skuan/foundation/astring.h>
#include <skuan/monitors/channel_values.h>

#include <QObject>

namespace skuan {

/// The session emits none of its public signals for these six reports, and so has a second set for whoever
/// stands free. A report comes here once, whether the server sent it or somebody emitted the public signal.
class ChannelReports : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void status(KVRP3::ChannelStatus status, const AOption<AString>& clip);
    void clipid(const AString& clip);
    void speed(KVRP3::Speed speed);
    void timecode(const ChannelTimecodes& timecodes);
    void info(const KVRP3::ChannelInformation& information);
    void aux_audio_timecode(KVRP3::ClipPosition position);
};

} // namespace skuan
