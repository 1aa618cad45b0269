// Code that runs when somebody begins to listen to a signal, and when nobody does any more.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/portable_mutex.h>

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QMetaMethod>
#include <QObject>
#include <QPointer>

#include <memory>

class ASignalMonitorInternal;

namespace skuan {
class LookLater;
}

/// Lets code follow the receivers of its signals, so that what costs something is done only while somebody
/// wants it. `attach` comes with every connection; `detach` when no connection is left, however they went: by
/// any form of `disconnect`, or with the receiver. Both carry the signal's signature, normalised, in the form
/// of SIGNAL: "2sig_speed(int)". A signature that no signal has never comes, and is not reported.
///
/// Threads: connections may be made on any thread, and `attach` is emitted on that one, before `connect`
/// returns; a target on another thread hears it there, from its event loop. `detach` comes on the monitor's
/// own, from its event loop: connections that come and go within one turn are not noticed going. Everything
/// else is for the monitor's thread.
class SKUAN_EXPORT ASignalMonitor : public QObject
{
    Q_OBJECT

public:
    explicit ASignalMonitor(QObject* parent = nullptr);
    ~ASignalMonitor() override;

    static QByteArray norm(const char* signature); ///< QMetaObject::normalizedSignature; of null empty

    // Subscribing: `sig` as SIGNAL writes it, the slots as SLOT does; they take a QByteArray or nothing. The
    // target is the monitor itself if none is given, and a subscription ends with it. There may be any number
    // for one signal. Receivers that are there already give no `attach`. A null target, or a slot that it
    // does not have, subscribes nothing; Qt warns of it.

    void add_sig_monitor(const char* sig, const char* attach_slot, const char* detach_slot);
    void add_sig_monitor(const char* sig, QObject* target, const char* attach_slot, const char* detach_slot);
    void add_sig_monitor(const char* sig, QObject* attach_target, const char* attach_slot,
                         QObject* detach_target, const char* detach_slot);
    void add_sigattach_monitor(const char* sig, const char* slot);
    void add_sigattach_monitor(const char* sig, QObject* target, const char* slot);
    void add_sigdetach_monitor(const char* sig, const char* slot);
    void add_sigdetach_monitor(const char* sig, QObject* target, const char* slot);

    void remove_sig_monitor(const char* sig, const char* attach_slot, const char* detach_slot);
    void remove_sig_monitor(const char* sig, QObject* target, const char* attach_slot,
                            const char* detach_slot);
    void remove_sig_monitor(const char* sig, QObject* attach_target, const char* attach_slot,
                            QObject* detach_target, const char* detach_slot);
    void remove_sigattach_monitor(const char* sig, const char* slot);
    void remove_sigattach_monitor(const char* sig, QObject* target, const char* slot);
    void remove_sigdetach_monitor(const char* sig, const char* slot);
    void remove_sigdetach_monitor(const char* sig, QObject* target, const char* slot);

    /// From now on the connections to `proxy` count, and it has to tell of them by the two below; those to
    /// this object do not. The monitor itself restores what was. To be set before anybody connects.
    void set_proxy(QObject* proxy);
    /// `sig` has a new receiver, if `is_connected`. Any thread.
    void proxy_connect_notify(bool is_connected, const char* sig);
    /// `sig` has lost one, and has none left if not `is_connected`. Any thread, but not within Qt's own
    /// `disconnectNotify`, which may hold locks.
    void proxy_disconnect_notify(bool is_connected, const char* sig);

protected:
    void connectNotify(const QMetaMethod& signal) override;
    void disconnectNotify(const QMetaMethod& signal) override;

    /// Whose connections count. Null if it was a proxy that has gone.
    QObject* proxy() const { return proxy_; }
    /// How many of the connections to `sig` are the monitor's own, and do not count.
    virtual int own_connections(const QByteArray& sig) const;
    /// Whether `sig`, normalised, has a connection that counts. Not with a proxy: only that one knows.
    bool is_listened_to(const QByteArray& sig) const;

private:
    struct Entry
    {
        ASignalMonitorInternal* hub = nullptr; ///< a child
        bool is_attached = false;              ///< `detach` is still to come
    };

    ASignalMonitorInternal* get_sigentry(const char* sig);
    ASignalMonitorInternal* mark(const QByteArray& sig, bool attached);
    void look();

    mutable PortableMutex lock_;
    QMap<QByteArray, Entry> entries_; ///< under the lock
    QPointer<QObject> proxy_;
    const std::unique_ptr<skuan::LookLater> look_later_;
};
