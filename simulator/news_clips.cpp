// The clips that a fresh simulator shows: an evening at a small station.
#include <simulator/clip_store.h>

namespace simulator {

ClipStore ClipStore::news()
{
    static const char* const clips[] = {
        "bars_and_tone",
        "station_ident_25s",
        "news/1800_headlines",
        "news/harbour_fire_aerials",
        "news/harbour_fire_interview \"Chief Öberg\"",
        "news/Bürgermeister zur Brücke",
        "news/budget: revenue < spending & debt > plan",
        "news/élections – soirée",
        "news/minister's statement",
        "news/weather_tonight",
        "sports/derby_1st_half",
        "sports/derby_2nd_half",
        "sports/derby_goal_37min_angle2",
        "sports/Łódź–Málaga 2:1",
        "sports/Чемпионат_финал",
        "sports/relay_4x100_replay",
        "sports/大相撲 千秋楽",
        "graphics/lower_third_loop",
        "graphics/scoreboard_<home>&<away>",
        "graphics/🏆 ceremony sting",
        "archive/1987/opening_ceremony",
        "archive/1987/storm_footage_reel_3",
    };
    ClipStore store;
    for (const char* clip : clips)
        store.create_clip(QString::fromUtf8(clip));
    return store;
}

} // namespace simulator
