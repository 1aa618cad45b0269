// Steps, and what happens at the ends of a stretch.
#include <simulator/motion_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr qint64 one_field = 1 << 16;

qint64 fixed(quint32 field)
{
    return static_cast<qint64>(field) << 16;
}

// On from one end of the stretch to the other.
Passed wrap(Motion& motion, qint64 step, qint64 in, qint64 out)
{
    const qint64 before = motion.at, length = out - in;
    motion.at += step;
    if (step > 0 ? before >= out || motion.at < out : before < in || motion.at >= in)
        return Passed::On;
    motion.at = in + ((motion.at - in) % length + length) % length;
    return Passed::Loop;
}

// Back at each end, where it stays for no more than its one field: `bottom` and `top` are positions to be at.
Passed bounce(Motion& motion, qint64 step, qint64 bottom, qint64 top)
{
    bool up = step > 0;
    const qint64 way = std::abs((up ? top : bottom) - motion.at);
    if (std::abs(step) <= way) {
        motion.at += step;
        return Passed::On;
    }
    qint64 left = (std::abs(step) - way) % (2 * (top - bottom));
    int turns = 1;
    if (left > top - bottom) {
        left -= top - bottom;
        ++turns;
    }
    up = up == (turns == 2);
    motion.at = up ? bottom + left : top - left;
    motion.backwards = motion.backwards == (turns == 2);
    return Passed::Loop;
}

Passed straight_on(Motion& motion, qint64 step, qint64 end)
{
    motion.at += step;
    if (step > 0 ? motion.at < end : motion.at >= 0)
        return Passed::On;
    motion.at = std::clamp<qint64>(motion.at, 0, end);
    return Passed::End;
}

} // namespace

Passed advance(Motion& motion, const Path& path, qint32 speed)
{
    const qint64 step = motion.backwards ? -static_cast<qint64>(speed) : speed;
    const qint64 end = fixed(path.end);
    const qint64 in = fixed(path.loop_in), out = std::min(fixed(path.loop_out), end), top = out - one_field;
    if (step == 0)
        return Passed::On;
    if (in >= out)
        return straight_on(motion, step, end);

    const bool is_inside = motion.at >= in && motion.at < out;
    switch (path.loop) {
    case Loop::loop:
    case Loop::pingpong:
        if (!is_inside) {
            motion.at = step > 0 ? in : top;
            return Passed::On;
        }
        break;
    case Loop::loopto:
    case Loop::pingpongto:
        if (step > 0 ? motion.at >= out : motion.at < in)
            return straight_on(motion, step, end);
        break;
    default:
        return straight_on(motion, step, end);
    }
    if (path.loop == Loop::loop || path.loop == Loop::loopto)
        return wrap(motion, step, in, out);
    if (top > in && (step < 0 || motion.at <= top))
        return bounce(motion, step, in, top);
    motion.at = std::clamp(motion.at, in, top);
    return Passed::On;
}

} // namespace simulator
