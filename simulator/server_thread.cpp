// The thread: it makes the server, says how that went, and runs its event loop.
#include <simulator/server_thread.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <future>
#include <thread>
#include <utility>

namespace simulator {

// A std::thread, which Qt takes as one of its own, and a std::promise: the thread sanitizer sees through
// both, and not through Qt's.
class ServerThread::Private
{
public:
    explicit Private(Settings given) : settings(std::move(given)) {}

    void run(std::promise<void> ready)
    {
        Server made(settings);
        QEventLoop made_loop;
        const bool listens = made.listen();
        error = made.error_text();
        server = listens ? &made : nullptr;
        loop = &made_loop;
        ready.set_value();
        if (listens)
            made_loop.exec();
    }

    const Settings settings;
    QString error;
    Server* server = nullptr; // on the thread's stack, as is its loop
    QEventLoop* loop = nullptr;
    std::thread thread;
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
    std::promise<void> ready;
    std::future<void> is_ready = ready.get_future();
    d->thread = std::thread(&Private::run, d.get(), std::move(ready));
    is_ready.wait();
    if (!d->server)
        d->thread.join();
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
    QMetaObject::invokeMethod(d->loop, &QEventLoop::quit, Qt::QueuedConnection);
    d->thread.join();
    d->server = nullptr;
}

Server* ServerThread::server() const
{
    return d->server;
}

} // namespace simulator
