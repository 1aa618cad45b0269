// Connecting routes and cutting them, and not taking them for receivers.
#include <skuan/monitors/asignal_router.h>

#include <algorithm>

namespace {
constexpr char attach_slot[] = "1attach (QByteArray)";
constexpr char detach_slot[] = "1detach (QByteArray)";
} // namespace

ASignalRouter::ASignalRouter(QObject* parent) : ASignalMonitor(parent) {}

ASignalRouter::~ASignalRouter() = default;

void ASignalRouter::add_route(const char* sig, QObject* target, const char* target_sig)
{
    add_route(sig, target, target_sig, target_sig);
}

void ASignalRouter::add_route(const char* sig, QObject* target, const char* target_sig, const char* third_sig)
{
    if (!target)
        return;
    const QByteArray name = norm(sig);
    {
        const PortableMutexLock lock(lock_);
        routes_.push_back(
            std::make_shared<Route>(Route{name, norm(target_sig), norm(third_sig), target, {}}));
    }
    if (routes_of(name).size() == 1)
        add_sig_monitor(name, attach_slot, detach_slot);
    if (is_listened_to(name))
        attach(name); // nobody tells of receivers that were there before
}

bool ASignalRouter::remove_route(const char* sig, QObject* target, const char* target_sig)
{
    return remove_route(sig, target, target_sig, target_sig);
}

bool ASignalRouter::remove_route(const char* sig, QObject* target, const char* target_sig,
                                 const char* third_sig)
{
    const QByteArray name = norm(sig);
    std::shared_ptr<Route> route;
    {
        const PortableMutexLock lock(lock_);
        const auto at = std::find_if(routes_.begin(), routes_.end(),
                                     [&, to = norm(target_sig), third = norm(third_sig)](const auto& r) {
                                         return r->sig == name && r->target == target &&
                                                r->target_sig == to && r->third_sig == third;
                                     });
        if (at == routes_.end())
            return false;
        route = *at;
        routes_.erase(at);
    }
    if (routes_of(name).empty())
        remove_sig_monitor(name, attach_slot, detach_slot);
    cut(*route);
    return true;
}

QStringList ASignalRouter::routes() const
{
    const PortableMutexLock lock(lock_);
    const auto name = [](const QObject* object) { return object ? object->objectName() : QString(); };
    QStringList texts;
    for (const auto& route : routes_) {
        texts += QStringLiteral("%1 %2 => %3 %4")
                     .arg(name(proxy()), QString::fromLatin1(route->sig), name(route->target),
                          QString::fromLatin1(route->target_sig));
        if (route->third_sig != route->target_sig)
            texts.back() += QLatin1Char(' ') + QString::fromLatin1(route->third_sig);
    }
    return texts;
}

ASignalRouter::Routes ASignalRouter::routes_of(const QByteArray& sig) const
{
    const PortableMutexLock lock(lock_);
    Routes found;
    std::copy_if(routes_.begin(), routes_.end(), std::back_inserter(found),
                 [&](const auto& route) { return route->sig == sig; });
    return found;
}

int ASignalRouter::own_connections(const QByteArray& sig) const
{
    const PortableMutexLock lock(lock_);
    return static_cast<int>(std::count_if(routes_.begin(), routes_.end(), [&](const auto& route) {
        return route->sig == sig && route->connection;
    }));
}

// A route's own connection attaches too, which is nothing new.
void ASignalRouter::attach(const QByteArray& sig)
{
    {
        const PortableMutexLock lock(lock_);
        if (!in_hand_.insert(sig).second)
            return;
    }
    for (const auto& route : routes_of(sig)) {
        if (is_connected(*route) || !route->target || !proxy())
            continue;
        const auto connection = connect(proxy(), sig, route->target, route->target_sig);
        const PortableMutexLock lock(lock_);
        route->connection = connection;
    }
    const PortableMutexLock lock(lock_);
    in_hand_.erase(sig);
}

void ASignalRouter::detach(const QByteArray& sig)
{
    for (const auto& route : routes_of(sig))
        cut(*route);
}

bool ASignalRouter::is_connected(const Route& route) const
{
    const PortableMutexLock lock(lock_);
    return static_cast<bool>(route.connection);
}

void ASignalRouter::cut(Route& route)
{
    QMetaObject::Connection connection;
    {
        const PortableMutexLock lock(lock_);
        std::swap(connection, route.connection);
    }
    disconnect(connection);
}
