// The class Server for tests whose servers are in another process, which `stations` is: the same functions
// and signals, and every one of them goes there. A simulator library with this file in the place of its own
// server.cpp takes the place of the usual one when a test program is started, so that it is the same program.
#include <simulator/server.h>

#include <across/wire.h>

#include <QMap>
#include <QMetaMethod>
#include <QThread>

namespace simulator {

using across::Call;

class Server::Private
{
public:
    Private(Server& server, Settings given)
        : self(server), settings(std::move(given)), faults(settings.faults)
    {
        QObject::connect(&socket, &QTcpSocket::readyRead, &self, [this] { read(); });
    }

    template <class Act>
    void on_thread(Act act) const
    {
        QMetaObject::invokeMethod(&self, act,
                                  QThread::currentThread() == self.thread() ? Qt::DirectConnection
                                                                            : Qt::BlockingQueuedConnection);
    }

    // Any thread. When it returns, the call has been carried out. Meanwhile signals come, and their slots may
    // call in their turn.
    template <class... Arguments>
    QByteArray call(Call what, const Arguments&... arguments)
    {
        QByteArray answer;
        on_thread([&] {
            const quint64 number = ++calls;
            across::send(socket, across::pack(number, what, arguments...));
            for (read(); !answers.contains(number); read())
                if (!socket.waitForReadyRead(-1))
                    qFatal("the process with the servers: %s", qPrintable(socket.errorString()));
            answer = answers.take(number);
        });
        return answer;
    }

    void read()
    {
        for (QByteArray bytes; across::take(socket, bytes);) {
            QDataStream frame(bytes);
            across::Told what{};
            frame >> what;
            if (what == across::Told::Answer) {
                quint64 number = 0;
                frame >> number;
                frame >> answers[number];
            } else {
                emit_signal(what, frame);
                const bool hears = self.isSignalConnected(QMetaMethod::fromSignal(&Server::command));
                across::send(socket, across::pack(quint64(0), Call::Taken, hears));
            }
        }
    }

    void emit_signal(across::Told what, QDataStream& frame)
    {
        quint64 client = 0; // of `started`: whether it listens
        Element message;
        across::unpack(frame, client, message);
        switch (what) {
        case across::Told::Started:
            return Q_EMIT self.started(client != 0);
        case across::Told::ClientConnected:
            return Q_EMIT self.client_connected(client);
        case across::Told::ClientGone:
            return Q_EMIT self.client_gone(client);
        case across::Told::Command:
            return Q_EMIT self.command(client, message);
        case across::Told::Answer:
            return;
        }
    }

    Server& self;
    const Settings settings;
    Faults faults; // as they were set last
    QTcpSocket socket;
    quint64 calls = 0;
    QMap<quint64, QByteArray> answers; // that are still to be taken, by the numbers of their calls
    bool is_listening = false;
    QString error, place;
    quint16 port = 0;
};

Server::Server(Settings settings, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(*this, std::move(settings)))
{
}

Server::~Server()
{
    blockSignals(true);
    if (d->is_listening)
        d->call(Call::End);
}

bool Server::listen()
{
    const QStringList stations = qEnvironmentVariable("SKUAN_STATIONS").split(':');
    d->socket.connectToHost(stations.first(), stations.last().toUShort());
    if (!d->socket.waitForConnected())
        qFatal("no process with servers at SKUAN_STATIONS: %s", qPrintable(d->socket.errorString()));
    d->socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    QDataStream answer(d->call(Call::Listen, d->settings));
    across::unpack(answer, d->is_listening, d->error, d->place, d->port);
    return d->is_listening;
}

bool Server::is_listening() const
{
    return d->is_listening;
}
QString Server::error_text() const
{
    return d->error;
}
QString Server::place() const
{
    return d->place;
}
quint16 Server::port() const
{
    return d->port;
}

void Server::set_faults(const Faults& faults)
{
    d->on_thread([&] { d->faults = faults; });
    set_client_faults(0, faults);
}
void Server::set_client_faults(quint64 client, const Faults& faults)
{
    d->call(Call::SetFaults, client, faults);
}
Faults Server::faults() const
{
    Faults faults;
    d->on_thread([&] { faults = d->faults; });
    return faults;
}

void Server::send_report(const QByteArray& xml)
{
    send_report(0, xml);
}
void Server::send_report(quint64 client, const QByteArray& xml)
{
    send_raw(client, xml + "\r\n");
}
bool Server::send_report(const QString& name, std::vector<Element> fields, QString* error)
{
    QString objection;
    QDataStream answer(d->call(Call::SendReport, name, fields));
    across::unpack(answer, objection);
    if (error)
        *error = objection;
    return objection.isEmpty();
}
void Server::send_raw(const QByteArray& bytes)
{
    send_raw(0, bytes);
}
void Server::send_raw(quint64 client, const QByteArray& bytes)
{
    d->call(Call::SendRaw, client, bytes);
}

QString Server::control(const QString& line, QString* error)
{
    QString text, objection;
    QDataStream answer(d->call(Call::Control, line));
    across::unpack(answer, text, objection);
    if (error)
        *error = objection;
    return text;
}

// The control language has words for the rest.

void Server::drop_clients()
{
    control(QStringLiteral("drop"));
}
void Server::drop_client(quint64 client)
{
    control(QStringLiteral("drop %1").arg(client));
}
void Server::step(quint64 fields)
{
    control(QStringLiteral("step %1").arg(fields));
}
void Server::restart()
{
    control(QStringLiteral("restart"));
}
bool Server::save(QString* error)
{
    QString objection;
    control(QStringLiteral("save"), &objection);
    if (error)
        *error = objection;
    return objection.isEmpty();
}
QByteArray Server::state() const
{
    return const_cast<Server*>(this)->control(QStringLiteral("state")).toUtf8();
}
Counters Server::counters() const
{
    QMap<QString, quint64> counts;
    for (const QString& line : const_cast<Server*>(this)->control(QStringLiteral("counters")).split('\n'))
        counts[line.section(' ', 0, 0)] = line.section(' ', 1).toULongLong();
    return {counts["accepted"], counts["connected"], counts["overrun"],  counts["malformed"],
            counts["messages"], counts["answers"],   counts["received"], counts["sent"]};
}

} // namespace simulator
