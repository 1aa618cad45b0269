// Chase lists on air: channels follow a timecode that clients send.
#pragma once

#include <QtGlobal>

namespace simulator {

class Audience;
struct Channel;
struct Deck;
struct ServerState;

// The last timecode that came. It goes on from there, but if it came twice.
struct ChaseTimecode
{
    qint64 number = 0; // fields
    quint64 heard = 0; // when: in fields of the server
    bool runs = true;

    qint64 at(quint64 field) const { return number + (runs ? static_cast<qint64>(field - heard) : 0); }
};

// Puts a channel with a chase list to where the timecode wants it; tell_changes() tells of it.
void chase(Deck deck);

// Without a timecode for a second, what chases stands still.
void lose_old_timecode(ServerState& state, Audience& audience);

// Whether the timecode takes the channel on from field to field.
bool is_chasing(const ServerState& state, const Channel& channel);

} // namespace simulator
