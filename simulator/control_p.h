// The control language: what a tester tells a running server to do, line by line.
#pragma once

#include <simulator/audience_p.h>
#include <simulator/server.h>

#include <QStringList>

#include <functional>

namespace simulator {

struct ServerState;

// What the language reaches, for the time of one line.
struct ControlContext
{
    Server& server;
    ServerState& state;
    Audience& audience; // to be delivered behind the line
    std::function<Faults(quint64 client)> faults_of;
    std::function<QStringList()> clients;
    std::function<QStringList()> registrations;
};

struct ControlAnswer
{
    QString text;
    QString error; // not empty: it was not done, and this is why
};

// On the server's thread.
ControlAnswer run_control(const ControlContext& context, const QString& line);

} // namespace simulator
