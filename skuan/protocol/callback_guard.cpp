// The end of a group, and the count of guards.
#include <skuan/protocol/callback_guard_p.h>

#include <skuan/foundation/assertfail.h>

namespace KVRP3 {

static AtomicUnsigned living_guards;

CallbackGuard::CallbackGuard(QObject* group) : group_(group)
{
    ++living_guards;
}

CallbackGuard::~CallbackGuard()
{
    --living_guards;
}

void CallbackGuard::detach()
{
    const PortableMutexLock lock(lock_);
    if (SKUAN_CHECK(group_ != nullptr))
        group_ = nullptr;
}

unsigned CallbackGuard::living()
{
    return living_guards.get();
}

} // namespace KVRP3
