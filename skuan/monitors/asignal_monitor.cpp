// Finding the hub of a signal, and seeing that its last receiver has gone.
#include <skuan/monitors/asignal_monitor.h>

#include <skuan/monitors/asignal_monitor_p.h>
#include <skuan/monitors/look_later_p.h>

namespace {
constexpr char attach_signal[] = "2attach (QByteArray)";
constexpr char detach_signal[] = "2detach (QByteArray)";
} // namespace

ASignalMonitor::ASignalMonitor(QObject* parent)
    : QObject(parent), proxy_(this), look_later_(std::make_unique<skuan::LookLater>())
{
}

ASignalMonitor::~ASignalMonitor() = default;

QByteArray ASignalMonitor::norm(const char* signature)
{
    return signature ? QMetaObject::normalizedSignature(signature) : QByteArray();
}

void ASignalMonitor::add_sig_monitor(const char* sig, const char* attach_slot, const char* detach_slot)
{
    add_sig_monitor(sig, this, attach_slot, detach_slot);
}

void ASignalMonitor::add_sig_monitor(const char* sig, QObject* target, const char* attach_slot,
                                     const char* detach_slot)
{
    add_sig_monitor(sig, target, attach_slot, target, detach_slot);
}

void ASignalMonitor::add_sig_monitor(const char* sig, QObject* attach_target, const char* attach_slot,
                                     QObject* detach_target, const char* detach_slot)
{
    add_sigdetach_monitor(sig, detach_target, detach_slot);
    add_sigattach_monitor(sig, attach_target, attach_slot);
}

void ASignalMonitor::add_sigattach_monitor(const char* sig, const char* slot)
{
    add_sigattach_monitor(sig, this, slot);
}

void ASignalMonitor::add_sigattach_monitor(const char* sig, QObject* target, const char* slot)
{
    connect(get_sigentry(sig), attach_signal, target, slot);
}

void ASignalMonitor::add_sigdetach_monitor(const char* sig, const char* slot)
{
    add_sigdetach_monitor(sig, this, slot);
}

void ASignalMonitor::add_sigdetach_monitor(const char* sig, QObject* target, const char* slot)
{
    connect(get_sigentry(sig), detach_signal, target, slot);
}

void ASignalMonitor::remove_sig_monitor(const char* sig, const char* attach_slot, const char* detach_slot)
{
    remove_sig_monitor(sig, this, attach_slot, detach_slot);
}

void ASignalMonitor::remove_sig_monitor(const char* sig, QObject* target, const char* attach_slot,
                                        const char* detach_slot)
{
    remove_sig_monitor(sig, target, attach_slot, target, detach_slot);
}

void ASignalMonitor::remove_sig_monitor(const char* sig, QObject* attach_target, const char* attach_slot,
                                        QObject* detach_target, const char* detach_slot)
{
    remove_sigdetach_monitor(sig, detach_target, detach_slot);
    remove_sigattach_monitor(sig, attach_target, attach_slot);
}

void ASignalMonitor::remove_sigattach_monitor(const char* sig, const char* slot)
{
    remove_sigattach_monitor(sig, this, slot);
}

void ASignalMonitor::remove_sigattach_monitor(const char* sig, QObject* target, const char* slot)
{
    disconnect(get_sigentry(sig), attach_signal, target, slot);
}

void ASignalMonitor::remove_sigdetach_monitor(const char* sig, const char* slot)
{
    remove_sigdetach_monitor(sig, this, slot);
}

void ASignalMonitor::remove_sigdetach_monitor(const char* sig, QObject* target, const char* slot)
{
    disconnect(get_sigentry(sig), detach_signal, target, slot);
}

ASignalMonitorInternal* ASignalMonitor::get_sigentry(const char* sig)
{
    const QByteArray name = norm(sig);
    const PortableMutexLock lock(lock_);
    Entry& entry = entries_[name];
    if (!entry.hub) {
        entry.hub = new ASignalMonitorInternal(this);
        entry.is_attached = is_listened_to(name);
    }
    return entry.hub;
}

/// The hub, and null if nobody ever subscribed.
ASignalMonitorInternal* ASignalMonitor::mark(const QByteArray& sig, bool attached)
{
    const PortableMutexLock lock(lock_);
    const auto at = entries_.find(sig);
    if (at == entries_.end())
        return nullptr;
    at->is_attached = attached;
    return at->hub;
}

void ASignalMonitor::set_proxy(QObject* proxy)
{
    proxy_ = proxy;
}

void ASignalMonitor::proxy_connect_notify(bool is_connected, const char* sig)
{
    const QByteArray name = norm(sig);
    ASignalMonitorInternal* const hub = is_connected ? mark(name, true) : nullptr;
    if (hub)
        Q_EMIT hub->attach(name);
}

void ASignalMonitor::proxy_disconnect_notify(bool is_connected, const char* sig)
{
    const QByteArray name = norm(sig);
    ASignalMonitorInternal* const hub = is_connected ? nullptr : mark(name, false);
    if (hub)
        Q_EMIT hub->detach(name);
}

void ASignalMonitor::connectNotify(const QMetaMethod& signal)
{
    if (proxy_ == this)
        proxy_connect_notify(isSignalConnected(signal), '2' + signal.methodSignature());
}

void ASignalMonitor::disconnectNotify(const QMetaMethod&)
{
    look_later_->start(this, &ASignalMonitor::look);
}

void ASignalMonitor::look()
{
    if (proxy_ != this)
        return;
    QByteArrayList gone;
    {
        const PortableMutexLock lock(lock_);
        for (auto entry = entries_.cbegin(); entry != entries_.cend(); ++entry)
            if (entry->is_attached && !is_listened_to(entry.key()))
                gone += entry.key();
    }
    for (const QByteArray& sig : gone)
        proxy_disconnect_notify(false, sig);
}

int ASignalMonitor::own_connections(const QByteArray&) const
{
    return 0;
}

// Qt reads beyond a text that does not begin as a signal's does.
bool ASignalMonitor::is_listened_to(const QByteArray& sig) const
{
    return proxy_ == this && sig.startsWith('2') && receivers(sig.constData()) > own_connections(sig);
}
