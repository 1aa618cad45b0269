// The script of a start, and its stream.
#include <simulator/start_status_p.h>

#include <simulator/message_writer_p.h>

#include <QTcpSocket>

#include <limits>

namespace simulator {

namespace {

constexpr std::size_t most_listeners = 100;

void send_away(QTcpSocket* socket)
{
    socket->disconnect();
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] { socket->readAll(); });
    socket->disconnectFromHost(); // when what was written has gone
    if (socket->state() == QAbstractSocket::UnconnectedState)
        socket->deleteLater();
}

} // namespace

StartStatus::StartStatus(QObject* parent) : QObject(parent)
{
    connect(&listener_, &QTcpServer::newConnection, this, [this] { accept(); });
}

StartStatus::~StartStatus()
{
    for (QTcpSocket* socket : listeners_)
        socket->disconnect(this);
}

bool StartStatus::listen(const QHostAddress& address, quint16 port)
{
    return listener_.listen(address, port);
}

void StartStatus::begin(const std::vector<StartStep>& script)
{
    script_ = script;
    step_ = 0;
    fields_left_.reset();
    tell_all();
}

bool StartStatus::field()
{
    if (is_done())
        return false;
    const bool begins = !fields_left_;
    if (begins)
        fields_left_ = script_[step_].fields;
    else if (*fields_left_ > 0)
        --*fields_left_;
    const bool ends = *fields_left_ == 0;
    while (!is_done() && *fields_left_ == 0)
        if (++step_ < script_.size())
            fields_left_ = script_[step_].fields;
    if (begins || ends)
        tell_all();
    if (is_done())
        Q_EMIT done();
    return !is_done();
}

void StartStatus::accept()
{
    while (QTcpSocket* socket = listener_.nextPendingConnection()) {
        socket->write(message());
        if (is_done() || listeners_.size() == most_listeners) {
            send_away(socket);
            continue;
        }
        listeners_.insert(socket);
        connect(socket, &QTcpSocket::readyRead, this, [socket] { socket->readAll(); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            listeners_.erase(socket);
            socket->deleteLater();
        });
    }
}

void StartStatus::tell_all()
{
    for (QTcpSocket* socket : listeners_) {
        socket->write(message());
        if (is_done())
            send_away(socket);
    }
    if (is_done())
        listeners_.clear();
}

QByteArray StartStatus::message() const
{
    const bool runs = !is_done() && fields_left_;
    const StartStep step = runs ? script_[step_] : StartStep();
    MessageWriter writer(std::numeric_limits<qint64>::max());
    writer.message("status", {{"state", is_done() ? "done"
                                        : runs    ? "running"
                                                  : "not_started"},
                              {"step", runs && step.name.isEmpty() ? QStringLiteral("step") : step.name},
                              {"step_desc", step.description},
                              {"step_count", QString::number(script_.size())},
                              {"steps_complete", QString::number(step_)}});
    return writer.take();
}

} // namespace simulator
