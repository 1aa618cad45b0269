// Signals that are passed on only while somebody listens.
#pragma once

#include <skuan/monitors/asignal_monitor.h>

#include <QStringList>

#include <memory>
#include <set>
#include <vector>

/// Keeps routes from its own signals (or those of its proxy) to signals or slots of other objects. A route is
/// a connection only while its source signal has some other receiver: until then it costs nothing.
///
/// Threads: as for ASignalMonitor; routes are added and removed on the router's own.
class SKUAN_EXPORT ASignalRouter : public ASignalMonitor
{
    Q_OBJECT

public:
    explicit ASignalRouter(QObject* parent = nullptr);
    ~ASignalRouter() override;

    /// From `sig`, as SIGNAL writes it, to a signal or slot of `target`, as SIGNAL or SLOT writes it. The
    /// third signature tells routes apart that are else the same, and is shown with them. A null target:
    /// nothing.
    void add_route(const char* sig, QObject* target, const char* target_sig);
    void add_route(const char* sig, QObject* target, const char* target_sig, const char* third_sig);
    /// False if there is no such route.
    bool remove_route(const char* sig, QObject* target, const char* target_sig);
    bool remove_route(const char* sig, QObject* target, const char* target_sig, const char* third_sig);

    /// All of them, for a log: "deck 2sig_speed(int) => meter 1show(int)", and the third signature if it is
    /// another one.
    QStringList routes() const;

protected:
    int own_connections(const QByteArray& sig) const override;

private Q_SLOTS:
    void attach(const QByteArray& sig);
    void detach(const QByteArray& sig);

private:
    struct Route
    {
        QByteArray sig, target_sig, third_sig;
        QPointer<QObject> target;
        QMetaObject::Connection connection; ///< while there is one
    };
    using Routes = std::vector<std::shared_ptr<Route>>;

    Routes routes_of(const QByteArray& sig) const;
    bool is_connected(const Route& route) const;
    void cut(Route& route);

    mutable PortableMutex lock_;
    Routes routes_;                ///< under the lock, as are the connections in it
    std::set<QByteArray> in_hand_; ///< under the lock: signals that are being connected
};
