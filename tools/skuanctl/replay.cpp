// The verb replay: plays a captured conversation again, and tells whether the other side still says the same.
#include <skuanctl/listener.h>
#include <skuanctl/replay_player.h>
#include <skuanctl/run.h>

namespace {

/// In one line, each control character by its sign.
QString in_one_line(QString text)
{
    for (QChar& character : text)
        if (character < QChar(' '))
            character = QChar(0x2400 + character.unicode());
    return text;
}

class Replay : public Verb
{
public:
    explicit Replay(Run& run) : Verb(run), listener_([this](qintptr client) { player_->take_client(client); })
    {
    }

    bool prepare() override;
    void start() override {}

private:
    QString check_file() const;
    std::optional<int> chosen_connection() const;
    void show_same();
    void show_difference(const Difference& difference);

    std::unique_ptr<Player> player_;
    Listener listener_;
};

bool Replay::prepare()
{
    const Options& options = run_.options();
    const Side side = options.has("bind") ? Side::server : Side::client;
    if (const QString error = check_file(); !error.isEmpty()) {
        run_.fail({exit_usage, error, {}});
        return false;
    }
    player_ = std::make_unique<Player>(
        options.arguments.constFirst(),
        Play{side, chosen_connection(), options.has("paced"), run_.host(), options.timeout});
    QObject::connect(player_.get(), &Player::same, &run_, [this] { show_same(); });
    QObject::connect(player_.get(), &Player::differs, &run_,
                     [this](const Difference& difference) { show_difference(difference); });
    QObject::connect(player_.get(), &Player::failed, &run_, &Run::fail);
    if (side == Side::server && !listener_.start(run_))
        return false;
    if (side == Side::server)
        listener_.tell(run_);
    player_->start();
    return false; // the player opens what connections there were
}

/// Reads all of it, so that a bad line is found before anything is sent. Gives what is wrong.
QString Replay::check_file() const
{
    const Options& options = run_.options();
    const QString& name = options.arguments.constFirst();
    ConversationReader file;
    if (!file.open(name))
        return file.error();
    const auto connection = chosen_connection();
    bool has_any = false;
    while (const auto record = file.next())
        has_any = has_any || !connection || record->connection == *connection;
    if (!file.error().isEmpty())
        return file.error();
    if (file.is_cut_short())
        run_.remark(
            QStringLiteral("the last line of %1 is only the beginning of one; it is left out").arg(name));
    if (has_any)
        return {};
    return connection ? QStringLiteral("%1 has no connection %2").arg(name).arg(*connection)
                      : QStringLiteral("there is nothing in %1").arg(name);
}

std::optional<int> Replay::chosen_connection() const
{
    const Options& options = run_.options();
    return options.has("connection") ? std::optional(options.value("connection").toInt()) : std::nullopt;
}

void Replay::show_same()
{
    const int number = player_->connections();
    const QString connections =
        number == 1 ? QStringLiteral("1 connection") : QStringLiteral("%1 connections").arg(number);
    run_.line(QStringLiteral("the same: %1 bytes, %2").arg(player_->bytes()).arg(connections),
              {{"bytes", player_->bytes()}, {"connections", number}});
    run_.done();
}

void Replay::show_difference(const Difference& difference)
{
    const QString side = name_of(run_.options().has("bind") ? Side::client : Side::server);
    run_.lines({QStringLiteral("expected: ") + in_one_line(difference.expected),
                QStringLiteral("got:      ") + in_one_line(difference.got)},
               {{"line", difference.line},
                {"connection", difference.connection},
                {"from", side},
                {"message", difference.message},
                {"byte", difference.byte},
                {"expected", difference.expected},
                {"got", difference.got}});
    run_.fail({exit_differs,
               QStringLiteral("the %1 differs from line %2 of the file: message %3, byte %4 of connection %5")
                   .arg(side)
                   .arg(difference.line)
                   .arg(difference.message)
                   .arg(difference.byte)
                   .arg(difference.connection),
               {}});
}

} // namespace

std::unique_ptr<Verb> make_replay(Run& run)
{
    return std::make_unique<Replay>(run);
}
