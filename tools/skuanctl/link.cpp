// Opening, watching and losing the connection.
#include <skuanctl/link.h>
#include <skuanctl/options.h>

#include <QHostAddress>
#include <QHostInfo>

namespace {
constexpr unsigned longest_message = 65536; // bytes, as the library has it
}

Link::Link(const QString& host, std::chrono::milliseconds limit, Take take)
    : host_(host), limit_(limit), take_(std::move(take)), place_(host), engine_(longest_message)
{
    engine_.config_tag("reply");
    engine_.config_tag("report");
    socket_.setReadBufferSize(longest_message); // what a slow reader leaves is the server's to keep
    wait_.setSingleShot(true);
    wait_.setInterval(limit);
    connect(&wait_, &QTimer::timeout, this, &Link::on_timeout);
    connect(&socket_, &QTcpSocket::connected, this, &Link::on_connected);
    reading_.setSingleShot(true);
    connect(&socket_, &QTcpSocket::readyRead, &reading_, qOverload<>(&QTimer::start));
    connect(&reading_, &QTimer::timeout, this, &Link::read);
    connect(&socket_, &QTcpSocket::stateChanged, this, [this](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            on_unconnected();
    });
}

// The socket ends its connection when it goes, which is for nobody any more.
Link::~Link()
{
    socket_.disconnect(this);
}

void Link::open()
{
    wait_.start();
    const QHostAddress address(host_);
    if (!address.isNull()) {
        state_ = connecting;
        return socket_.connectToHost(address, server_port);
    }
    QHostInfo::lookupHost(host_, this, [this](const QHostInfo& found) {
        if (state_ != looking_up)
            return;
        if (found.error() != QHostInfo::NoError)
            return fail(cannot_find(host_, found.errorString()));
        QStringList addresses;
        for (const QHostAddress& one : found.addresses())
            addresses += one.toString();
        connect_by_name(addresses);
    });
}

void Link::connect_by_name(const QStringList& addresses)
{
    state_ = connecting;
    place_ = QStringLiteral("%1 (address %2)").arg(host_, addresses.join(QStringLiteral(", ")));
    socket_.connectToHost(host_, server_port); // tries each address in turn
}

void Link::send_bytes(const QByteArray& messages)
{
    socket_.write(messages);
}

void Link::read()
{
    const QByteArray bytes = socket_.bytesAvailable() > 0 ? socket_.readAll() : QByteArray();
    int at = 0;
    while (at < bytes.size() && state_ == connected_to_server) {
        const unsigned taken =
            engine_.input_bytes(static_cast<unsigned>(bytes.size() - at), bytes.data() + at);
        at += static_cast<int>(taken);
        take_messages();
        if (engine_.parse_error() || taken == 0) // no room: a message without an end
            return lose(QStringLiteral("the server sent bytes that are no messages"));
    }
}

void Link::take_messages()
{
    while (state_ == connected_to_server) {
        const XMLTree message = engine_.get_xml();
        if (message.is_null())
            return;
        if (wait_.isActive() && message.has_tag_z("reply"))
            wait_.start();
        take_(message);
    }
}

void Link::on_connected()
{
    if (state_ != connecting)
        return;
    state_ = connected_to_server;
    socket_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    wait_.start();
    Q_EMIT ready();
}

void Link::on_unconnected()
{
    if (state_ == connecting)
        return fail(cannot_connect(place_, socket_.errorString()));
    read(); // what came before the end
    lose(socket_.errorString());
}

void Link::on_timeout()
{
    const QString within = QStringLiteral("no answer within ") + in_seconds(limit_);
    switch (state_) {
    case looking_up:
        return fail(cannot_find(host_, within));
    case connecting:
        return fail(cannot_connect(place_, within));
    case connected_to_server:
        return fail(no_answer(place_, limit_));
    case over:
        return;
    }
}

void Link::lose(const QString& why)
{
    if (state_ == connected_to_server)
        fail(connection_lost(place_, why));
}

void Link::fail(const Failure& failure)
{
    state_ = over;
    wait_.stop();
    socket_.abort();
    Q_EMIT failed(failure);
}
