// Listening, and saying where.
#include <skuanctl/listener.h>
#include <skuanctl/program.h>

bool Listener::start(Program& program)
{
    constexpr quint16 port = 8913;
    const QHostAddress address = program.options().bind.value_or(QHostAddress(QHostAddress::LocalHost));
    if (!listen(address, port)) {
        program.fail({exit_cannot_connect,
                      QStringLiteral("cannot listen on %1 port %2: %3")
                          .arg(address.toString(), QString::number(port), errorString()),
                      {}});
        return false;
    }
    return true;
}

void Listener::tell(Program& program) const
{
    const QString address = serverAddress().toString();
    program.output().line(QStringLiteral("listening on %1 port %2").arg(address).arg(serverPort()),
                          {{"listening", address}, {"port", serverPort()}});
}
