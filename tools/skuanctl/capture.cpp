// The verb capture: stands between clients and a server, and writes down what they say.
#include <skuanctl/capture_passage.h>
#include <skuanctl/listener.h>
#include <skuanctl/program.h>

#include <QElapsedTimer>

namespace {

class Capture : public Verb
{
public:
    explicit Capture(Program& program)
        : Verb(program), listener_([this](qintptr client) { take_client(client); })
    {
    }

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
    const QStringList& arguments = program_.options().arguments;
    if (arguments.isEmpty()) {
        program_.fail({exit_usage, QStringLiteral("no file is given"), {}});
    } else if (listener_.start(program_)) { // before the file, which else would be left behind in vain
        clock_.start();
        if (file_.open(arguments.constFirst()))
            listener_.tell(program_);
        else
            program_.fail({exit_cannot_write, file_.error(), {}});
    }
    return false; // each client brings a connection of its own
}

void Capture::take_client(qintptr client)
{
    const Options& options = program_.options();
    const int number = ++clients_;
    if (number == options.count)
        listener_.close();
    auto passage = std::make_unique<Passage>(
        client, options.bind.value_or(QHostAddress(QHostAddress::LocalHost)), options.host, options.timeout,
        [this, number](Side from, Record::Event event, const QByteArray& bytes) {
            note(number, from, event, bytes);
        });
    Passage* const key = passage.get();
    QObject::connect(key, &Passage::over, key, [this, key] { close(key); });
    QObject::connect(key, &Passage::refused, key,
                     [this, number](const QString& why) { remark(number, why); });
    QObject::connect(key, &Passage::circular, key, [this] {
        program_.fail(
            {exit_usage, QStringLiteral("--host names this capture itself; it has to name the server"), {}});
    });
    passages_.emplace(key, std::move(passage));
}

void Capture::note(int number, Side from, Record::Event event, const QByteArray& bytes)
{
    const std::chrono::microseconds at(clock_.nsecsElapsed() / 1000);
    if (!file_.write({at, number, from, event, bytes}))
        program_.fail({exit_cannot_write, file_.error(), {}});
    if (event == Record::opened)
        remark(number, QStringLiteral("open"));
}

void Capture::close(Passage* passage)
{
    passages_.extract(passage).mapped().release()->deleteLater();
    if (passages_.empty() && !listener_.isListening())
        program_.done();
}

void Capture::remark(int number, const QString& text)
{
    program_.output().remark(QStringLiteral("connection %1: %2").arg(number).arg(text));
}

} // namespace

std::unique_ptr<Verb> make_capture(Program& program)
{
    return std::make_unique<Capture>(program);
}
