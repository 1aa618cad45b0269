// The connection to the server, with a time limit and with words for everything that can go wrong.
#pragma once

#include <skuanctl/failure.h>

#include <skuan/protocol/kvrp3_api_qt.h>

#include <QTimer>

#include <chrono>
#include <functional>

/// One connection, opened once. Lives on the main thread.
class Link : public KVRP3::APIQt
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

    bool parse_intercept(const XMLTree& message) override;
    void connect_by_name(const QStringList& addresses);
    void on_connected();
    void on_unconnected();
    void on_timeout();
    void fail(ExitCode code, const QString& message);
    QString cannot_connect(const QString& why) const;
    QString socket_error() const;

    const QString host_;
    const std::chrono::milliseconds limit_;
    const Take take_;
    State state_ = looking_up;
    QString place_; ///< who is meant, with the addresses that a name stands for
    QTimer wait_;
};
