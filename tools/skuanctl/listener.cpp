// Listening, and saying where.
#include <skuanctl/listener.h>
#include <skuanctl/run.h>

QHostAddress bind_address(const Options& options)
{
    return options.has("bind") ? QHostAddress(options.value("bind")) : QHostAddress(QHostAddress::LocalHost);
}

bool Listener::start(Run& run)
{
    const QHostAddress address = bind_address(run.options());
    if (!listen(address, server_port)) {
        run.fail({exit_cannot_connect,
                  QStringLiteral("cannot listen on %1 port %2: %3")
                      .arg(address.toString(), QString::number(server_port), errorString()),
                  {}});
        return false;
    }
    return true;
}

void Listener::tell(Run& run) const
{
    const QString address = serverAddress().toString();
    run.line(QStringLiteral("listening on %1 port %2").arg(address).arg(serverPort()),
             {{"listening", address}, {"port", serverPort()}});
}
