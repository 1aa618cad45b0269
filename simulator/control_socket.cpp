// Lines in, lines out.
#include <simulator/control_socket_p.h>

#include <simulator/server.h>

#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>

namespace simulator {

namespace {

constexpr qint64 longest_line = 64 * 1024; // bytes
constexpr int most_clients = 50;

QByteArray lines_of(const QString& text, const QString& error)
{
    QByteArray lines;
    if (!text.isEmpty())
        for (const QString& line : text.split(QLatin1Char('\n')))
            lines += ' ' + line.toUtf8() + '\n';
    return lines + (error.isEmpty() ? QByteArray("ok") : "error " + error.simplified().toUtf8()) + '\n';
}

} // namespace

ControlSocket::ControlSocket(Server& server) : server_(server)
{
    listener_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&listener_, &QLocalServer::newConnection, this, [this] { accept(); });
}

bool ControlSocket::listen(const QString& name)
{
    QLocalSocket probe;
    probe.connectToServer(name);
    if (probe.waitForConnected(1000)) {
        error_ = QStringLiteral("another program listens to the control name %1").arg(name);
        return false;
    }
    if (QFileInfo(QDir::temp().filePath(name)).isFile()) { // what follows would delete it
        error_ = QStringLiteral("the control name %1 is that of a file").arg(name);
        return false;
    }
    QLocalServer::removeServer(name);
    if (listener_.listen(name))
        return true;
    error_ = QStringLiteral("cannot listen to the control name %1: %2").arg(name, listener_.errorString());
    return false;
}

void ControlSocket::accept()
{
    while (QLocalSocket* client = listener_.nextPendingConnection()) {
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        if (clients_ == most_clients) {
            client->abort();
            client->deleteLater();
            continue;
        }
        ++clients_;
        connect(client, &QObject::destroyed, this, [this] { --clients_; });
        client->setReadBufferSize(longest_line + 1);
        connect(client, &QLocalSocket::readyRead, this, [this, client] { read(client); });
        connect(client, &QLocalSocket::bytesWritten, this, [this, client] { read(client); });
        read(client);
    }
}

// The next line is taken when the answer to the one before has been read, so that nothing piles up.
void ControlSocket::read(QLocalSocket* client)
{
    while (client->bytesToWrite() == 0 && client->canReadLine()) {
        QString error;
        const QString text = server_.control(QString::fromUtf8(client->readLine()).trimmed(), &error);
        client->write(lines_of(text, error));
    }
    if (client->bytesAvailable() > longest_line && !client->canReadLine()) {
        client->disconnect(this);
        client->write(lines_of({}, QStringLiteral("the line is too long")));
        client->flush();
        client->abort();
    }
}

Told tell(const QString& name, const QString& line)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected())
        return {{}, QStringLiteral("nobody listens to the control name %1").arg(name)};
    socket.write(line.simplified().toUtf8() + '\n');
    Told told;
    while (socket.canReadLine() || socket.waitForReadyRead(-1)) {
        while (socket.canReadLine()) {
            const QByteArray answer = socket.readLine();
            if (answer.startsWith(' '))
                told.answer += answer.mid(1);
            else if (answer.startsWith("error "))
                return {told.answer, QString::fromUtf8(answer.mid(6)).trimmed()};
            else
                return told;
        }
    }
    return {told.answer, QStringLiteral("the program at %1 has gone away").arg(name)};
}

} // namespace simulator
