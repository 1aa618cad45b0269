// How a position runs through a clip, field by field.
#pragma once

#include <QtGlobal>

namespace simulator {

// As the protocol counts them.
enum class Loop { off, loop, loopto, pingpong, pingpongto, automatic, record };

// Where a position may run, in fields. Every stretch ends before the field that is named as its end.
struct Path
{
    quint32 end = 0;
    quint32 loop_in = 0, loop_out = 0; // beyond the end: the end
    Loop loop = Loop::off;
};

// A position in 1/65536 of a field.
struct Motion
{
    qint64 at = 0;
    bool backwards = false; // on the way back of a loop to and fro

    quint32 field() const { return static_cast<quint32>(at >> 16); }
};

inline Motion standing_at(quint32 field)
{
    return {static_cast<qint64>(field) << 16, false};
}

enum class Passed { On, Loop, End };

// Lets a field pass at a speed, 65536 being normal and a negative one going back. Loops are:
//
// - loop: repeats the stretch from in to out; who is elsewhere goes there first
// - loopto: plays up to out first, and repeats the stretch from then on
// - pingpong, pingpongto: the same, to and fro
//
// All others play to the end, or back to the beginning, and stay there.
Passed advance(Motion& motion, const Path& path, qint32 speed);

} // namespace simulator
