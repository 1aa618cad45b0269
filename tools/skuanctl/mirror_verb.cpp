// From the first attempt to connect until the mirrors are filled, and what a lost connection means.
#include <skuanctl/mirror_verb.h>
#include <skuanctl/run.h>

#include <skuan/config/cf_model.h>

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
}

bool MirrorVerb::prepare()
{
    if (!ask())
        return false;
    limit_.start();
    const QHostAddress address(run_.host());
    if (address.isNull())
        session_.set_server(run_.host());
    else
        session_.set_server(address);
    return false; // of the run's own connection there is no need
}

// No command asks for the text under a key, but who watches it is told at once; so the dictionary has told
// all when the next command is answered.
void MirrorVerb::take_connection()
{
    if (!knows_)
        limit_.start();
    if (was_connected_)
        run_.remark(QStringLiteral("connected to %1 again").arg(run_.host()));
    was_connected_ = true;
    session_.cmd_sync(
        AFunction::member<&MirrorVerb::take_all_answered>(this),
        AFunction2<KVRP3::ErrorMessage, KVRP3::ErrorCode>::member<&MirrorVerb::take_not_answered>(this));
}

void MirrorVerb::take_state(QAbstractSocket::SocketState state)
{
    if (state != QAbstractSocket::UnconnectedState || run_.is_over())
        return;
    if (!was_connected_)
        return run_.fail(cannot_connect(run_.host(), session_.error_text()));
    if (!patience_.is_asked())
        return run_.fail(connection_lost(run_.host(), session_.error_text()));
    if (all_answered_)
        run_.remark(connection_lost(run_.host(), session_.error_text()).message);
    all_answered_ = false;
}

// A refusal is an answer; what was not answered is asked again on the next connection.
void MirrorVerb::take_all_answered()
{
    all_answered_ = session_.is_connected();
    look();
}

void MirrorVerb::look()
{
    if (knows_ || !all_answered_ || !session_.cf_model()->is_fully_scanned() || run_.is_over())
        return;
    knows_ = true;
    limit_.stop();
    know();
}

void MirrorVerb::stay()
{
    if (patience_.is_over())
        run_.done();
    else
        patience_.begin();
}

void MirrorVerb::report(const QString& name, const QString& value, const QJsonObject& object)
{
    if (run_.is_over() || patience_.is_over())
        return;
    run_.line(name + '=' + value, object);
    patience_.count();
    if (knows_ && patience_.is_over())
        run_.done();
}

void MirrorVerb::take_error(KVRP3::ErrorMessage message, KVRP3::ErrorCode code)
{
    run_.fail(session_.is_connected()
                  ? Failure{exit_server_error, QStringLiteral("the server answered: ") + QString(message),
                            QString(ErrorCode_to_string(code))}
                  : connection_lost(run_.host(), session_.error_text()));
}

void MirrorVerb::take_too_long()
{
    run_.fail(was_connected_ ? no_answer(run_.host(), limit_.intervalAsDuration())
                             : cannot_connect(run_.host(), QStringLiteral("no answer within ") +
                                                               in_seconds(limit_.intervalAsDuration())));
}
