// Small change for the functions that carry out commands.
#include <simulator/call_p.h>

#include <algorithm>

namespace simulator {

Refusal no_such_clip(const QString& clip)
{
    return {QStringLiteral("no such clip %1").arg(quoted(clip)), "clipnotfound"};
}

Refusal no_room()
{
    return refuse(QStringLiteral("the server has no room for more"));
}

bool has(const Element& element, const char* tag)
{
    return element.child(QLatin1String(tag)) != nullptr;
}

QString text(const Element& element, const char* tag)
{
    return element.child_text(QLatin1String(tag));
}

const Element& child(const Element& element, const char* tag)
{
    static const Element nothing;
    const Element* found = element.child(QLatin1String(tag));
    return found ? *found : nothing;
}

std::optional<quint32> number(const Element& element, const char* tag)
{
    const Element* found = element.child(QLatin1String(tag));
    return found ? std::optional<quint32>(found->text.toUInt()) : std::nullopt;
}

std::vector<Deck> Call::decks() const
{
    std::vector<Deck> named;
    const auto add = [&](const Element& element) {
        const int number = element.text.at(0).unicode() - 'A';
        if (std::none_of(named.begin(), named.end(), [&](Deck deck) { return deck.number == number; }))
            named.push_back({state, audience, number});
    };
    if (has("Channel"))
        add(child(arguments, "Channel"));
    for (const Element& member : child(arguments, "ChannelSet").children)
        add(member);
    return named;
}

QString quoted(const QString& name)
{
    constexpr int shown = 200; // characters; an answer is not to grow with what is wrong in a command
    return QLatin1Char('"') + name.left(shown) + QLatin1Char('"');
}

} // namespace simulator
