// When answers leave, and in what order: the delay, hold, gather and shuffle faults.
#pragma once

#include <simulator/faults.h>

#include <QObject>
#include <QTimer>

#include <chrono>
#include <deque>
#include <functional>
#include <random>

namespace simulator {

// Answers go in as they are made and come out through `out`, one call for what is to leave in one write.
// With no such fault on, an answer comes out before push() returns, and no timer is touched.
// One thread, that of the connection which owns it.
class AnswerQueue : public QObject
{
public:
    using Batch = std::vector<QByteArray>;

    AnswerQueue(std::function<void(const Batch&)> out, unsigned seed);

    // Holds from now on for answers that wait, too; what no fault keeps back any more leaves at once.
    void set_faults(const Faults& faults);

    void push(QByteArray answer);
    void clear();

    // What waits here, in bytes.
    qint64 bytes() const { return bytes_; }

private:
    using Clock = std::chrono::steady_clock;
    struct Waiting
    {
        Clock::time_point due;
        QByteArray answer;
    };

    void pump();
    void leave(std::size_t count);
    std::size_t batch_size() const;

    std::function<void(const Batch&)> out_;
    Faults faults_;
    std::mt19937 random_;
    std::deque<Waiting> waiting_; // oldest first; until their time
    Batch gathered_;              // their time has come; until there are enough
    qint64 bytes_ = 0;
    QTimer due_timer_;
    QTimer gather_timer_;
};

} // namespace simulator
