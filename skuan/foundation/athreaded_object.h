// An object that lives on a thread of its own.
#pragma once

#include <skuan/export.h>

#include <QObject>

class AThread;

/// Makes a thread and moves itself there. The thread object stays on the constructing thread, whose
/// event loop deletes it some time after this object has gone; nothing waits for that. Reach such an
/// object from other threads by queued signals only, and end it by `deleteLater`.
class SKUAN_EXPORT AThreadedObject : public QObject
{
    Q_OBJECT

public:
    AThreadedObject();
    ~AThreadedObject() override;

    /// Starts the thread, at the priority of the calling one. Apart from the constructor, so that a
    /// subclass is whole by then. Until it is called, nothing that is sent here arrives.
    void start_thread();

    /// The thread this object lives on; null, and an assertion, if it was moved to another kind.
    AThread* thread() const;

protected Q_SLOTS:
    /// The first thing to run on the new thread; meant to be overridden.
    virtual void threaded_init();
};
