// What stands between a command in flight and a callback group that may be gone when the answer comes.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/afunction.h>
#include <skuan/foundation/aref.h>
#include <skuan/foundation/portable_mutex.h>

#include <QObject>

#include <utility>

namespace KVRP3 {

/// Held by its group and by each command in flight through the group, and ends with the last of them.
/// Any thread. Exported for tests alone.
class SKUAN_EXPORT CallbackGuard : public AReferenced
{
public:
    explicit CallbackGuard(QObject* group);
    ~CallbackGuard() override;

    /// The group is going: nothing is emitted any more. Waits for an emission on another thread.
    void detach();

    /// A function that calls this member of the group while there is a group. Whoever keeps the function
    /// has to hold the guard as well.
    template <auto Send>
    auto callback()
    {
        return guarded<Send>(Send);
    }

    /// How many guards the process has.
    static unsigned living();

private:
    template <auto Send, typename Group, typename... Values>
    skuan::BoundFunction<void, Values...> guarded(void (Group::*)(Values...))
    {
        return {[](void* self, Values... values) {
                    const auto* guard = static_cast<CallbackGuard*>(self);
                    const PortableMutexLock lock(guard->lock_);
                    if (guard->group_)
                        (static_cast<Group*>(guard->group_)->*Send)(std::move(values)...);
                },
                this};
    }

    mutable PortableMutex lock_; ///< held while the group emits
    QObject* group_;             ///< null once the group is gone
};

} // namespace KVRP3
