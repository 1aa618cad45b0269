// The road of a command through one client's parts.
#include <simulator/connection_p.h>

#include <simulator/fault_board_p.h>
#include <simulator/field_clock_p.h>

#include <QHostAddress>
#include <QTcpSocket>

namespace simulator {

namespace {
constexpr qint64 read_size = 64 * 1024; // read at a time, so that clients take turns
}

Connection::Connection(quint64 id, QTcpSocket* socket, const Shared& shared, QObject* parent)
    : QObject(parent),
      id_(id),
      shared_(shared),
      socket_(socket),
      faults_revision_(shared.faults.revision() - 1),
      random_(shared.faults.of(id).seed + static_cast<unsigned>(id)),
      reader_(shared.settings.max_message),
      session_(shared.responder.budget(), shared.backlog),
      wire_(*socket, shared.settings.max_backlog, shared.backlog),
      flood_(wire_),
      queue_([this](const AnswerQueue::Batch& batch) { deliver(batch); }, static_cast<unsigned>(random_())),
      queued_(shared.backlog)
{
    socket_->setParent(nullptr);
    socket_->setReadBufferSize(read_size);
    socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket_.get(), &QTcpSocket::readyRead, this, [this] { read(); });
    connect(socket_.get(), &QTcpSocket::disconnected, this, [this] { drop(); });
    connect(&wire_, &Wire::sent, this,
            [this](qint64 bytes) { shared_.tally.bytes_sent += static_cast<quint64>(bytes); });
    connect(&wire_, &Wire::overrun, this, [this] {
        ++shared_.tally.overrun;
        drop();
    });
    session_.send = [this](const QByteArray& bytes) { send(bytes); };
    session_.overrun = [this] { Q_EMIT wire_.overrun(); };
}

Connection::~Connection()
{
    socket_->disconnect(this);
    socket_->disconnect(&wire_);
}

QString Connection::peer() const
{
    return QStringLiteral("%1:%2").arg(socket_->peerAddress().toString()).arg(socket_->peerPort());
}

void Connection::refresh_faults()
{
    const unsigned revision = shared_.faults.revision();
    if (revision == faults_revision_ || over_)
        return;
    faults_revision_ = revision;
    faults_ = shared_.faults.of(id_);
    wire_.set_faults(faults_);
    queue_.set_faults(faults_);
    flood_.set_faults(faults_);
    if (faults_.close_after_answers >= 0 && delivered_ >= faults_.close_after_answers)
        wire_.end();
    wire_.flush();
}

void Connection::send(const QByteArray& bytes)
{
    write(bytes);
    wire_.flush();
}

void Connection::drop()
{
    if (over_)
        return;
    over_ = true;
    reading_ = false;
    queue_.clear();
    queued_.release();
    wire_.abandon();
    flood_.set_faults({});
    socket_->abort();
    Q_EMIT over();
}

// Also after the end of a half-closed connection, where messages are counted and answered with nothing.
void Connection::read()
{
    const QByteArray bytes = socket_->readAll();
    shared_.tally.bytes_received += static_cast<quint64>(bytes.size());
    if (!reading_)
        return;
    refresh_faults();
    reader_.add(bytes);
    Element message;
    while (reading_) {
        const MessageReader::Result result = reader_.next(message);
        if (result == MessageReader::Result::Message) {
            take(message);
            continue;
        }
        if (result == MessageReader::Result::Broken) {
            reading_ = false;
            ++shared_.tally.malformed;
            write(shared_.responder.refusal(reader_.error_text()));
            wire_.end();
        }
        break;
    }
    wire_.flush();
}

void Connection::take(Element& message)
{
    ++shared_.tally.messages;
    Q_EMIT received(message);
    shared_.clock.wake(); // it is as late as it is, and something may begin
    QByteArray answer = shared_.responder.answer(std::move(message), session_);
    ++answered_;
    if (faults_.mute || wire_.is_ended() || (faults_.drop_every != 0 && answered_ % faults_.drop_every == 0))
        return;
    queue_.push(std::move(answer));
    if (queue_.bytes() > shared_.settings.max_backlog || !queued_.resize(queue_.bytes()))
        Q_EMIT wire_.overrun();
}

void Connection::deliver(const AnswerQueue::Batch& batch)
{
    queued_.resize(queue_.bytes()); // what goes on waits on the wire
    QByteArray bytes;
    bool ends = false;
    for (const QByteArray& answer : batch) {
        ++delivered_;
        ++shared_.tally.answers;
        if (faults_.garbage_every != 0 && delivered_ % faults_.garbage_every == 0)
            bytes += junk();
        if (faults_.close_chance > 0 && std::uniform_real_distribution<>()(random_) < faults_.close_chance) {
            bytes += answer.left(std::uniform_int_distribution<>(0, answer.size() - 1)(random_));
            ends = true;
        } else {
            bytes += answer;
            ends = faults_.close_after_answers >= 0 && delivered_ >= faults_.close_after_answers;
        }
        if (ends)
            break;
    }
    write(bytes);
    if (ends)
        wire_.end();
}

void Connection::write(const QByteArray& bytes)
{
    if (!over_)
        wire_.write(bytes);
}

// Random bytes; the first can stand nowhere in UTF-8.
QByteArray Connection::junk()
{
    QByteArray bytes(static_cast<int>(faults_.garbage_size), '\xff');
    std::uniform_int_distribution<> byte(0, 255);
    for (int i = 1; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(byte(random_));
    return bytes;
}

} // namespace simulator
