#include <skuan/foundation/atimer.h>

#include <QThread>

ATimer::ATimer(Kind kind, QObject* parent) : QTimer(parent), flag_(kind == Kind::flagged)
{
    connect(this, SIGNAL(relay_start()), this, SLOT(start()));
    if (kind != Kind::plain)
        setInterval(0);
    setSingleShot(flag_);
}

void ATimer::start(int msec)
{
    if (msec != 0 || !about_to_fire())
        QTimer::start(msec);
}

void ATimer::start()
{
    if (QThread::currentThread() != thread())
        Q_EMIT relay_start();
    else if (!about_to_fire())
        QTimer::start();
}
