// Play lists and chase lists: as they are saved, as they are loaded on channels, and on their way to both.
#pragma once

#include <simulator/budget_p.h>

#include <optional>
#include <vector>

namespace simulator {

class Call;

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

// A copy of a saved list, at a channel's disposal.
struct LoadedList
{
    QString id;
    std::vector<Element> elements;
    Share share;
    bool modified = false;
    std::optional<quint32> air_now{}, air_next{};
    QString mode = QStringLiteral("single_channel");
    QString loop = QStringLiteral("off");
    std::optional<Element> transition{}, bed{};
};

// Tell one client what is loaded on a channel.
void tell_play_list(Call& call, int channel);
void tell_chase_list(Call& call, int channel);

} // namespace simulator
