// Says when a field is over, and sleeps while nothing moves.
#pragma once

#include <simulator/field_rate_p.h>

#include <QTimer>

#include <chrono>
#include <functional>

namespace simulator {

// Counts from its construction on by a clock that is never set, so that no field is lost or doubled however
// late a timer comes. One thread.
class FieldClock
{
public:
    // Who is told, on the clock's thread.
    struct Listener
    {
        std::function<bool()> field;                // one is over; true if the next one is wanted, too
        std::function<void(quint64)> passed_unseen; // so many went by while the clock slept, or was held up
    };

    // `pace`: how many times as fast as real time it goes; at 0 it stands still but for step().
    FieldClock(double pace, FieldRate rate, Listener listener);

    // Goes on from the present in another rate.
    void set_rate(FieldRate rate);

    // The next field is wanted. Costs nothing while the clock is awake.
    void wake();

    // One field passes, whatever the time is.
    void step();

private:
    using Clock = std::chrono::steady_clock;

    quint64 due() const; // fields since the beginning
    void tick();
    void sleep_until_due();

    const double pace_;
    const Listener listener_;
    std::chrono::nanoseconds length_{}; // of a field
    Clock::time_point beginning_;
    quint64 passed_ = 0; // since the beginning
    QTimer timer_;
};

} // namespace simulator
