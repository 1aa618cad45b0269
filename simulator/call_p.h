// One command on its way through the server: what the functions that carry it out are given.
#pragma once

#include <simulator/audience_p.h>
#include <simulator/commands/deck_p.h>
#include <simulator/element.h>

#include <optional>
#include <vector>

namespace simulator {

struct ServerState;
struct Session;

// Why a command is not carried out; nothing has changed then. Without text: it was.
struct Refusal
{
    QString text;
    const char* code = "general";

    explicit operator bool() const { return !text.isEmpty(); }
};

inline Refusal refuse(const QString& text)
{
    return {text};
}
Refusal no_such_clip(const QString& clip);
Refusal no_room();

// What stands in an element that the catalogue has approved.
bool has(const Element& element, const char* tag);
QString text(const Element& element, const char* tag);
const Element& child(const Element& element, const char* tag); // an empty one if there is none
std::optional<quint32> number(const Element& element, const char* tag);

QString quoted(const QString& name);
inline QString truth(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}
inline QString decimal(quint64 value)
{
    return QString::number(value);
}

class Call
{
public:
    Call(const Element& command, const QString& command_xid, ServerState& server, Session& client,
         Audience& all, MessageWriter& writer)
        : arguments(command),
          state(server),
          session(client),
          audience(all),
          xid_(command_xid),
          answer_(writer)
    {
    }

    const Element& arguments; // read by the catalogue
    ServerState& state;
    Session& session; // of the client that sent it
    Audience& audience;

    bool has(const char* tag) const { return simulator::has(arguments, tag); }
    QString text(const char* tag) const { return simulator::text(arguments, tag); }
    std::optional<quint32> number(const char* tag) const { return simulator::number(arguments, tag); }
    quint32 required_number(const char* tag) const { return number(tag).value_or(0); }
    qint32 distance(const char* tag) const { return text(tag).toInt(); }

    // The channels that it names, each once and in its order; and the first of them, where it must name one.
    std::vector<Deck> decks() const;
    Deck deck() const { return decks().front(); }

    // Replies but `ok` and `error`, which come of themselves.
    void reply(const char* name, const Fields& fields) { answer_.reply(xid_, name, fields); }

    void report(const char* name, const Fields& fields) { audience.report(name, fields); }

private:
    const QString& xid_;
    MessageWriter& answer_;
};

// A row of the table of commands. Each family of commands gives its rows.
struct CommandRow
{
    const char* name;
    Refusal (*run)(Call&);
};

using CommandRows = std::vector<CommandRow>;

CommandRows registration_commands();
CommandRows transport_commands();
CommandRows ownership_commands();
CommandRows clip_commands();
CommandRows directory_commands();
CommandRows play_list_commands();
CommandRows chase_list_commands();
CommandRows loaded_play_list_commands();
CommandRows loaded_chase_list_commands();
CommandRows list_reordering_commands();
CommandRows list_playout_commands();
CommandRows chasing_commands();
CommandRows vclip_commands();
CommandRows export_commands();
CommandRows metadata_commands();
CommandRows userdict_commands();
CommandRows configuration_commands();
CommandRows machine_commands();
CommandRows logging_commands();

} // namespace simulator
