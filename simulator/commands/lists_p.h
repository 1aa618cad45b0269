// Play lists and chase lists: as they are saved, as they are loaded on channels, and on their way to both.
#pragma once

#include <simulator/budget_p.h>

#include <array>
#include <optional>
#include <vector>

namespace simulator {

class Call;
struct Deck;

constexpr int channel_count = 12;

// One that a client is saving, element by element.
struct ListDraft
{
    QString id;
    std::vector<Element> elements;
    Share share;
};

// Elements that a client picks to move them.
struct Reordering
{
    int channel = 0;
    std::vector<quint32> picked;
    Share share;
};

// Which elements of a list are on air, locked for it, and next. Without the first the list is off the air,
// whatever the channel plays.
struct OnAir
{
    std::optional<quint32> now{}, lock{}, next{};
};

// How far a chase list has followed the timecode.
struct Chase
{
    std::optional<quint32> element{}; // whose time it is
    bool is_black = true;         // nothing of it is to be seen: before it, behind its end, without a clip
    bool stands = false;          // it was the chase that stopped the channel, so it may set it going again
    std::vector<quint32> order{}; // the elements that have a trigger, in time's order
    bool is_ordered = false;
};

// A copy of a saved list, at a channel's disposal.
struct LoadedList
{
    QString id;
    std::vector<Element> elements;
    Share share;
    bool modified = false;
    OnAir air{}, told{}; // what is, and what those who listen know

    // Of a play list.
    QString mode = QStringLiteral("single_channel");
    QString loop = QStringLiteral("off");
    std::optional<Element> transition{}, bed{};
    std::optional<quint32> chosen{}; // by a client, to be next
    bool chosen_rolls = true;

    Chase chase{}; // of a chase list

    // Every place where an element is remembered by its index.
    std::array<std::optional<quint32>*, 4> indices()
    {
        return {&air.now, &air.lock, &chosen, &chase.element};
    }
};

// Tell one client what is loaded on a channel.
void tell_play_list(Call& call, Deck deck);
void tell_chase_list(Call& call, Deck deck);

} // namespace simulator
