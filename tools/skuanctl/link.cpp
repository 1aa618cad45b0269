// Opening, watching and losing the connection.
#include <skuanctl/link.h>
#include <skuanctl/options.h>

#include <QAbstractSocket>
#include <QHostInfo>

Link::Link(const QString& host, std::chrono::milliseconds limit, Take take)
    : KVRP3::APIQt(nullptr), host_(host), limit_(limit), take_(std::move(take)), place_(host)
{
    wait_.setSingleShot(true);
    wait_.setInterval(limit);
    connect(&wait_, &QTimer::timeout, this, &Link::on_timeout);
    connect(this, &APIQt::connected, this, &Link::on_connected);
    connect(this, &APIQt::stateChanged, this, [this](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            on_unconnected();
    });
}

// What is outstanding ends here and not in the base class, while this object is still whole.
Link::~Link()
{
    state_ = over;
    fail_all_pending_commands();
}

void Link::open()
{
    wait_.start();
    const QHostAddress address(host_);
    if (!address.isNull()) {
        state_ = connecting;
        return connect_to_server(address);
    }
    QHostInfo::lookupHost(host_, this, [this](const QHostInfo& found) {
        if (state_ != looking_up)
            return;
        if (found.error() != QHostInfo::NoError)
            return fail(exit_cannot_connect,
                        QStringLiteral("cannot find host %1: %2").arg(host_, found.errorString()));
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
    connect_to_server(host_); // tries each address in turn
}

void Link::send_bytes(const QByteArray& messages)
{
    send(messages.constData(), static_cast<unsigned>(messages.size()));
}

// No command is issued through the base class, so no message is for it.
bool Link::parse_intercept(const XMLTree& message)
{
    if (state_ == over)
        return true;
    if (wait_.isActive() && message.has_tag_z("reply"))
        wait_.start();
    take_(message);
    return true;
}

void Link::on_connected()
{
    if (state_ != connecting)
        return;
    state_ = connected_to_server;
    wait_.start();
    Q_EMIT ready();
}

void Link::on_unconnected()
{
    const QString why = socket_error();
    if (state_ == connecting)
        return fail(exit_cannot_connect, cannot_connect(why));
    // Without an error of the socket's it was this side that closed, as it does when bytes come that
    // are no messages.
    if (state_ == connected_to_server)
        fail(exit_connection_lost,
             QStringLiteral("lost the connection to %1: %2")
                 .arg(place_, why.isEmpty() ? QStringLiteral("it sent bytes that are no messages") : why));
}

void Link::on_timeout()
{
    const QString limit = in_seconds(limit_);
    switch (state_) {
    case looking_up:
        return fail(exit_cannot_connect,
                    QStringLiteral("cannot find host %1 within %2: no answer").arg(host_, limit));
    case connecting:
        return fail(exit_cannot_connect, cannot_connect(QStringLiteral("no answer")));
    case connected_to_server:
        return fail(exit_timed_out, QStringLiteral("%1 gave no answer within %2").arg(place_, limit));
    case over:
        return;
    }
}

void Link::fail(ExitCode code, const QString& message)
{
    state_ = over;
    wait_.stop();
    Q_EMIT failed({code, message, {}});
}

QString Link::cannot_connect(const QString& why) const
{
    return QStringLiteral("cannot connect to %1 port 8913 within %2: %3")
        .arg(place_, in_seconds(limit_), why);
}

// Only the socket knows why there is no connection. It is a child of this object, the youngest one
// where an earlier one is still on its way out. Empty if it has no error.
QString Link::socket_error() const
{
    const auto sockets = findChildren<QAbstractSocket*>();
    const bool has_error =
        !sockets.isEmpty() && sockets.constLast()->error() != QAbstractSocket::UnknownSocketError;
    return has_error ? sockets.constLast()->errorString() : QString();
}
