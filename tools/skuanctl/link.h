// The connection to the server, with a time limit and with words for everything that can go wrong.
#pragma once

#include <skuanctl/failure.h>

#include <skuan/markup/xml_parse.h>

#include <QTcpSocket>
#include <QTimer>

#include <chrono>
#include <functional>

/// One connection, opened once. What the server says is taken to the last message before the loss of the
/// connection is told: the last one may say why. Lives on the main thread.
class Link : public QObject
{
    Q_OBJECT
public:
    /// Gets each message as it comes.
    using Take = std::function<void(const XMLTree& message)>;

    /// `limit` is how long the connection may take, and then how long each answer.
    Link(const QString& host, std::chrono::milliseconds limit, Take take);
    ~Link() override;

    void open();

    /// Sends bytes that are whole messages. Only once `ready` has come.
    void send_bytes(const QByteArray& messages);

    /// No answer is waited for any more; a lost connection is still told.
    void stop_waiting() { wait_.stop(); }

Q_SIGNALS:
    void ready();
    /// Comes once at most; nothing comes after it.
    void failed(const Failure& failure);

private:
    enum State { looking_up, connecting, connected_to_server, over };

    void connect_by_name(const QStringList& addresses);
    void on_connected();
    void read();
    void take_messages();
    void on_unconnected();
    void on_timeout();
    void fail(const Failure& failure);
    void lose(const QString& why);

    const QString host_;
    const std::chrono::milliseconds limit_;
    const Take take_;
    State state_ = looking_up;
    QString place_; ///< who is meant, with the addresses that a name stands for
    QTcpSocket socket_;
    XMLParseEngine engine_;
    QTimer reading_; // in turn with all else: timers may starve beside a socket that always has more
    QTimer wait_;
};
