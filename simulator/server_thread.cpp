// The thread: it makes the server, says how that went, and runs its event loop.
#include <simulator/server_thread.h>

#include <QCoreApplication>
#include <QSemaphore>
#include <QThread>

#include <utility>

namespace simulator {

class ServerThread::Private : public QThread
{
public:
    explicit Private(Settings given) : settings(std::move(given))
    {
        setObjectName(QStringLiteral("simulator"));
    }

    void run() override
    {
        Server made(settings);
        const bool listens = made.listen();
        error = made.error_text();
        server = listens ? &made : nullptr;
        ready.release();
        if (listens)
            exec();
    }

    const Settings settings;
    Server* server = nullptr; // on the thread's stack
    QString error;
    QSemaphore ready;
};

ServerThread::ServerThread(Settings settings) : d(std::make_unique<Private>(std::move(settings))) {}

ServerThread::~ServerThread()
{
    stop();
}

bool ServerThread::start()
{
    if (d->server)
        return true;
    if (!QCoreApplication::instance()) {
        d->error = QStringLiteral(
            "a QCoreApplication must exist before a server starts; Qt delivers no events without");
        return false;
    }
    d->start();
    d->ready.acquire();
    if (!d->server)
        d->wait();
    return d->server != nullptr;
}

QString ServerThread::error_text() const
{
    return d->error;
}

void ServerThread::stop()
{
    if (!d->server)
        return;
    d->quit();
    d->wait();
    d->server = nullptr;
}

Server* ServerThread::server() const
{
    return d->server;
}

} // namespace simulator
