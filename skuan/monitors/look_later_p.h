// What to do when Qt says that a connection goes.
#pragma once

#include <QObject>

#include <atomic>

namespace skuan {

/// Has an object look at its connections from its event loop, once however often it was asked to.
///
/// Qt holds its locks when it tells an object that a connection goes because the receiver is destroyed, or
/// because somebody disconnects by the handle that `connect` gave. The first even comes before the connection
/// has gone. Whoever then asks for its connections waits for ever: always in the second case, and in the
/// first whenever sender and receiver happen to share one of Qt's few locks. Which case it is cannot be seen.
class LookLater
{
public:
    /// Safe wherever Qt calls from. `look` is called on the object's thread, and not once it is gone.
    template <typename Object>
    void start(Object* object, void (Object::*look)())
    {
        if (is_due_.exchange(true))
            return;
        const auto act = [this, object, look] {
            is_due_ = false;
            (object->*look)();
        };
        QMetaObject::invokeMethod(object, act, Qt::QueuedConnection);
    }

private:
    std::atomic<bool> is_due_{false};
};

} // namespace skuan
