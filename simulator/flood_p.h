// The flood fault: reports that nobody asked for, at a rate or as fast as the client takes them.
#pragma once

#include <simulator/faults.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace simulator {

class Wire;

// Reports are prepared as blocks of many, so that a flood costs little more than its writes.
// One thread, that of the connection which owns it.
class Flood : public QObject
{
    Q_OBJECT
public:
    explicit Flood(Wire& wire);

    // Begins, ends, or goes on in another way; the count goes on.
    void set_faults(const Faults& faults);

private:
    void tick();
    void fill();
    void catch_up();
    bool is_over() const;
    quint64 left() const;
    void send(quint64 reports);

    Wire& wire_;
    Faults faults_;
    QByteArray block_; // the report, many times
    quint64 block_reports_ = 0;
    quint64 sent_ = 0;
    quint64 sent_in_run_ = 0; // since the clock was started
    QElapsedTimer clock_;
    QTimer timer_;
};

} // namespace simulator
