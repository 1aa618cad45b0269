// The simulated server: a real one to its clients, a puppet to its test.
#pragma once

#include <simulator/counters.h>
#include <simulator/element.h>
#include <simulator/export.h>
#include <simulator/settings.h>

#include <QObject>

#include <memory>

namespace simulator {

/// Listens on TCP and answers the control protocol for any number of clients, each on its own. Lives in
/// its thread's event loop, costs nothing while nothing arrives, and needs a QCoreApplication; for a
/// server on a thread of its own see ServerThread.
///
/// Functions marked "any thread" may be called from every thread while the server lives. Clients are
/// numbered from 1 in the order in which they were accepted; an unknown number is ignored.
class SKUAN_SIMULATOR_EXPORT Server : public QObject
{
    Q_OBJECT
public:
    explicit Server(Settings settings = {}, QObject* parent = nullptr);

    /// Closes all connections; no signal comes any more.
    ~Server() override;

    /// False if it cannot, and error_text() says what was tried and why it failed: to listen, or to take the
    /// state file or the seed of its settings. Once for each server. With a start script it gives true as
    /// soon as the start has begun, and `started` comes when the control port opens.
    bool listen();
    bool is_listening() const;
    QString error_text() const;

    /// Where it listens, as in "127.0.0.1:8913". port() is the real one if 0 was asked for.
    QString place() const;
    quint16 port() const;

    /// Any thread. Hold from the next command that is read, and for answers that wait. The first form is
    /// for every client, present and future, and forgets what was set for single ones.
    void set_faults(const Faults& faults);
    void set_client_faults(quint64 client, const Faults& faults);

    /// Any thread. The faults of clients that have none of their own.
    Faults faults() const;

    /// Any thread. Sends one whole message, and CR LF behind it, to every client or to one, registered or
    /// not. The bytes are sent as they are. Faults of the byte stream hold for them.
    void send_report(const QByteArray& xml);
    void send_report(quint64 client, const QByteArray& xml);

    /// Any thread. Sends the report of that name with these children to every client, registered or not.
    /// False, with the reason in `*error` if that is given, for what the protocol does not have: an unknown
    /// name, a child that is missing, doubled or of no such value. Children that are unknown are left out,
    /// and the others sent in the protocol's order.
    bool send_report(const QString& name, std::vector<Element> fields, QString* error = nullptr);

    /// Any thread. Sends bytes of any kind, with nothing added.
    void send_raw(const QByteArray& bytes);
    void send_raw(quint64 client, const QByteArray& bytes);

    /// Any thread. Ends all connections at once, or one; the server goes on listening.
    void drop_clients();
    void drop_client(quint64 client);

    /// Any thread. Lets so many fields pass, and returns when they have: what was begun before goes on, and
    /// its reports are on their way. For servers whose own time stands still, `Settings::pace`.
    void step(quint64 fields = 1);

    /// Any thread, as are those below. Ends all connections and starts again, through the present start
    /// script: nothing is on the channels, and configuration that waited for a restart is in effect. What the
    /// server has stays.
    void restart();

    /// What the server has, in the form of a state file.
    QByteArray state() const;

    /// Saves that to the state file of the settings. False, with the reason in `*error` if that is given, if
    /// there is none or it cannot be written: then what was there before is still there.
    bool save(QString* error = nullptr);

    /// Carries out a line of the control language ("help" tells it) and gives its answer, of any number of
    /// lines. What cannot be done changes nothing, gives an empty text, and puts the reason in `*error`,
    /// which is else cleared.
    QString control(const QString& line, QString* error = nullptr);

    Counters counters() const;

Q_SIGNALS:
    /// On the server's thread. A start is over, of listen() or of restart(). False: the control port could
    /// not be opened, and error_text() says why.
    void started(bool listens);
    /// On the server's thread. Connect queued, or directly with a slot that may run there.
    void client_connected(quint64 client);
    void client_gone(quint64 client);
    /// A whole message has come in from a client, before it is answered. Message: usually a `cmd`.
    void command(quint64 client, const simulator::Element& message);

private:
    class SKUAN_SIMULATOR_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace simulator
