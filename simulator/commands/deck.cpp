// From a channel's number to the channel.
#include <simulator/commands/deck_p.h>

#include <simulator/server_state_p.h>

namespace simulator {

Channel& Deck::channel() const
{
    return state.channels[static_cast<std::size_t>(number)];
}

QString Deck::name() const
{
    return QString(QChar(static_cast<char16_t>(u'A' + number)));
}

Element Deck::tag() const
{
    return {"Channel", name()};
}

std::vector<Deck> all_decks(ServerState& state, Audience& audience)
{
    std::vector<Deck> decks;
    decks.reserve(channel_count);
    for (int number = 0; number < channel_count; ++number)
        decks.push_back({state, audience, number});
    return decks;
}

} // namespace simulator
