// The system's wish that the program end, as a Qt signal.
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace simulator {

// From its construction on, SIGTERM and SIGINT (on Windows Ctrl-C, Ctrl-Break and a console that is closed)
// emit stop() on this object's thread instead of killing the process. One in a process.
class StopSignal : public QObject
{
    Q_OBJECT
public:
    explicit StopSignal(QObject* parent = nullptr);
    ~StopSignal() override;

Q_SIGNALS:
    void stop();

private:
    std::unique_ptr<QSocketNotifier> notifier_; // where the system has signals
};

} // namespace simulator
