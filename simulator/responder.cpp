// From a message to the row of its command.
#include <simulator/responder_p.h>

#include <simulator/call_p.h>
#include <simulator/commands/machine_p.h>
#include <simulator/commands/ownership_p.h>
#include <simulator/commands/running_p.h>
#include <simulator/commands/userdict_p.h>
#include <simulator/reading_p.h>
#include <simulator/state_file_p.h>

#include <QBuffer>
#include <QFileInfo>
#include <QHash>

namespace simulator {

namespace {

// All that there is to know of a command: its form on the wire, and what it does.
struct Known
{
    const CommandForm* form;
    Refusal (*run)(Call&);
};

const Known* known_command(const QString& name)
{
    static const QHash<QString, Known> commands = [] {
        QHash<QString, Known> made;
        for (const auto family :
             {registration_commands, transport_commands, ownership_commands, clip_commands,
              directory_commands, play_list_commands, chase_list_commands, loaded_play_list_commands,
              loaded_chase_list_commands, list_reordering_commands, list_playout_commands, chasing_commands,
              vclip_commands, export_commands, metadata_commands, userdict_commands, configuration_commands,
              machine_commands, logging_commands})
            for (const CommandRow& row : family())
                if (const CommandForm* form = Catalogue::get().command(QLatin1String(row.name)))
                    made.insert(form->name, {form, row.run});
                else
                    qFatal("the catalogue does not have the command %s", row.name);
        return made;
    }();
    const auto at = commands.find(name);
    return at == commands.end() ? nullptr : &*at;
}

const char* code_of(const Objection& objection)
{
    if (objection.tag == QLatin1String("ConfigurationItemName"))
        return "configname_invalid";
    if (objection.tag == QLatin1String("ConfigurationItemValue"))
        return "configvalue_invalid";
    return "general";
}

} // namespace

Responder::Responder(const Settings& settings)
    : state_(settings), audience_(settings.max_backlog), answer_(settings.max_backlog)
{
    state_.told_disk_space = available_space(state_);
}

QByteArray Responder::answer(Element message, Session& session)
{
    Element* body = nullptr;
    Element* xid = nullptr;
    bool twice = false;
    for (Element& child : message.children) {
        Element*& place = child.tag == QLatin1String("xid") ? xid : body;
        twice = twice || place;
        place = &child;
    }
    const QString id = xid ? xid->text : QString();

    if (message.tag != QLatin1String("cmd"))
        error(id, QStringLiteral("the message is <%1>, not <cmd>").arg(message.tag));
    else if (!xid)
        error(id, QStringLiteral("the command has no xid"));
    else if (twice)
        error(id, QStringLiteral("the message holds more than one command, or more than one xid"));
    else if (!body)
        error(id, QStringLiteral("the message holds no command"));
    else
        answer(id, *body, session);
    return answer_.take();
}

void Responder::answer(const QString& xid, Element& command, Session& session)
{
    const Known* known = known_command(command.tag);
    if (!known)
        return error(xid, QStringLiteral("unknown command %1").arg(quoted(command.tag)));
    const Objection objection = read(*known->form, command);
    if (!objection.text.isEmpty())
        return error(xid, objection.text, code_of(objection));

    Call call(command, xid, state_, session, audience_, answer_);
    const Refusal refusal = known->run(call);
    if (refusal)
        error(xid, refusal.text, refusal.code);
    else if (known->form->ends_with_ok)
        answer_.reply(xid, "ok");
    audience_.deliver();
}

QString Responder::load()
{
    const Settings& settings = state_.settings;
    QString error;
    const QFileInfo file(settings.state_file);
    if (!settings.state_file.isEmpty() && !QFileInfo(file.path()).isWritable())
        return QStringLiteral("cannot save to %1: there is no such folder, or nothing can be written there")
            .arg(settings.state_file); // better now than at the end of a long day
    if (!settings.export_folder.isEmpty() && !QFileInfo(settings.export_folder).isDir())
        return QStringLiteral("there is no folder %1 for the files of exports").arg(settings.export_folder);
    if (!settings.state_file.isEmpty() && file.exists()) {
        error = load_state(settings.state_file, state_);
    } else if (!settings.seed.isEmpty()) {
        QBuffer seed;
        seed.setData(settings.seed);
        seed.open(QIODevice::ReadOnly);
        error = read_state(seed, state_);
        if (!error.isEmpty())
            error.prepend(QStringLiteral("the seed, "));
    }
    start_ltc(state_);
    return error;
}

// What is recorded so far is kept. The timecode comes from outside, and goes on.
void Responder::restart()
{
    for (const Deck deck : all_decks(state_, audience_)) {
        Channel& at = deck.channel();
        if (at.status == ChannelStatus::nochannel)
            continue;
        clear(deck);
        at = Channel();
    }
    const quint64 timecode = ltc_field(state_), day = ltc_day(state_);
    state_.chase_timecode.reset();
    state_.configuration.boot();
    follow_reference(state_, audience_);
    set_ltc_field(state_, timecode * ltc_day(state_) / day);
}

void Responder::leave(Session& session)
{
    audience_.leave(session);
    return_channels(state_, session, audience_);
    leave_legacy(state_, session, audience_);
    audience_.deliver();
}

// Every family that has something going on in time, whether it has at present or not.
bool Responder::field()
{
    ++state_.field;
    bool goes_on = false;
    for (const auto run : {run_channels, run_ltc})
        goes_on = run(state_, audience_) || goes_on;
    audience_.deliver();
    return goes_on;
}

QByteArray Responder::refusal(const QString& why)
{
    error({}, QStringLiteral("the connection ends, its bytes are no messages: %1").arg(why));
    return answer_.take();
}

void Responder::error(const QString& xid, const QString& message, const char* code)
{
    answer_.reply(xid, "error", {{"ErrorMessage", message}, {"ErrorCode", QString(QLatin1String(code))}});
}

} // namespace simulator
