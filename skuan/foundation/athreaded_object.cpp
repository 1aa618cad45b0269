#include <skuan/foundation/athreaded_object.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/athread.h>

AThreadedObject::AThreadedObject()
{
    auto* const own = new AThread;
    moveToThread(own);
    connect(own, SIGNAL(started()), this, SLOT(threaded_init()));
}

AThreadedObject::~AThreadedObject()
{
    if (AThread* const own = thread())
        own->deleteLater();
}

void AThreadedObject::start_thread()
{
    if (AThread* const own = thread())
        own->start(QThread::InheritPriority);
}

AThread* AThreadedObject::thread() const
{
    auto* const t = dynamic_cast<AThread*>(QObject::thread());
    (void)SKUAN_CHECK(t != nullptr);
    return t;
}

void AThreadedObject::threaded_init() {}
