// Accepting clients, and doing on the server's thread what other threads ask for.
#include <simulator/server.h>

#include <simulator/catalogue_p.h>
#include <simulator/connection_p.h>
#include <simulator/fault_board_p.h>
#include <simulator/field_clock_p.h>
#include <simulator/reading_p.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <map>

namespace simulator {

class Server::Private
{
public:
    Private(Server& server, Settings given)
        : self(server),
          settings(std::move(given)),
          faults(settings.faults),
          backlog(settings.max_total_backlog),
          responder(settings),
          clock(settings.pace, responder.field_rate(),
                {[this] { return responder.field(); },
                 [this](quint64 fields) { responder.passed_unseen(fields); }})
    {
        listener.setMaxPendingConnections(1000);
        QObject::connect(&listener, &QTcpServer::newConnection, &self, [this] { accept(); });
    }

    void accept();
    void take(QTcpSocket* socket);
    void gone(Connection* connection);

    // Runs `act` for one client, or for all (0), on the server's thread; at once if this is that thread.
    template <class Act>
    void on_clients(quint64 client, Act act)
    {
        QMetaObject::invokeMethod(&self, [this, client, act] {
            const std::map<quint64, Connection*> present = clients; // an act may end connections
            for (const auto& [id, connection] : present)
                if (client == 0 || client == id)
                    act(*connection);
        });
    }

    Server& self;
    const Settings settings;
    FaultBoard faults;
    Budget backlog;
    Responder responder;
    FieldClock clock;
    Tally tally;
    QTcpServer listener;
    QString error;
    std::map<quint64, Connection*> clients; // children of the server
    quint64 last_client = 0;
};

void Server::Private::accept()
{
    while (QTcpSocket* socket = listener.nextPendingConnection())
        take(socket);
}

void Server::Private::take(QTcpSocket* socket)
{
    const quint64 id = ++last_client;
    ++tally.accepted;
    if (faults.of(id).refuse) {
        socket->abort();
        socket->deleteLater();
        return;
    }
    auto* connection =
        new Connection(id, socket, {settings, responder, faults, tally, backlog, clock}, &self);
    clients[id] = connection;
    responder.join(connection->session());
    ++tally.connected;
    QObject::connect(connection, &Connection::over, &self, [this, connection] { gone(connection); });
    QObject::connect(connection, &Connection::received, &self,
                     [this, id](const Element& message) { Q_EMIT self.command(id, message); });
    Q_EMIT self.client_connected(id);
}

void Server::Private::gone(Connection* connection)
{
    clients.erase(connection->id());
    responder.leave(connection->session());
    faults.forget(connection->id());
    --tally.connected;
    connection->deleteLater();
    Q_EMIT self.client_gone(connection->id());
}

Server::Server(Settings settings, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(*this, std::move(settings)))
{
}

Server::~Server()
{
    // Those that are over and still to be deleted, too: they use what belongs to the server.
    qDeleteAll(findChildren<Connection*>());
}

bool Server::listen()
{
    if (d->listener.listen(d->settings.address, d->settings.port))
        return true;
    d->error = QStringLiteral("cannot listen on %1: %2").arg(place(), d->listener.errorString());
    return false;
}

bool Server::is_listening() const
{
    return d->listener.isListening();
}

QString Server::error_text() const
{
    return d->error;
}

QString Server::place() const
{
    const QString address = d->settings.address.toString();
    return (address.contains(QLatin1Char(':')) ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2"))
        .arg(address)
        .arg(is_listening() ? port() : d->settings.port);
}

quint16 Server::port() const
{
    return d->listener.serverPort();
}

void Server::set_faults(const Faults& faults)
{
    d->faults.set(faults);
    d->on_clients(0, [](Connection& client) { client.refresh_faults(); });
}

void Server::set_client_faults(quint64 client, const Faults& faults)
{
    d->faults.set(client, faults);
    d->on_clients(client, [](Connection& one) { one.refresh_faults(); });
}

Faults Server::faults() const
{
    return d->faults.of(0);
}

void Server::send_report(const QByteArray& xml)
{
    send_raw(xml + "\r\n");
}

void Server::send_report(quint64 client, const QByteArray& xml)
{
    send_raw(client, xml + "\r\n");
}

bool Server::send_report(const QString& name, std::vector<Element> fields, QString* error)
{
    const ReportForm* form = Catalogue::get().report(name);
    Element report(name, std::move(fields));
    const QString objection =
        form ? read(*form, report).text : QStringLiteral("there is no report \"%1\"").arg(name);
    if (error)
        *error = objection;
    if (!objection.isEmpty())
        return false;
    MessageWriter writer(d->settings.max_backlog);
    writer.report(name, report.children);
    send_raw(writer.take());
    return true;
}

void Server::send_raw(const QByteArray& bytes)
{
    d->on_clients(0, [bytes](Connection& client) { client.send(bytes); });
}

void Server::send_raw(quint64 client, const QByteArray& bytes)
{
    if (client != 0)
        d->on_clients(client, [bytes](Connection& one) { one.send(bytes); });
}

void Server::drop_clients()
{
    d->on_clients(0, [](Connection& client) { client.drop(); });
}

void Server::drop_client(quint64 client)
{
    if (client != 0)
        d->on_clients(client, [](Connection& one) { one.drop(); });
}

void Server::step(quint64 fields)
{
    const auto type =
        QThread::currentThread() == thread() ? Qt::DirectConnection : Qt::BlockingQueuedConnection;
    QMetaObject::invokeMethod(
        this,
        [this, fields] {
            for (quint64 i = 0; i < fields; ++i)
                d->clock.step();
        },
        type);
}

Counters Server::counters() const
{
    Counters now;
    now.accepted = d->tally.accepted;
    now.connected = d->tally.connected;
    now.overrun = d->tally.overrun;
    now.malformed = d->tally.malformed;
    now.messages = d->tally.messages;
    now.answers = d->tally.answers;
    now.bytes_received = d->tally.bytes_received;
    now.bytes_sent = d->tally.bytes_sent;
    return now;
}

} // namespace simulator
