// The clips that a fresh simulator shows: an evening at a small station.
#include <simulator/clip_store.h>

namespace simulator {

namespace {

struct NewsClip
{
    const char* id;
    quint32 length; // fields, 50 to a second
    const char* title;
    const char* creator;
    const char* project;
    bool read_only = false;
};

constexpr NewsClip news_clips[] = {
    {"bars_and_tone", 3000, "Bars and tone", "engineering", "house", true},
    {"station_ident_25s", 1250, "Station ident", "design", "house"},
    {"news/1800_headlines", 2150, "Headlines at six", "M. Duarte", "evening news"},
    {"news/harbour_fire_aerials", 4320, "Harbour fire from the air", "crew 3", "evening news"},
    {"news/harbour_fire_interview \"Chief Öberg\"", 6905, "The fire chief", "crew 1", "evening news"},
    {"news/Bürgermeister zur Brücke", 3815, "Der Bürgermeister", "crew 2", "evening news"},
    {"news/budget: revenue < spending & debt > plan", 5110, "Budget & debt", "M. Duarte", "evening news"},
    {"news/élections – soirée", 9250, "Soirée électorale", "crew 2", "evening news"},
    {"news/minister's statement", 7480, "The minister's statement", "crew 1", "evening news"},
    {"news/weather_tonight", 4500, "Weather", "weather desk", "evening news"},
    {"sports/derby_1st_half", 139500, "Derby, first half", "OB van 1", "league"},
    {"sports/derby_2nd_half", 143750, "Derby, second half", "OB van 1", "league"},
    {"sports/derby_goal_37min_angle2", 610, "Goal, behind the net", "OB van 1", "league"},
    {"sports/Łódź–Málaga 2:1", 4200, "Łódź–Málaga", "agency", "league"},
    {"sports/Чемпионат_финал", 5400, "Финал", "agency", "athletics"},
    {"sports/relay_4x100_replay", 2025, "Relay", "agency", "athletics"},
    {"sports/大相撲 千秋楽", 8800, "千秋楽", "agency", "sumo"},
    {"graphics/lower_third_loop", 500, "Lower third", "design", "house"},
    {"graphics/scoreboard_<home>&<away>", 750, "Scoreboard", "design", "league"},
    {"graphics/🏆 ceremony sting", 225, "Ceremony sting", "design", "league"},
    {"archive/1987/opening_ceremony", 180000, "Opening ceremony", "archive", "1987", true},
    {"archive/1987/storm_footage_reel_3", 27600, "Storm, reel 3", "archive", "1987", true},
};

} // namespace

ClipStore ClipStore::news()
{
    ClipStore store;
    for (const NewsClip& clip : news_clips) {
        Clip made;
        made.length = clip.length;
        made.set_attribute("Title", QString::fromUtf8(clip.title));
        made.set_attribute("Creator", QString::fromUtf8(clip.creator));
        made.set_attribute("Project", QString::fromUtf8(clip.project));
        if (clip.read_only)
            made.set_attribute("ReadOnly", QStringLiteral("true"));
        store.create_clip(QString::fromUtf8(clip.id), std::move(made));
    }
    return store;
}

} // namespace simulator
