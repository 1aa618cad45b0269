// The process that has the servers of a test of the other system: one for each connection, for as long as
// that lasts. Tells where it listens, and each server that it makes. Ends when it is killed.
#include <across/wire.h>
#include <simulator/server.h>

#include <QCoreApplication>
#include <QTcpServer>

#include <cstdio>

namespace {

using across::Call;
using across::Told;
using simulator::Element;
using simulator::Server;

void say(const QString& line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

/// The server's end of one connection with a test. Belongs to the socket.
class Station : public QObject
{
public:
    explicit Station(QTcpSocket* socket) : QObject(socket), socket_(*socket)
    {
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(socket, &QTcpSocket::readyRead, this, &Station::read);
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        read();
    }

private:
    void read()
    {
        for (QByteArray bytes; across::take(socket_, bytes);) {
            QDataStream frame(bytes);
            quint64 number = 0;
            Call what{};
            across::unpack(frame, number, what);
            if (what == Call::Taken) {
                frame >> commands_are_heard_;
                --to_be_taken_;
            } else if (what == Call::End) {
                connect(server_.get(), &QObject::destroyed, this, [this, number] { answer(number); });
                server_.release()->deleteLater(); // which may be sending a signal
            } else {
                answer(number, carry_out(what, frame));
            }
        }
    }
    void answer(quint64 number, const QByteArray& answer = {})
    {
        across::send(socket_, across::pack(Told::Answer, number, answer));
    }

    // The test's slots may call, and call where a signal comes of it.
    void tell(Told what, quint64 client, const Element& message = {})
    {
        across::send(socket_, across::pack(what, client, message));
        for (const int others = to_be_taken_++; to_be_taken_ > others; read())
            if (!socket_.waitForReadyRead(-1))
                return;
    }

    QByteArray carry_out(Call what, QDataStream& frame)
    {
        QString text, error;
        QByteArray bytes;
        quint64 client = 0;
        std::vector<Element> elements;
        simulator::Faults faults;
        switch (what) {
        case Call::Listen:
            return listen(frame);
        case Call::End:
            server_.reset();
            break;
        case Call::SetFaults:
            across::unpack(frame, client, faults);
            client ? server_->set_client_faults(client, faults) : server_->set_faults(faults);
            break;
        case Call::SendRaw:
            across::unpack(frame, client, bytes);
            client ? server_->send_raw(client, bytes) : server_->send_raw(bytes);
            break;
        case Call::SendReport:
            across::unpack(frame, text, elements);
            server_->send_report(text, elements, &error);
            return across::pack(error);
        case Call::Control:
            across::unpack(frame, text);
            text = server_->control(text, &error);
            return across::pack(text, error);
        default:
            break;
        }
        return {};
    }

    QByteArray listen(QDataStream& frame)
    {
        simulator::Settings settings;
        across::unpack(frame, settings);
        server_ = std::make_unique<Server>(settings);
        connect(server_.get(), &Server::started, this,
                [this](bool listens) { tell(Told::Started, listens); });
        connect(server_.get(), &Server::client_connected, this,
                [this](quint64 client) { tell(Told::ClientConnected, client); });
        connect(server_.get(), &Server::client_gone, this,
                [this](quint64 client) { tell(Told::ClientGone, client); });
        connect(server_.get(), &Server::command, this, [this](quint64 client, const Element& message) {
            if (commands_are_heard_)
                tell(Told::Command, client, message);
        });
        const bool listens = server_->listen();
        say("a server at " + server_->place());
        return across::pack(listens, server_->error_text(), server_->place(), server_->port());
    }

    QTcpSocket& socket_;
    std::unique_ptr<Server> server_;
    int to_be_taken_ = 0;             // signals
    bool commands_are_heard_ = false; // as it was with the last signal
};

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QTcpServer listener;
    QObject::connect(&listener, &QTcpServer::newConnection, [&] {
        while (QTcpSocket* socket = listener.nextPendingConnection())
            new Station(socket);
    });
    if (!listener.listen(QHostAddress::LocalHost))
        return 1;
    say(QStringLiteral("127.0.0.1:%1").arg(listener.serverPort()));
    return QCoreApplication::exec();
}
