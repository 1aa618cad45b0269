// Accepting clients, and doing on the server's thread what other threads ask for.
#include <simulator/server.h>

#include <simulator/catalogue_p.h>
#include <simulator/connection_p.h>
#include <simulator/control_p.h>
#include <simulator/fault_board_p.h>
#include <simulator/field_clock_p.h>
#include <simulator/reading_p.h>
#include <simulator/start_status_p.h>
#include <simulator/state_file_p.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <map>

namespace simulator {

namespace {

QString place_text(const QHostAddress& address, quint16 port)
{
    const QString text = address.toString();
    return (text.contains(QLatin1Char(':')) ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2"))
        .arg(text)
        .arg(port);
}

} // namespace

class Server::Private
{
public:
    Private(Server& server, Settings given)
        : self(server),
          settings(std::move(given)),
          faults(settings.faults),
          backlog(settings.max_total_backlog),
          responder(settings),
          error(responder.load()),
          clock(settings.pace, responder.field_rate(),
                {[this] { return field(); }, [this](quint64 fields) { responder.passed_unseen(fields); }}),
          port(settings.port)
    {
        QObject::connect(&start, &StartStatus::done, &self, [this] { Q_EMIT self.started(open()); });
        listener.setMaxPendingConnections(1000);
        QObject::connect(&listener, &QTcpServer::newConnection, &self, [this] { accept(); });
    }

    bool field()
    {
        const bool starts = start.field();
        return responder.field() || starts;
    }

    template <class Listener>
    bool listen(Listener& what, quint16 on);
    bool open();
    void restart();
    QStringList describe_clients() const;
    QStringList describe_registrations() const;

    void accept();
    void take(QTcpSocket* socket);
    void gone(Connection* connection);

    // Runs `act` on the server's thread, and returns when it is done.
    template <class Act>
    void on_thread(Act act)
    {
        QMetaObject::invokeMethod(&self, act,
                                  QThread::currentThread() == self.thread() ? Qt::DirectConnection
                                                                            : Qt::BlockingQueuedConnection);
    }

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
    QString error; // also why the state could not be loaded
    FieldClock clock;
    StartStatus start;
    Tally tally;
    QTcpServer listener;
    quint16 port;                           // the real one, once it is known
    std::map<quint64, Connection*> clients; // children of the server
    quint64 last_client = 0;
};

// `what` is a QTcpServer, or has one.
template <class Listener>
bool Server::Private::listen(Listener& what, quint16 on)
{
    if (what.listen(settings.address, on))
        return true;
    error =
        QStringLiteral("cannot listen on %1: %2").arg(place_text(settings.address, on), what.errorString());
    return false;
}

// For clients; after a restart, too.
bool Server::Private::open()
{
    if (!listener.isListening() && !listen(listener, port))
        return false;
    port = listener.serverPort();
    return true;
}

void Server::Private::restart()
{
    for (const auto& [id, connection] : std::map(clients))
        connection->drop();
    responder.restart();
    clock.set_rate(responder.field_rate());
    start.begin(responder.state().start_script);
    if (start.is_done()) {
        Q_EMIT self.started(open());
        return;
    }
    listener.close();
    clock.wake();
}

QStringList Server::Private::describe_clients() const
{
    QStringList lines;
    for (const auto& [id, connection] : clients)
        lines += QStringLiteral("%1 %2").arg(id).arg(connection->peer());
    return lines;
}

// Lines as in "1 A status timecode" and "1 machine melt".
QStringList Server::Private::describe_registrations() const
{
    QStringList lines;
    const auto add = [&](quint64 id, const QString& of, const char* enumeration, quint32 classes) {
        QStringList words{QString::number(id), of};
        for (int bit = 0; classes >> bit != 0; ++bit)
            if ((classes >> bit & 1) != 0)
                words += Catalogue::get().name(enumeration, bit);
        if (classes != 0)
            lines += words.join(QLatin1Char(' '));
    };
    for (const auto& [id, connection] : clients) {
        const Session& session = connection->session();
        add(id, QStringLiteral("machine"), "ReportType", session.report_classes);
        for (std::size_t i = 0; i != session.channel_classes.size(); ++i)
            add(id, QString(QChar(static_cast<ushort>('A' + i))), "ChannelReportType",
                session.channel_classes[i]);
    }
    return lines;
}

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
    connection->refresh_faults(); // may end it at once
}

void Server::Private::gone(Connection* connection)
{
    clients.erase(connection->id());
    responder.leave(connection->session());
    // Not only when it is deleted: by then others have asked for the room.
    connection->session().forget(responder.budget(), backlog);
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
    if (!d->error.isEmpty())
        return false;
    const quint16 status_port = d->settings.start_status_port;
    d->start.begin(d->responder.state().start_script);
    if (d->start.is_done() && !d->open())
        return false;
    if (status_port != 0 && !d->listen(d->start, status_port)) {
        d->error += QStringLiteral("; --status-port 0 does without it");
        return false;
    }
    if (d->start.is_done())
        Q_EMIT started(true);
    else
        d->clock.wake();
    return true;
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
    return place_text(d->settings.address, d->port);
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
    d->on_thread([this, fields] {
        for (quint64 i = 0; i < fields; ++i)
            d->clock.step();
    });
}

void Server::restart()
{
    d->on_thread([this] { d->restart(); });
}

QByteArray Server::state() const
{
    QByteArray text;
    d->on_thread([&] { text = state_text(d->responder.state()); });
    return text;
}

bool Server::save(QString* error)
{
    QString why = QStringLiteral("the server has no state file");
    if (!d->settings.state_file.isEmpty())
        d->on_thread([&] { why = save_state(d->settings.state_file, d->responder.state()); });
    if (error)
        *error = why;
    return why.isEmpty();
}

QString Server::control(const QString& line, QString* error)
{
    ControlAnswer answer;
    d->on_thread([&] {
        d->clock.wake();
        answer = run_control({*this, d->responder.state(), d->responder.audience(),
                              [this](quint64 client) { return d->faults.of(client); },
                              [this] { return d->describe_clients(); },
                              [this] { return d->describe_registrations(); }},
                             line);
        d->responder.audience().deliver();
    });
    if (error)
        *error = answer.error;
    return answer.text;
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
