// Stealing channels for file transfer, and giving them back.
#include <simulator/commands/ownership_p.h>

#include <simulator/commands/channels_p.h>
#include <simulator/server_state_p.h>

namespace simulator {

namespace {

// What is played out of the server is exported. A steal is swapped when the client has the channel already,
// for the other direction.
Refusal steal_channel(Call& call)
{
    const Deck deck = call.deck();
    if (Refusal refusal = not_free(call, deck))
        return refusal;
    Channel& at = deck.channel();
    const bool plays = call.text("PlayOrRecord") == QLatin1String("play");
    const QString status = plays ? QStringLiteral("export") : QStringLiteral("import");
    const bool swapped = at.thief && at.steal_status != status;
    at.thief = &call.session;
    at.steal_status = status;
    tell_changes(deck);
    call.reply("steal_info", {{"StealSwapped", truth(swapped)}});
    return {};
}

Refusal unsteal_channel(Call& call)
{
    return_channels(call.state, call.session, call.audience);
    return {};
}

} // namespace

void return_channels(ServerState& state, const Session& session, Audience& audience)
{
    for (const Deck deck : all_decks(state, audience)) {
        Channel& at = deck.channel();
        if (at.thief != &session)
            continue;
        at.thief = nullptr;
        at.steal_status = QStringLiteral("available");
        tell_changes(deck);
    }
}

CommandRows ownership_commands()
{
    return {
        {"steal_channel", steal_channel},
        {"unsteal_channel", unsteal_channel},
    };
}

} // namespace simulator
