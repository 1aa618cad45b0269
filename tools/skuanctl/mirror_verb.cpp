// From the first attempt to connect until the mirrors are filled, and what a lost connection means.
#include <skuanctl/mirror_verb.h>
#include <skuanctl/run.h>
#include <skuanctl/value_text.h>

#include <skuan/config/cf_model.h>

#include <utility>

MirrorVerb::MirrorVerb(Run& run) : Verb(run), session_(false), patience_(run, [this] { run_.done(); })
{
    limit_.setSingleShot(true);
    limit_.setInterval(run.options().timeout);
    QObject::connect(&limit_, &QTimer::timeout, &limit_, [this] { take_too_long(); });
    QObject::connect(&session_, &Spark::connected, &limit_, [this] { take_connection(); });
    QObject::connect(&session_, &Spark::stateChanged, &limit_,
                     [this](QAbstractSocket::SocketState state) { take_state(state); });
    QObject::connect(session_.cf_model(), &CFModel::fully_scanned, &limit_, [this] { look(); });
    QObject::connect(&run, &Run::ended, &session_, &Spark::forget_server);
    QObject::connect(&run, &Run::ended, &limit_, &QTimer::stop);
}

bool MirrorVerb::prepare()
{
    if (!can_be_sent() || !ask())
        return false;
    limit_.start();
    const QHostAddress address(run_.host());
    if (!address.isNull())
        session_.set_server(address);
    else {
        session_.set_server(run_.host());
        session_.connect_to_server(run_.host()); // without waiting for the session's timer
    }
    return false; // of the run's own connection there is no need
}

bool MirrorVerb::can_be_sent()
{
    const Tag text{{}, {}, Kind::string};
    for (const QString& name : run_.options().arguments)
        if (!is_value(text, name))
            return refuse(QStringLiteral("'%1' is no value for %2, which takes %3")
                              .arg(name, run_.options().form.places.back().placeholder, wanted(text)));
    return true;
}

// No command asks for the text under a key, but who watches it is told at once; so the dictionary has told
// all when the next command is answered.
void MirrorVerb::take_connection()
{
    if (!was_connected_)
        limit_.start();
    was_connected_ = true;
    session_.cmd_sync(
        AFunction::member<&MirrorVerb::take_all_answered>(this),
        AFunction2<KVRP3::ErrorMessage, KVRP3::ErrorCode>::member<&MirrorVerb::take_not_answered>(this));
}

void MirrorVerb::take_state(QAbstractSocket::SocketState state)
{
    const bool was_looking_up = std::exchange(state_, state) == QAbstractSocket::HostLookupState;
    if (state != QAbstractSocket::UnconnectedState || run_.is_over())
        return;
    if (!was_connected_)
        return run_.fail(was_looking_up ? cannot_find(run_.host(), session_.error_text())
                                        : cannot_connect(run_.host(), session_.error_text()));
    if (!patience_.is_asked())
        return run_.fail(connection_lost(run_.host(), session_.error_text()));
    if (std::exchange(all_answered_, false)) {
        tell_connection(connection_lost(run_.host(), session_.error_text()).message);
        has_told_loss_ = true;
    }
}

// A refusal is an answer; what was not answered is asked again on the next connection.
void MirrorVerb::take_all_answered()
{
    once_settled([this] {
        all_answered_ = session_.is_connected();
        if (all_answered_ && std::exchange(has_told_loss_, false))
            tell_connection(QStringLiteral("connected to %1 again").arg(run_.host()));
        look();
    });
}

void MirrorVerb::look()
{
    if (knows_ || !all_answered_ || !session_.cf_model()->is_fully_scanned() || run_.is_over())
        return;
    knows_ = true;
    know();
}

void MirrorVerb::stay()
{
    limit_.stop();
    if (patience_.is_over())
        run_.done();
    else
        patience_.begin();
}

void MirrorVerb::report(const QString& name, const QString& value, const QJsonObject& object)
{
    if (has_told_enough())
        return;
    run_.line(name + '=' + value, object);
    count();
}

bool MirrorVerb::has_told_enough() const
{
    return run_.is_over() || patience_.is_over();
}

void MirrorVerb::count()
{
    patience_.count();
    if (knows_ && patience_.is_over())
        run_.done();
}

void MirrorVerb::tell_connection(const QString& text)
{
    run_.remark(text);
}

void MirrorVerb::take_error(KVRP3::ErrorMessage message, KVRP3::ErrorCode code)
{
    const Failure refused{exit_server_error, QStringLiteral("the server answered: ") + QString(message),
                          QString(ErrorCode_to_string(code))};
    once_settled([this, refused] {
        if (session_.is_connected())
            run_.fail(refused);
        else
            knows_ = false; // and asks again on the next connection
    });
}

// A command that fails with its connection may be told so while the connection still seems to stand.
void MirrorVerb::once_settled(std::function<void()> act)
{
    QTimer::singleShot(0, &limit_, std::move(act));
}

// A server that hangs up each time it is asked is no better than one that says nothing.
void MirrorVerb::take_too_long()
{
    const auto limit = limit_.intervalAsDuration();
    if (session_.is_connected())
        run_.fail(no_answer(run_.host(), limit));
    else if (was_connected_)
        run_.fail(connection_lost(run_.host(), session_.error_text()));
    else
        run_.fail(cannot_connect(run_.host(), QStringLiteral("no answer within ") + in_seconds(limit)));
}
