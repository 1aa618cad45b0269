// The verb replay: plays a captured conversation again, and tells whether the other side still says the same.
#include <skuanctl/listener.h>
#include <skuanctl/program.h>
#include <skuanctl/replay_player.h>

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
    explicit Replay(Program& program)
        : Verb(program), listener_([this](qintptr client) { player_->take_client(client); })
    {
    }

    bool prepare() override;
    void start() override {}

private:
    QString check_file() const;
    void show_same();
    void show_difference(const Difference& difference);

    std::unique_ptr<Player> player_;
    Listener listener_;
};

bool Replay::prepare()
{
    const Options& options = program_.options();
    const Side side = options.bind ? Side::server : Side::client;
    if (const QString error = check_file(); !error.isEmpty()) {
        program_.fail({exit_usage, error, {}});
        return false;
    }
    player_ =
        std::make_unique<Player>(options.arguments.constFirst(), Play{side, options.connection, options.paced,
                                                                      options.host, options.timeout});
    QObject::connect(player_.get(), &Player::same, &program_, [this] { show_same(); });
    QObject::connect(player_.get(), &Player::differs, &program_,
                     [this](const Difference& difference) { show_difference(difference); });
    QObject::connect(player_.get(), &Player::failed, &program_, &Program::fail);
    if (side == Side::server && !listener_.start(program_))
        return false;
    if (side == Side::server)
        listener_.tell(program_);
    player_->start();
    return false; // the player opens what connections there were
}

/// Reads all of it, so that a bad line is found before anything is sent. Gives what is wrong.
QString Replay::check_file() const
{
    const Options& options = program_.options();
    if (options.arguments.isEmpty())
        return QStringLiteral("no file is given");
    const QString& name = options.arguments.constFirst();
    ConversationReader file;
    if (!file.open(name))
        return file.error();
    bool has_any = false;
    while (const auto record = file.next())
        has_any = has_any || !options.connection || record->connection == *options.connection;
    if (!file.error().isEmpty())
        return file.error();
    if (file.is_cut_short())
        program_.output().remark(
            QStringLiteral("the last line of %1 is only the beginning of one; it is left out").arg(name));
    if (has_any)
        return {};
    return options.connection ? QStringLiteral("%1 has no connection %2").arg(name).arg(*options.connection)
                              : QStringLiteral("there is nothing in %1").arg(name);
}

void Replay::show_same()
{
    const int number = player_->connections();
    const QString connections =
        number == 1 ? QStringLiteral("1 connection") : QStringLiteral("%1 connections").arg(number);
    program_.output().line(QStringLiteral("the same: %1 bytes, %2").arg(player_->bytes()).arg(connections),
                           {{"bytes", player_->bytes()}, {"connections", number}});
    program_.done();
}

void Replay::show_difference(const Difference& difference)
{
    const QString side = name_of(program_.options().bind ? Side::client : Side::server);
    program_.output().lines({QStringLiteral("expected: ") + in_one_line(difference.expected),
                             QStringLiteral("got:      ") + in_one_line(difference.got)},
                            {{"line", difference.line},
                             {"connection", difference.connection},
                             {"from", side},
                             {"message", difference.message},
                             {"byte", difference.byte},
                             {"expected", difference.expected},
                             {"got", difference.got}});
    program_.fail(
        {exit_differs,
         QStringLiteral("the %1 differs from line %2 of the file: message %3, byte %4 of connection %5")
             .arg(side)
             .arg(difference.line)
             .arg(difference.message)
             .arg(difference.byte)
             .arg(difference.connection),
         {}});
}

} // namespace

std::unique_ptr<Verb> make_replay(Program& program)
{
    return std::make_unique<Replay>(program);
}
