#include <skuan/foundation/asemaphore_object.h>

#include <algorithm>

// QSemaphore itself only warns about a negative number, and then counts with it.

ASemaphoreObject::ASemaphoreObject(int n, QObject* parent) : QObject(parent), semaphore_(std::max(n, 0))
{
    connect(this, SIGNAL(sig_avail()), this, SLOT(slot_avail()), Qt::QueuedConnection);
}

void ASemaphoreObject::acquire(int n)
{
    semaphore_.acquire(std::max(n, 0));
}

bool ASemaphoreObject::tryAcquire(int n)
{
    return semaphore_.tryAcquire(std::max(n, 0));
}

bool ASemaphoreObject::tryAcquire(int n, int timeout)
{
    return semaphore_.tryAcquire(std::max(n, 0), timeout);
}

void ASemaphoreObject::release(int n)
{
    semaphore_.release(std::max(n, 0));
    announce_available();
}

void ASemaphoreObject::announce_available()
{
    if (semaphore_.available() > 0)
        Q_EMIT sig_avail();
}

void ASemaphoreObject::slot_avail()
{
    // Again: by now another thread may have taken it.
    if (semaphore_.available() > 0)
        Q_EMIT available();
}
