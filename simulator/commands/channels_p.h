// The channels: what is loaded on each, and what it does.
#pragma once

#include <simulator/call_p.h>
#include <simulator/commands/lists_p.h>
#include <simulator/speed_p.h>

#include <array>
#include <deque>
#include <map>

namespace simulator {

// A clip on a channel, or one that waits to be. Positions count fields from the clip's start.
struct Cue
{
    QString clip; // empty: none
    bool is_virtual = false;
    quint32 length = 0;
    quint32 position = 0;
    std::optional<quint32> out_point, loop_in, loop_out;
    qint32 speed = normal_speed; // when it plays
    QString loop = QStringLiteral("off");
    QString playback = QStringLiteral("auto");
    QString interp = QStringLiteral("auto");
    quint32 angle = 0;
};

struct Channel
{
    QString status = QStringLiteral("idle");
    Cue cue;
    qint32 speed = 0; // as it runs now
    std::deque<Cue> precued;
    quint32 ee_mask = 0;
    bool auto_ee = false;

    const Session* thief = nullptr; // the client that has it to itself
    QString steal_status = QStringLiteral("available");

    std::optional<LoadedList> play_list, chase_list;

    // What each report of its state last said, for as long as somebody listens.
    std::map<QLatin1String, std::vector<Element>> told;
};

QString channel_name(int channel);
Element channel_tag(int channel);
Channel& channel_at(ServerState& state, int channel);

// The channels that a command names, each once and in its order.
std::vector<int> named_channels(const Call& call);

// Why a client may not use a channel: another has stolen it.
Refusal not_free(const Call& call, int channel);

// Makes a cue of a clip or a virtual clip. `options` may hold what `cue_clip` takes. Positions beyond the
// clip's end are its end.
Refusal make_cue(ServerState& state, const QString& clip, bool is_virtual, const Element& options, Cue& cue);

// Puts a cue on a channel, with the status "stop" or one of those in which it plays, and tells of it.
void load(Call& call, int channel, Cue cue, const QString& status);

// Tells those who listen what has changed in a channel's status, clip, position, speed and information.
void tell_changes(ServerState& state, Audience& audience, int channel);

// Tells one client the present state of one class of a channel's reports.
void tell_state(Call& call, int channel, const QString& report_class);

} // namespace simulator
