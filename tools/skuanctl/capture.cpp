// The verb capture: stands between clients and a server, and writes down what they say.
#include <skuanctl/capture_passage.h>
#include <skuanctl/listener.h>
#include <skuanctl/run.h>

#include <QElapsedTimer>

namespace {

class Capture : public Verb
{
public:
    explicit Capture(Run& run) : Verb(run), listener_([this](qintptr client) { take_client(client); }) {}

    bool prepare() override;
    void start() override {}

private:
    void take_client(qintptr client);
    void note(int number, Side from, Record::Event event, const QByteArray& bytes);
    void close(Passage* passage);
    void remark(int number, const QString& text);

    ConversationWriter file_;
    QElapsedTimer clock_;
    Listener listener_;
    int clients_ = 0;
    std::map<Passage*, std::unique_ptr<Passage>> passages_;
};

bool Capture::prepare()
{
    if (!listener_.start(run_)) // before the file, which else would be left behind in vain
        return false;
    clock_.start();
    if (file_.open(run_.options().arguments.constFirst()))
        listener_.tell(run_);
    else
        run_.fail({exit_cannot_write, file_.error(), {}});
    return false; // each client brings a connection of its own
}

void Capture::take_client(qintptr client)
{
    const Options& options = run_.options();
    const int number = ++clients_;
    if (number == options.count)
        listener_.close();
    auto passage =
        std::make_unique<Passage>(client, bind_address(options), run_.host(), options.timeout,
                                  [this, number](Side from, Record::Event event, const QByteArray& bytes) {
                                      note(number, from, event, bytes);
                                  });
    Passage* const key = passage.get();
    QObject::connect(key, &Passage::over, key, [this, key] { close(key); });
    QObject::connect(key, &Passage::refused, key,
                     [this, number](const QString& why) { remark(number, why); });
    QObject::connect(key, &Passage::circular, key, [this] {
        run_.fail(
            {exit_usage, QStringLiteral("--host names this capture itself; it has to name the server"), {}});
    });
    passages_.emplace(key, std::move(passage));
}

void Capture::note(int number, Side from, Record::Event event, const QByteArray& bytes)
{
    const std::chrono::microseconds at(clock_.nsecsElapsed() / 1000);
    if (!file_.write({at, number, from, event, bytes}))
        run_.fail({exit_cannot_write, file_.error(), {}});
    if (event == Record::opened)
        remark(number, QStringLiteral("open"));
}

void Capture::close(Passage* passage)
{
    passages_.extract(passage).mapped().release()->deleteLater();
    if (passages_.empty() && !listener_.isListening())
        run_.done();
}

void Capture::remark(int number, const QString& text)
{
    run_.remark(QStringLiteral("connection %1: %2").arg(number).arg(text));
}

} // namespace

std::unique_ptr<Verb> make_capture(Run& run)
{
    return std::make_unique<Capture>(run);
}
