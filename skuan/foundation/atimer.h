// A timer that any thread may start, and that can serve as a wake-up whose calls coalesce.
#pragma once

#include <skuan/export.h>

#include <QTimer>

/// A QTimer. A flagged one is a wake-up: single-shot with interval 0, and while it is about to fire,
/// starting it again does not begin anew, so that any number of starts give one `timeout()` on the
/// timer's thread.
class SKUAN_EXPORT ATimer : public QTimer
{
    Q_OBJECT

public:
    explicit ATimer(QObject* parent = nullptr) : ATimer(Kind::plain, parent) {}
    explicit ATimer(bool flag, QObject* parent = nullptr)
        : ATimer(flag ? Kind::flagged : Kind::unflagged, parent)
    {
    }

public Q_SLOTS:
    /// Starts with an interval of `msec`. On the timer's thread only.
    void start(int msec);
    /// Starts with the interval as it is. Any thread: from another one it is handed over to the
    /// timer's event loop.
    void start();

Q_SIGNALS:
    void relay_start(); ///< internal: the hop to the timer's thread

private:
    enum class Kind { plain, unflagged, flagged };
    ATimer(Kind kind, QObject* parent);

    bool about_to_fire() const { return flag_ && isActive() && interval() == 0; }

    const bool flag_;
};
