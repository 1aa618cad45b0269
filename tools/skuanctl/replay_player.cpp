// Each step goes on through the file until something has to be waited for.
#include <skuanctl/options.h>
#include <skuanctl/platform_socket.h>
#include <skuanctl/replay_player.h>

#include <algorithm>
#include <limits>

using std::chrono::ceil;
using std::chrono::microseconds;
using std::chrono::milliseconds;

namespace {

constexpr int most_heard = 4 * Wire::most_read;      ///< bytes that the other side may be ahead of the file
constexpr qint64 most_unsent = 16 * Wire::most_read; ///< bytes that it may be behind

const QByteArray end_of_connection = "(the end of the connection)";

/// The bytes on which the two agree.
int common_length(const QByteArray& a, const QByteArray& b)
{
    return static_cast<int>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

/// The message as far as it has been passed, and how it goes on.
QString shown(const ReplayPlace& place, const QByteArray& then)
{
    constexpr int most = 100;
    const QByteArray all = place.begun() + (then.size() <= most ? then : then.left(most) + "...");
    return QString::fromUtf8(all.constData(), all.size());
}

} // namespace

Player::Player(const QString& file, Play play) : play_(std::move(play))
{
    file_.open(file);
    alarm_.setSingleShot(true);
    alarm_.setTimerType(Qt::PreciseTimer);
    connect(&alarm_, &QTimer::timeout, this, &Player::on_alarm);
}

Player::~Player()
{
    for (const qintptr client : clients_)
        close_socket(client);
}

void Player::take_client(qintptr socket)
{
    clients_.push_back(socket);
    step();
}

void Player::step()
{
    while (!over_) {
        const Progress progress = record_ || fetch() ? perform(*record_) : finish();
        if (progress != done)
            return wait(progress);
        alarm_.stop();
        before_ = record_->at;
        record_.reset();
    }
}

bool Player::fetch()
{
    do
        record_ = file_.next();
    while (record_ && play_.connection && record_->connection != *play_.connection);
    compared_ = 0;
    if (record_ && !clock_.isValid()) {
        before_ = first_ = record_->at;
        clock_.start();
    }
    return record_.has_value();
}

Player::Progress Player::perform(const Record& record)
{
    if (record.event == Record::opened || record.event == Record::refused)
        return open(record);
    Talk& talk = *talks_.at(record.connection); // the reader has seen it opened
    return record.from == play_.side ? say(talk, record) : hear(talk, record);
}

Player::Progress Player::open(const Record& record)
{
    if (play_.side == Side::client)
        return record.event == Record::opened ? dial(record) : done;
    if (clients_.empty())
        return waits;
    const qintptr socket = clients_.front();
    clients_.pop_front();
    if (record.event == Record::opened)
        start_talk(record.connection, socket);
    else
        close_socket(socket);
    return done;
}

Player::Progress Player::dial(const Record& record)
{
    if (talks_.count(record.connection))
        return done;
    if (is_early(record))
        return waits_for_its_time;
    if (!dial_) {
        dial_ = std::make_unique<Dial>(play_.host, play_.limit);
        connect(dial_.get(), &Dial::connected, this, [this](qintptr socket) {
            dial_.release()->deleteLater();
            start_talk(record_->connection, socket);
            step();
        });
        connect(dial_.get(), &Dial::failed, this,
                [this](const QString& why) { fail(exit_cannot_connect, why); });
    }
    return waits;
}

void Player::start_talk(int connection, qintptr socket)
{
    if (connections_++ == 0)
        clock_.start(); // it may have taken a client a while to come
    Talk& talk = *talks_.emplace(connection, std::make_unique<Talk>(socket)).first->second;
    connect(&talk.wire, &Wire::received, this, [this, &talk](const QByteArray& bytes) {
        talk.heard += bytes;
        talk.wire.set_reading(talk.heard.size() < most_heard);
        step();
    });
    connect(&talk.wire, &Wire::sent, this, &Player::step);
    for (const auto end : {&Wire::ended, &Wire::lost})
        connect(&talk.wire, end, this, [this, &talk] {
            talk.heard_end = true;
            step();
        });
}

Player::Progress Player::say(Talk& talk, const Record& record)
{
    if (is_early(record))
        return waits_for_its_time;
    if (record.event != Record::said)
        return end(talk, record);
    if (talk.wire.is_lost()) {
        differ(talk, {}, end_of_connection);
        return waits;
    }
    if (talk.wire.unsent() > most_unsent)
        return waits;
    talk.wire.send(record.bytes);
    return done;
}

Player::Progress Player::hear(Talk& talk, const Record& record)
{
    if (record.event == Record::said)
        return compare(talk, record);
    if (!talk.heard.isEmpty()) {
        differ(talk, end_of_connection, talk.heard);
        return waits;
    }
    return talk.heard_end ? end(talk, record) : waits;
}

Player::Progress Player::compare(Talk& talk, const Record& record)
{
    const QByteArray expected = record.bytes.mid(compared_);
    const int same = common_length(talk.heard, expected);
    const bool is_different = same < std::min(talk.heard.size(), expected.size());
    talk.place.pass(talk.heard.left(same));
    talk.heard.remove(0, same);
    talk.wire.set_reading(talk.heard.size() < most_heard);
    compared_ += same;
    bytes_ += same;
    if (same == expected.size())
        return done;
    if (is_different || talk.heard_end)
        differ(talk, expected.mid(same), is_different ? talk.heard : end_of_connection);
    return waits;
}

/// One side is over. When both are, or the connection is lost, it is closed as soon as all is out.
Player::Progress Player::end(Talk& talk, const Record& record)
{
    (record.from == Side::client ? talk.is_client_over : talk.is_server_over) = true;
    if (record.event == Record::ended && record.from == play_.side)
        talk.wire.end();
    if (record.event == Record::ended && !(talk.is_client_over && talk.is_server_over))
        return done;
    if (talk.wire.unsent() > 0)
        return waits;
    talk.wire.disconnect(this);
    talks_.extract(record.connection).mapped().release()->deleteLater();
    return done;
}

Player::Progress Player::finish()
{
    if (!file_.error().isEmpty()) { // it has changed since it was read
        fail(exit_usage, file_.error());
        return waits;
    }
    for (const auto& [number, talk] : talks_)
        if (talk->wire.unsent() > 0)
            return waits;
    over_ = true;
    Q_EMIT same();
    return waits;
}

bool Player::is_early(const Record& record) const
{
    return play_.paced && microseconds(clock_.nsecsElapsed() / 1000) < record.at - first_;
}

void Player::wait(Progress progress)
{
    const bool for_its_time = progress == waits_for_its_time;
    const bool for_anybody = play_.side == Side::server && connections_ == 0;
    if (over_ || alarm_.isActive() || for_anybody || dial_) // which has a limit of its own
        return;
    alarm_is_limit_ = !for_its_time;
    const microseconds now(clock_.isValid() ? clock_.nsecsElapsed() / 1000 : 0);
    const microseconds gap = record_ ? record_->at - before_ : microseconds(0);
    const auto time = for_its_time ? ceil<milliseconds>(record_->at - first_ - now)
                                   : play_.limit + ceil<milliseconds>(std::max(gap, microseconds(0)));
    alarm_.start(
        static_cast<int>(std::min<milliseconds::rep>(time.count(), std::numeric_limits<int>::max())));
}

void Player::on_alarm()
{
    if (!alarm_is_limit_)
        return step();
    const QString limit = in_seconds(play_.limit);
    const QString side = name_of(facing(play_.side));
    if (!record_ || record_->from == play_.side)
        return fail(exit_timed_out, QStringLiteral("the %1 took nothing for %2").arg(side, limit));
    if (record_->event == Record::opened || record_->event == Record::refused)
        return fail(exit_timed_out, QStringLiteral("no client connected for %1").arg(limit));
    const ReplayPlace& place = talks_.at(record_->connection)->place;
    const QByteArray missing =
        record_->event == Record::said ? record_->bytes.mid(compared_) : end_of_connection;
    fail(exit_timed_out,
         QStringLiteral("the %1 did not go on within %2 of the recorded time, in message %3 of "
                        "connection %4 (line %5): %6")
             .arg(side, limit)
             .arg(place.message())
             .arg(record_->connection)
             .arg(file_.line())
             .arg(shown(place, missing)));
}

void Player::differ(const Talk& talk, const QByteArray& expected, const QByteArray& got)
{
    over_ = true;
    Q_EMIT differs({file_.line(), record_->connection, talk.place.message(), talk.place.byte(),
                    shown(talk.place, expected), shown(talk.place, got)});
}

void Player::fail(ExitCode code, const QString& why)
{
    over_ = true;
    Q_EMIT failed({code, why, {}});
}
