// A semaphore that tells by a signal that there is something to take.
#pragma once

#include <skuan/export.h>

#include <QObject>
#include <QSemaphore>

/// Any thread may acquire and release; `available()` is emitted on the thread the object lives on.
class SKUAN_EXPORT ASemaphoreObject : public QObject
{
    Q_OBJECT

public:
    explicit ASemaphoreObject(QObject* parent = nullptr) : ASemaphoreObject(0, parent) {}
    /// Starts with `n` resources; a negative number is taken for 0.
    explicit ASemaphoreObject(int n, QObject* parent = nullptr);

    // As in QSemaphore; a negative number of resources is taken for 0. A negative `timeout` (in
    // milliseconds) waits for ever.
    void acquire(int n = 1);
    bool tryAcquire(int n = 1);
    bool tryAcquire(int n, int timeout);
    /// The free resources. The signal of the same name is the one without `const`: through an object
    /// that is not const, read by `std::as_const(object).available()`.
    int available() const { return semaphore_.available(); }

    /// Releases `n`, then announces.
    void release(int n = 1);
    /// If a resource is free, has the object's thread look again and emit `available()`.
    void announce_available();

Q_SIGNALS:
    /// A resource is free, or was a moment ago. Several releases may share one signal or get one each.
    void available();
    void sig_avail(); ///< internal: the hop to the object's thread

private Q_SLOTS:
    void slot_avail();

private:
    QSemaphore semaphore_;
};
