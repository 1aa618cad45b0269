// The table of tracks: their order is that of the bits and of the letters.
#include <skuan/time/track_set.h>

#include <skuan/time/closed_enumeration_p.h>

#include <array>

namespace Vantor {

namespace {

struct Track
{
    char letter;
    const char* text;
};

constexpr Track track_rows[] = {{'V', "video"}, {'K', "key"}, {'A', "audio"}, {'T', "timecode"}};

constexpr auto set_texts = [] {
    std::array<std::array<char, 5>, TrackSet_all + 1> texts{};
    for (unsigned set = 0; set != texts.size(); ++set)
        for (unsigned bit = 0; bit != 4; ++bit)
            texts[set][bit] = set >> bit & 1 ? track_rows[bit].letter : '-';
    return texts;
}();

const char* text_of(TrackType x)
{
    return isValid(x) ? track_rows[x - 1].text : "";
}

const char* text_of(TrackSet x)
{
    return isValid(x) ? set_texts[x].data() : "";
}

// The protocol has the same types in the same order, from 0 on.
static_assert(KVRP3::TrackType_timecode == TrackType_timecode - 1);

} // namespace

AString toString(TrackType x)
{
    return AString::l1(text_of(x));
}

AString toString(TrackSet x)
{
    return AString::l1(text_of(x));
}

TrackType toTrackType(const AString& text)
{
    return value_of_text(text, text_of, TrackType_invalid);
}

TrackSet toTrackSet(const AString& text)
{
    return value_of_text(text, text_of, TrackSet_invalid);
}

TrackType toTrackType(KVRP3::TrackType x)
{
    return KVRP3::valid_TrackType(x) ? static_cast<TrackType>(x + 1) : TrackType_invalid;
}

TrackType toTrackType(const KVRP3::TrackInfo& track)
{
    return toTrackType(track.track_type);
}

TrackSet toTrackSet(TrackType x)
{
    return isValid(x) ? static_cast<TrackSet>(1u << (x - 1)) : TrackSet_invalid;
}

TrackSet toTrackSet(const KVRP3::TrackInfoVector& tracks)
{
    TrackSet set = TrackSet_none;
    for (const KVRP3::TrackInfo& track : tracks)
        set = combine(set, track);
    return set;
}

TrackSet toTrackSet(const KVRP3::ClipInfo& clip)
{
    return toTrackSet(clip.track_info_vector);
}

TrackSet combine(TrackSet a, TrackSet b)
{
    return isValid(a) && isValid(b) ? static_cast<TrackSet>(a | b) : TrackSet_invalid;
}

TrackSet combine(TrackSet set, TrackType type)
{
    return combine(set, toTrackSet(type));
}

TrackSet combine(TrackSet set, const KVRP3::TrackInfo& track)
{
    return combine(set, toTrackType(track));
}

} // namespace Vantor
