// The bytes on their way to one client: cut into segments, ended where a fault says, and bounded.
#pragma once

#include <simulator/budget_p.h>
#include <simulator/faults.h>

#include <QByteArray>
#include <QObject>
#include <QTimer>

QT_BEGIN_NAMESPACE
class QTcpSocket;
QT_END_NAMESPACE

namespace simulator {

// The only writer to the socket. One thread, that of the connection which owns both.
class Wire : public QObject
{
    Q_OBJECT
public:
    // `backlog_limit`: bytes that may wait for a client that does not read; `all`: for all clients together.
    Wire(QTcpSocket& socket, qint64 backlog_limit, Budget& all);

    void set_faults(const Faults& faults);

    // Discarded when the connection is over or past its end. Bytes may stay behind until flush().
    void write(const QByteArray& bytes);
    void flush();

    // Writes what waits, then ends the connection: wholly, or the sending side only.
    void end();

    // Forgets what waits: the socket is closed, or about to be.
    void abandon();

    // What waits for the client, in bytes.
    qint64 backlog() const;
    bool is_ended() const { return ended_; }

Q_SIGNALS:
    void sent(qint64 bytes); // handed to the system
    void overrun();          // the backlog has passed its limit

private:
    bool cuts() const { return faults_.split != 0 || next_cut_ < faults_.split_at.size(); }
    qint64 segment_length();
    void write_segments();
    void end_when_written();

    QTcpSocket& socket_;
    const qint64 backlog_limit_;
    Share share_; // of what may wait for all clients: the backlog
    Faults faults_;
    QByteArray pending_;       // waits to be cut
    int pending_start_ = 0;    // what is before it has been written
    std::size_t next_cut_ = 0; // in faults_.split_at
    qint64 accepted_ = 0;      // bytes given to write()
    qint64 written_ = 0;       // bytes given to the socket
    bool ended_ = false;
    bool closed_ = false;
    QTimer pause_;
};

} // namespace simulator
