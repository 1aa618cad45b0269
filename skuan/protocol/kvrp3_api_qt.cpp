// Connecting, reading and handing out, with an eye on what slots and callbacks may do meanwhile.
#include <skuan/protocol/kvrp3_api_qt.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/markup/xml_parse2.h>
#include <skuan/protocol/kvrp3_api_qt_impl_p.h>
#include <skuan/protocol/server_port_p.h>

#include <QTcpSocket>

namespace KVRP3 {

namespace {

constexpr unsigned longest_message = 65536;
constexpr qint64 read_size = 1024;
/// How much the socket keeps of what this thread has not read.
constexpr qint64 socket_buffer = 65536;
/// How far the parser may be behind before this thread stops reading. More than one message: so that
/// the parser, working through it, has a result to tell of, and reading goes on then.
constexpr unsigned highest_backlog = 4 * longest_message;

} // namespace

void APIQtImpl::send(const void* data, unsigned length)
{
    if (last_message_ != message_in_hand() && owner_->is_connected())
        messages_sent_.fetch_add(1, std::memory_order_relaxed);
    last_message_ = message_in_hand();
    owner_->send(data, length);
}

APIQt::APIQt(QObject* parent)
    : QObject(parent),
      impl_(std::make_unique<APIQtImpl>(this)),
      engine_(std::make_unique<XMLParseEngine2>(longest_message))
{
    engine_->config_tag("reply");
    engine_->config_tag("report");
    connect(engine_.get(), &XMLParseEngine2::parse_result_available, this, &APIQt::slot_xmlReady,
            Qt::QueuedConnection);
    renew_socket();
}

APIQt::~APIQt()
{
    socket_->disconnect(this);
    delete socket_;
}

/// All that a program does by way of a socket's signals, even in an event loop of its own, it does while one
/// of these lives. A socket that it leaves meanwhile has to stay until the signal has come to its end.
class APIQt::Telling
{
public:
    explicit Telling(APIQt* api) : api_(api) { ++api_->telling_; }
    ~Telling()
    {
        if (--api_->telling_ == 0 && !api_->left_sockets_.empty())
            QMetaObject::invokeMethod(api_, &APIQt::delete_left_sockets, Qt::QueuedConnection);
    }
    Telling(const Telling&) = delete;
    Telling& operator=(const Telling&) = delete;

private:
    APIQt* const api_;
};

void APIQt::delete_left_sockets()
{
    if (telling_ == 0)
        qDeleteAll(std::exchange(left_sockets_, {}));
}

void APIQt::renew_socket()
{
    // Not the old one again: it may be in the midst of telling something, and would afterwards go on with
    // the new connection as if it were the old one.
    if (socket_) {
        socket_->disconnect(this);
        left_sockets_.push_back(socket_);
        delete_left_sockets();
    }
    connected_ = false;
    sent_no_messages_ = false;
    socket_ = new QTcpSocket(this);
    socket_->setReadBufferSize(socket_buffer);
    connect(socket_, &QAbstractSocket::stateChanged, this, &APIQt::tell_state);
    connect(socket_, &QAbstractSocket::readyRead, this, &APIQt::slot_readyRead);
    connect(socket_, &QAbstractSocket::connected, this, &APIQt::tell_connected);
    connect(socket_, &QAbstractSocket::disconnected, this, &APIQt::tell_disconnected);
}

// Whoever is told of something first may change it before the next one is told.

void APIQt::tell_state(QAbstractSocket::SocketState state)
{
    connected_ = state == QAbstractSocket::ConnectedState;
    if (cut_off_)
        return;
    const Telling telling(this);
    const QTcpSocket* const socket = socket_;
    slot_stateChanged(state);
    if (socket == socket_ && socket->state() == state)
        Q_EMIT stateChanged(state);
}

void APIQt::tell_connected()
{
    const Telling telling(this);
    if (connected_ && !cut_off_ && !std::exchange(told_connected_, true))
        Q_EMIT connected();
}

void APIQt::tell_disconnected()
{
    const Telling telling(this);
    if (std::exchange(told_connected_, false))
        Q_EMIT disconnected();
}

void APIQt::cut_off_socket()
{
    cut_off_ = true;
    told_connected_ = false;
}

void APIQt::connect_to_server(const QHostAddress& address)
{
    target_ = address;
    open();
}

void APIQt::connect_to_server(const QString& name)
{
    target_ = name;
    open();
}

void APIQt::reconnect()
{
    if (!std::holds_alternative<std::monostate>(target_))
        open();
}

// Whatever calls out may come back with a later request, and then the rest of this one is void: false.
bool APIQt::abandon()
{
    const unsigned request = ++requests_;
    begin_stream();
    if (request == requests_ && !end_attempt())
        socket_->abort();
    if (request == requests_)
        tell_disconnected();
    return request == requests_;
}

// Not with the socket's own means: it may be in the midst of telling of its attempt, and would go on with
// what is gone then.
bool APIQt::end_attempt()
{
    const auto state = socket_->state();
    if (state != QAbstractSocket::HostLookupState && state != QAbstractSocket::ConnectingState)
        return false;
    renew_socket();
    if (!cut_off_)
        Q_EMIT stateChanged(QAbstractSocket::UnconnectedState);
    return true;
}

void APIQt::open()
{
    if (!abandon())
        return;
    renew_socket();
    if (const auto* address = std::get_if<QHostAddress>(&target_)) {
        socket_->connectToHost(*address, server_port, QIODevice::ReadWrite);
        return;
    }
    const QString name = std::get<QString>(target_); // a slot may choose another one in the midst of this
    socket_->connectToHost(name, server_port, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
}

void APIQt::disconnect_from_server()
{
    ++requests_;
    drop_connection();
}

void APIQt::drop_connection()
{
    const unsigned request = requests_;
    begin_stream();
    if (request != requests_)
        return;
    if (socket_->isOpen())
        socket_->readAll(); // the rest of the stream that has just ended
    if (!end_attempt())     // left to itself, it would have to succeed before it ended
        socket_->disconnectFromHost();
}

void APIQt::begin_stream()
{
    fail_stream();
    engine_->reset();
    impl_->reset_stream();
}

// A callback may turn to an event loop of its own, where commands arrive that are about to fail: so they have
// failed before. Afterwards those have too that the callbacks issued.
void APIQt::fail_stream()
{
    last_failed_ = PendingTable::last_number();
    last_failed_ = impl_->fail_all();
}

bool APIQt::is_connected() const
{
    return connected_;
}

QAbstractSocket::SocketState APIQt::socket_state() const
{
    return socket_->state();
}

QString APIQt::error_text() const
{
    if (sent_no_messages_)
        return QStringLiteral("the server sent bytes that are no messages");
    return socket_->error() == QAbstractSocket::UnknownSocketError ? QString() : socket_->errorString();
}

bool APIQt::is_localhost() const
{
    const QHostAddress peer = socket_->peerAddress();
    return is_connected() && (peer == QHostAddress(QHostAddress::LocalHost) ||
                              peer == QHostAddress(QHostAddress::LocalHostIPv6));
}

void APIQt::fail_all_pending_commands()
{
    impl_->fail_all_pending_commands();
}

bool APIQt::forget_transaction(const AString& xid)
{
    return impl_->forget_transaction(xid);
}

unsigned APIQt::outstanding_commands() const
{
    return impl_->outstanding_commands();
}

Traffic APIQt::traffic() const
{
    Traffic traffic = traffic_;
    traffic.messages_sent = impl_->messages_sent();
    return traffic;
}

std::uint64_t APIQt::command_in_hand() const
{
    return impl_->command_in_hand();
}

void APIQt::set_send_debug_hook(AFunction1<const XMLTree&> hook)
{
    impl_->set_send_debug_hook(hook);
}

void APIQt::set_receive_debug_hook(AFunction1<const XMLTree&> hook)
{
    impl_->set_receive_debug_hook(hook);
}

void APIQt::slot_stateChanged(QAbstractSocket::SocketState state)
{
    if (state != QAbstractSocket::ConnectedState)
        fail_stream();
    else if (SKUAN_CHECK(socket_->socketDescriptor() != -1))
        socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
}

void APIQt::slot_readyRead()
{
    if (cut_off_)
        return;
    const Telling telling(this);
    feed_parser();
    slot_xmlReady();
}

void APIQt::feed_parser()
{
    while (socket_->bytesAvailable() != 0 && engine_->backlog() < highest_backlog) {
        const QByteArray bytes = socket_->read(read_size);
        if (bytes.isEmpty()) {
            drop_connection();
            return;
        }
        traffic_.bytes_received += static_cast<std::uint64_t>(bytes.size());
        engine_->input_bytes(bytes);
    }
}

void APIQt::slot_xmlReady()
{
    while (!engine_->parse_error()) {
        const XMLTree message = engine_->get_xml();
        if (message.is_null()) {
            feed_parser(); // with what had to wait
            // What callbacks have sent goes out together, without another turn of the event loop.
            if (socket_->bytesToWrite() != 0)
                socket_->flush();
            return;
        }
        ++traffic_.messages_received;
        if (!parse_intercept(message))
            impl_->parse(message);
    }
    sent_no_messages_ = true;
    drop_connection();
}

bool APIQt::parse_intercept(const XMLTree&)
{
    return false;
}

void APIQt::send(const void* data, unsigned length)
{
    if (length == 0)
        return;
    if (!is_connected()) {
        fail_stream();
        return;
    }
    traffic_.bytes_sent += length;
    socket_->write(static_cast<const char*>(data), length);
}

} // namespace KVRP3
