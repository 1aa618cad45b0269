// One client: its bytes in, its answers out, its faults.
#pragma once

#include <simulator/answer_queue_p.h>
#include <simulator/flood_p.h>
#include <simulator/message_reader_p.h>
#include <simulator/responder_p.h>
#include <simulator/wire_p.h>

#include <atomic>
#include <memory>
#include <random>

QT_BEGIN_NAMESPACE
class QTcpSocket;
QT_END_NAMESPACE

namespace simulator {

class FaultBoard;
class FieldClock;

// The live form of Counters: written by the server's thread, read by any.
struct Tally
{
    std::atomic<quint64> accepted{0}, connected{0}, overrun{0}, malformed{0};
    std::atomic<quint64> messages{0}, answers{0}, bytes_received{0}, bytes_sent{0};
};

// What the connections of a server share; outlives them.
struct Shared
{
    const Settings& settings;
    Responder& responder;
    FaultBoard& faults;
    Tally& tally;
    Budget& backlog; // what may wait for all clients
    FieldClock& clock;
};

// A socket's bytes go through the reader and the responder; answers through the queue (their time and
// order) and the wire (their bytes). All state is this client's own. On the server's thread.
class Connection : public QObject
{
    Q_OBJECT
public:
    // Takes the socket, which is connected.
    Connection(quint64 id, QTcpSocket* socket, const Shared& shared, QObject* parent);
    ~Connection() override;

    quint64 id() const { return id_; }
    QString peer() const; // "address:port"
    Session& session() { return session_; }

    // Takes over changed faults at once, not only with the next command. It may end the connection: so the
    // first ones wait until there is somebody to be told of it.
    void refresh_faults();

    // Bytes past the queue: reports, or whatever a test wants to send.
    void send(const QByteArray& bytes);

    // Ends at once, without writing what waits.
    void drop();

Q_SIGNALS:
    void received(const simulator::Element& message);
    void over(); // once; the connection may be deleted later

private:
    void read();
    void take(Element& message);
    void deliver(const AnswerQueue::Batch& batch);
    void write(const QByteArray& bytes);
    QByteArray junk();

    const quint64 id_;
    const Shared shared_;
    std::unique_ptr<QTcpSocket> socket_;
    Faults faults_;
    unsigned faults_revision_;
    std::mt19937 random_;
    MessageReader reader_;
    Session session_;
    Wire wire_;
    Flood flood_;
    AnswerQueue queue_;
    Share queued_;         // of the backlog: what the queue holds
    qint64 answered_ = 0;  // answers made, lost ones too
    qint64 delivered_ = 0; // answers that went to the wire
    bool reading_ = true;
    bool over_ = false;
};

} // namespace simulator
