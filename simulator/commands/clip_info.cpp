// Clip information: from the little that is kept of each clip to the whole record, and its changes.
#include <simulator/commands/clip_info_p.h>

#include <simulator/call_p.h>
#include <simulator/catalogue_p.h>
#include <simulator/commands/machine_p.h>
#include <simulator/reading_p.h>

#include <QSet>

#include <algorithm>

namespace simulator {

namespace {

constexpr unsigned bitrate = 100'000'000; // bits a second
constexpr unsigned audio_track_count = 8;

std::vector<Element> all_tracks()
{
    std::vector<Element> set;
    for (const QString& type : *Catalogue::get().tag(QStringLiteral("TrackType"))->names)
        set.push_back({"TrackType", type});
    return set;
}

const Element& default_tracks()
{
    static const Element tracks = tracks_of({"TrackSet", all_tracks()});
    return tracks;
}

std::vector<Element> what_all_have(const QString& id, const Clip& clip, const QString& standard)
{
    return {
        {"ClipID", id},
        {"VideoStandard", standard},
        default_tracks(),
        {"Title", QString()},
        {"Creator", QString()},
        {"Project", QString()},
        {"Playback", "auto"},
        {"Interp", "auto"},
        {"Loop", "off"},
        {"LoopOut", decimal(clip.played_length())},
        {"LoopIn", decimal(0)},
        {"ClipLength", decimal(clip.played_length())},
        {"TimecodeSource", "zerobased"},
        {"StripeTimecode", no_timecode()},
        {"ReadOnly", truth(false)},
        {"SpecialClipType", "normal"},
        {"CompressionBitrate", decimal(bitrate)},
        {"TrimStart", decimal(0)},
        {"TrimEnd", decimal(0)},
        {"ClipLengthUntrimmed", decimal(clip.length)},
        {"CompressionType", "avci"},
        {"ClipUUID", ClipStore::uuid_of(id)},
        {"ClipFileType", "mxf"},
    };
}

// Of several entries with one key the last counts, unless the key is to go. Lists may be long, so each entry
// is looked at once.
void change_metadata(Element& info, const Element& change)
{
    std::vector<Element> entries = child(info, "MetadataList").children;
    const auto& more = child(change, "MetadataList").children;
    entries.insert(entries.end(), more.begin(), more.end());

    QSet<QString> done;
    for (const Element& key : child(change, "KeyList").children)
        done.insert(key.text);
    std::vector<Element> kept; // from the last to the first
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        const QString key = text(*entry, "Key");
        if (done.contains(key))
            continue;
        done.insert(key);
        kept.push_back(std::move(*entry));
    }
    std::reverse(kept.begin(), kept.end());
    info.set({"MetadataList", std::move(kept)});
}

// A change that names no type is one of the track in its place.
void change_tracks(Element& info, const Element& change)
{
    Element tracks = has(info, "TrackInfoVector") ? child(info, "TrackInfoVector") : default_tracks();
    for (std::size_t i = 0; i < change.children.size(); ++i) {
        const Element& attributes = change.children[i];
        const Element* trim = attributes.child(QLatin1String("TrimStart"));
        for (std::size_t k = 0; trim && k < tracks.children.size(); ++k)
            if (has(attributes, "TrackType")
                    ? text(attributes, "TrackType") == text(tracks.children[k], "TrackType")
                    : i == k)
                tracks.children[k].set(*trim);
    }
    info.set(std::move(tracks));
}

} // namespace

Element clip_info(const QString& id, const Clip& clip, const QString& standard)
{
    Element info(QStringLiteral("ClipInfo"), what_all_have(id, clip, standard));
    for (const Element& attribute : clip.attributes)
        info.set(attribute);
    read(*Catalogue::get().tag(info.tag)->record, info);
    return info;
}

Element tracks_of(const Element& track_set)
{
    Element tracks(QStringLiteral("TrackInfoVector"));
    for (const Element& type : track_set.children) {
        const bool is_audio = type.text == QLatin1String("audio");
        for (unsigned i = 0; i < (is_audio ? audio_track_count : 1); ++i)
            tracks.children.push_back({"TrackInfo", {type}});
    }
    return tracks;
}

void change_attributes(Clip& clip, const Element& change)
{
    Element info(QStringLiteral("ClipInfo"), std::move(clip.attributes));
    for (const Element& attribute : change.children)
        if (!Catalogue::get().tag(attribute.tag)->member)
            info.set(attribute);
    if (has(change, "MetadataList") || has(change, "KeyList"))
        change_metadata(info, change);
    if (has(change, "TrackAttrVector"))
        change_tracks(info, child(change, "TrackAttrVector"));
    clip.attributes = std::move(info.children);
}

} // namespace simulator
