// How a server misbehaves, as a value that a test fills in.
#pragma once

#include <simulator/export.h>

#include <QByteArray>

#include <chrono>
#include <vector>

namespace simulator {

/// Every fault is off in a fresh value. Faults combine; they act in the order in which they stand here.
/// An "answer" is everything that one command gets: one reply, or a stream of them with its end. It is
/// never torn apart by a change of order, only by the cuts of the byte stream.
///
/// Counts and positions are those of one connection, from its start. Whatever is random follows from
/// `seed` and from the connection's number (the first one is 1), so a run can be repeated.
struct SKUAN_SIMULATOR_EXPORT Faults
{
    // The connection.
    bool refuse = false; ///< accept, and close at once

    // Which answers are given.
    bool mute = false;       ///< none; commands are still read and counted
    unsigned drop_every = 0; ///< each answer whose number is a multiple of this is lost; 0: none

    // When they leave, and in what order.
    std::chrono::milliseconds delay{0};        ///< every answer waits that long
    bool hold = false;                         ///< answers wait until hold is taken back
    unsigned gather = 0;                       ///< as many answers leave together, in one write
    std::chrono::milliseconds gather_wait{20}; ///< ... or what there is, when no more come for that long
    bool shuffle = false; ///< gathered answers leave in random order; gathers 8 by default

    // What comes in between.
    unsigned garbage_every = 0; ///< junk goes before each answer whose number is a multiple of this; 0: none
    unsigned garbage_size = 64; ///< bytes of junk, random and never a message
    bool flood = false;         ///< unasked reports
    unsigned flood_rate = 0;    ///< reports a second; 0: as fast as the client takes them
    quint64 flood_count = 0;    ///< reports in all; 0: without end
    QByteArray flood_report{};  ///< the report; empty: a `channel_timecode`

    // How the bytes travel.
    unsigned split = 0;                       ///< bytes to a segment; 0: as they come
    std::vector<qint64> split_at{};           ///< a segment ends at each of these positions, ascending
    std::chrono::milliseconds split_pause{0}; ///< wait between segments, so that each is read by itself

    // How the connection ends.
    qint64 close_after_bytes = -1;   ///< right behind that many bytes; negative: not
    qint64 close_after_answers = -1; ///< right behind that many answers; negative: not
    double close_chance = 0;         ///< each answer's chance, 0 to 1, to be cut off at a random byte
    bool half_close = false;         ///< ends by closing the sending side only, and goes on reading

    unsigned seed = 1;
};

/// The report that a flood sends unless told otherwise: 14 elements, and CR LF at its end.
SKUAN_SIMULATOR_EXPORT QByteArray default_flood_report();

} // namespace simulator
