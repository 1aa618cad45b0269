// Ctrl-C as a Qt signal, so that what has been printed goes out and the connection closes in order.
#pragma once

#include <QObject>
#include <QTimer>

/// From its construction on, the first Ctrl-C emits `pressed`; a second one ends the process at once.
/// One in a process, on the main thread.
class Interrupt : public QObject
{
    Q_OBJECT
public:
    Interrupt();
    ~Interrupt() override;

Q_SIGNALS:
    void pressed();

private:
    QTimer look_;
};
