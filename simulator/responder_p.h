// What the server answers: reads a command by the catalogue and hands it to the function of its row.
#pragma once

#include <simulator/audience_p.h>
#include <simulator/element.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>

namespace simulator {

// Turns a message into the bytes of its whole answer, and changes the state. One thread.
class Responder
{
public:
    explicit Responder(const Settings& settings);

    // Takes the state file or the seed of the settings, before any client comes. Not empty: why it cannot,
    // and the server is not to begin.
    QString load();

    // Everything as it is after a fresh start: nothing on the channels, the configuration in effect that was
    // saved. What the server has stays. All clients have gone before.
    void restart();

    ServerState& state() { return state_; }
    Audience& audience() { return audience_; }

    // What sessions take from, and give back when they end.
    Budget& budget() { return state_.budget; }

    // A client comes, and goes: what it had to itself is given back, what it owned gets its last value. What
    // it began ends with the session.
    void join(Session& session) { audience_.join(session); }
    void leave(Session& session);

    // Never empty: what cannot be done, or is no command at all, is answered with `error`. Reports that
    // the command causes have been sent when this returns.
    QByteArray answer(Element message, Session& session);

    // A field is over. True if something goes on by itself, so that the next one is wanted, too.
    bool field();

    // So many fields went by while nothing went on.
    void passed_unseen(quint64 fields) { state_.field += fields; }

    // What the server's time goes by.
    FieldRate field_rate() const { return state_.configuration.field_rate(); }

    // The answer to bytes that are no message.
    QByteArray refusal(const QString& why);

private:
    void answer(const QString& xid, Element& command, Session& session);
    void error(const QString& xid, const QString& message, const char* code = "general");

    ServerState state_;
    Audience audience_;
    MessageWriter answer_;
};

} // namespace simulator
