// What the verbs have in common that look into mirrors: a session in place of the run's plain connection, for
// it alone feeds mirrors, and keeps them through lost connections.
#pragma once

#include <skuanctl/patience.h>
#include <skuanctl/verb.h>

#include <skuan/session/spark.h>

#include <QTimer>

#include <functional>

/// Ends like any other verb if there is no connection at first, or no answer in time. One that stays goes on
/// through connections that are lost later; one that does not ends with the first.
class MirrorVerb : public Verb
{
public:
    explicit MirrorVerb(Run& run);

    bool prepare() final;
    void start() final {}

protected:
    /// Before there is a connection: asks the mirrors for what is to be seen. False if it has ended the run.
    virtual bool ask() = 0;

    /// The mirrors hold what the server has of it. By default the verb then stays. Called once, or again if
    /// what the verb asks here itself is lost with the connection.
    virtual void know() { stay(); }

    /// The verb has all that it needs at first, and goes on for what changes.
    void stay();

    /// A change, as a line.
    void report(const QString& name, const QString& value, const QJsonObject& object);

    /// Whether as many changes have been told as were asked for, or the run is over for another reason.
    bool has_told_enough() const;
    /// One more has been.
    void count();

    /// How it stands with the connection; by default a remark.
    virtual void tell_connection(const QString& text);

    /// For what the verb itself asks the server: a refusal ends the run.
    void take_error(KVRP3::ErrorMessage message, KVRP3::ErrorCode code);

    Spark session_;

private:
    bool can_be_sent();
    void take_connection();
    void take_state(QAbstractSocket::SocketState state);
    void take_all_answered();
    void take_not_answered(KVRP3::ErrorMessage, KVRP3::ErrorCode) { take_all_answered(); }
    void once_settled(std::function<void()> act);
    void look();
    void take_too_long();

    Patience patience_;
    QTimer limit_; // for the connection, and then for all that the verb needs at first
    QAbstractSocket::SocketState state_ = QAbstractSocket::UnconnectedState;
    bool was_connected_ = false;
    bool all_answered_ = false; // the dictionary has no more to tell at once
    bool has_told_loss_ = false;
    bool knows_ = false;
};
