// Lets Qt look up and connect, and takes the socket from it before the first byte is read.
#include <skuanctl/dial.h>
#include <skuanctl/options.h>
#include <skuanctl/platform_socket.h>

Dial::Dial(const QString& host, std::chrono::milliseconds limit) : host_(host)
{
    limit_.setSingleShot(true);
    limit_.start(limit);
    connect(&limit_, &QTimer::timeout, this,
            [this, limit] { fail(QStringLiteral("no answer within %1").arg(in_seconds(limit))); });
    connect(&socket_, &QTcpSocket::connected, this, &Dial::take_socket);
    connect(&socket_, &QTcpSocket::stateChanged, this, [this](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            fail(socket_.errorString());
    });
    QTimer::singleShot(0, this, [this] { socket_.connectToHost(host_, server_port); });
}

bool Dial::leads_back_to(const QHostAddress& listener) const
{
    const bool hears_all = listener == QHostAddress::Any || listener == QHostAddress::AnyIPv4 ||
                           listener == QHostAddress::AnyIPv6;
    return hears_all ? peer_.isLoopback() || peer_ == local_
                     : peer_.isEqual(listener, QHostAddress::ConvertV4MappedToIPv4);
}

void Dial::take_socket()
{
    peer_ = socket_.peerAddress();
    local_ = socket_.localAddress();
    const qintptr own = duplicate_socket(socket_.socketDescriptor());
    if (own < 0)
        return fail(QStringLiteral("the system has no more sockets"));
    limit_.stop();
    socket_.disconnect(this);
    socket_.abort(); // closes only its own descriptor
    Q_EMIT connected(own);
}

void Dial::fail(const QString& why)
{
    limit_.stop();
    socket_.disconnect(this);
    socket_.abort();
    Q_EMIT failed(
        QStringLiteral("cannot connect to %1 port %2: %3").arg(host_, QString::number(server_port), why));
}
