// Opens the connection to a server for those who pass on its bytes as they are.
#pragma once

#include <QHostAddress>
#include <QTcpSocket>
#include <QTimer>

#include <chrono>

/// One attempt, begun from the event loop. Main thread. It may be deleted only later from within its signals.
class Dial : public QObject
{
    Q_OBJECT
public:
    /// `limit` holds for the look-up of a name and the connection together.
    Dial(const QString& host, std::chrono::milliseconds limit);

    /// Whether the connection has come back to who listens here, at its address or at all of the machine's.
    bool leads_back_to(const QHostAddress& listener) const;

Q_SIGNALS:
    // One of them, once.
    void connected(qintptr socket); ///< belongs to who gets it
    void failed(const QString& why);

private:
    void take_socket();
    void fail(const QString& why);

    const QString host_;
    QTcpSocket socket_;
    QTimer limit_;
    QHostAddress peer_, local_; // the ends of the connection
};
