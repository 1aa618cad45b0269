// One client's connection and the one to the server that was made for it: bytes and ends pass between them,
// and all that passes is noted.
#pragma once

#include <skuanctl/conversation.h>
#include <skuanctl/dial.h>
#include <skuanctl/wire.h>

#include <functional>
#include <memory>

/// Main thread. It may be deleted only later from within its signals.
class Passage : public QObject
{
    Q_OBJECT
public:
    using Note = std::function<void(Side from, Record::Event event, const QByteArray& bytes)>;

    /// Takes the client's socket over. `listener` is where that client came in.
    Passage(qintptr client, const QHostAddress& listener, const QString& host,
            std::chrono::milliseconds limit, Note note);
    ~Passage() override;

Q_SIGNALS:
    void refused(const QString& why); ///< by the server; `over` follows
    void circular();                  ///< the server is who listens; nothing follows
    void over();

private:
    void join(qintptr server);
    void pass_from(Side side);
    void hold_back(Side side);
    void end_if_over();
    Wire& wire(Side side) { return *(side == Side::client ? client_ : server_); }

    const Note note_;
    const qintptr client_socket_;
    Dial dial_;
    std::unique_ptr<Wire> client_, server_; // both or none
    int ends_ = 0;
    bool is_lost_ = false;
};
