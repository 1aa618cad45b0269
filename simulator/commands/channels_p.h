// The channels: what is loaded on each, and what it does.
#pragma once

#include <simulator/call_p.h>
#include <simulator/commands/lists_p.h>
#include <simulator/motion_p.h>
#include <simulator/speed_p.h>

#include <array>
#include <deque>
#include <map>

namespace simulator {

// As the protocol counts them.
enum class ChannelStatus { nochannel, idle, cueing, stop, play, record, insert, testpattern, timedelay };
enum class PrecueCondition { explicit_switch, previous_stops, immediate, end_of_clip, end_of_clip2 };

// What a channel is to play, and how. Positions count fields from the clip's start.
struct Cue
{
    QString clip; // empty: none
    bool is_virtual = false;
    quint32 length = 0;
    quint32 position = 0; // where it begins
    std::optional<quint32> out_point, loop_in, loop_out;
    qint32 speed = normal_speed; // when it plays
    Loop loop = Loop::off;
    QString playback = QStringLiteral("auto");
    QString interp = QStringLiteral("auto");
    quint32 angle = 0;

    bool plays(const QString& name) const { return !is_virtual && clip == name; }
    bool operator==(const Cue&) const = default;
};

// One that waits for its moment.
struct Precued
{
    Cue cue;
    PrecueCondition when = PrecueCondition::explicit_switch;
};

struct Channel
{
    ChannelStatus status = ChannelStatus::idle;
    Cue cue;
    Motion motion;             // where it is in its clip
    qint32 speed = 0;          // as it runs now
    quint32 cueing = 0;        // fields until the clip is ready
    quint32 transition = 0;    // fields until the transition is over
    quint32 most_recorded = 0; // fields of a recording; 0: no end
    std::deque<Precued> precued;
    quint32 ee_mask = 0;
    quint32 insert_mask = 0; // of the insert edit, while it runs
    bool auto_ee = false;

    const Session* thief = nullptr; // the client that has it to itself
    QString steal_status = QStringLiteral("available");

    std::optional<LoadedList> play_list, chase_list;

    // What each report of its state last said, for as long as somebody listens.
    std::map<QLatin1String, std::vector<Element>> told;

    // Whether it runs against the direction of its cue, so that it comes to where that began.
    bool is_wound_back() const { return (speed < 0) != (cue.speed < 0); }
};

// Why a client may not use a channel: there is none, or another client has stolen it.
Refusal not_free(const Call& call, Deck deck);

// Tells those who listen what has changed in a channel's status, clip, position, speed and information, and
// in what its lists have on air.
void tell_changes(Deck deck);

// Tells one client the present state of one class of a channel's reports; before that, all others what they
// do not know of it yet.
void tell_state(Call& call, Deck deck, const QString& report_class);

} // namespace simulator
