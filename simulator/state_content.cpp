// What clients have put on a server, as entries of a state file: in the protocol's own words wherever it has
// one.
#include <simulator/state_forms_p.h>

#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

const Tag& own_container(const char* name, const Tag* member)
{
    Tag& tag = own_tag(name, Kind::Container);
    tag.member = member;
    return tag;
}
const Tag& own_record(const char* name, const Layout& fields)
{
    static std::deque<Layout> layouts;
    Tag& tag = own_tag(name, Kind::Record);
    tag.record = &layouts.emplace_back(fields);
    return tag;
}

Field optional(const char* name)
{
    return {tag(name), true};
}
Field optional(const Tag& tag)
{
    return {&tag, true};
}

Refusal taken(bool has_room)
{
    return has_room ? Refusal() : no_room();
}

// Clips.

// Of a clip's information everything but what follows from its length and trims.
Layout clip_layout()
{
    Layout layout{QStringLiteral("clip"), {required("ClipID"), optional("ClipLength")}};
    for (const Field& field : tag("ClipInfo")->record->fields)
        if (!field.tag->name.startsWith(QLatin1String("ClipLength")) && field.tag != tag("ClipID"))
            layout.fields.push_back({field.tag, true});
    return layout;
}

Refusal refusal_of(ClipStore::Outcome outcome, const QString& name)
{
    switch (outcome) {
    case ClipStore::Outcome::Exists:
        return twice(name);
    case ClipStore::Outcome::Done:
        return {};
    default:
        return refuse(QStringLiteral("%1 is not a name").arg(quoted(name)));
    }
}

Refusal take_clip(ServerState& state, const Element& entry)
{
    Clip clip;
    clip.length = number(entry, "ClipLength").value_or(clip.length);
    for (const Element& attribute : entry.children) {
        if (attribute.tag == QLatin1String("ClipID") || attribute.tag == QLatin1String("ClipLength"))
            continue;
        if (attribute.tag.endsWith(QLatin1String("Stamp")))
            state.last_stamp = std::max(state.last_stamp, attribute.text.toULongLong());
        clip.attributes.push_back(attribute);
    }
    const quint64 trims = quint64(clip.attribute("TrimStart").toUInt()) + clip.attribute("TrimEnd").toUInt();
    if (trims > clip.length)
        return refuse(QStringLiteral("the trims are longer than the clip"));
    const QString name = text(entry, "ClipID");
    return refusal_of(state.clips.create_clip(name, std::move(clip)), name);
}

void give_clips(const ServerState& state, const Put& put)
{
    for (const QString& name : state.clips.clips()) {
        const Clip& clip = *state.clips.clip(name);
        std::vector<Element> fields = {{"ClipID", name}, {"ClipLength", decimal(clip.length)}};
        fields.insert(fields.end(), clip.attributes.begin(), clip.attributes.end());
        put(std::move(fields));
    }
}

Refusal take_directory(ServerState& state, const Element& entry)
{
    const QString name = text(entry, "DirectoryName");
    const ClipStore::Outcome outcome = state.clips.create_directory(name);
    return outcome == ClipStore::Outcome::Exists ? Refusal() : refusal_of(outcome, name);
}

// The others come with their clips.
void give_directories(const ServerState& state, const Put& put)
{
    for (const QString& name : state.clips.directories())
        if (state.clips.clips_in(name).isEmpty())
            put({{"DirectoryName", name}});
}

// Play lists and chase lists.

template <Shelf<std::vector<Element>> ServerState::*lists>
Refusal take_list(ServerState& state, const Element& entry)
{
    const QString id = entry.children[0].text;
    if (id.isEmpty())
        return no_name("a list");
    if ((state.*lists).find(id))
        return twice(id);
    return taken((state.*lists).put(id, entry.children[1].children));
}

template <Shelf<std::vector<Element>> ServerState::*lists>
void give_lists(const ServerState& state, const Put& put)
{
    const bool is_chase = &(state.*lists) == &state.chase_lists;
    for (const auto& [id, elements] : state.*lists)
        put({{is_chase ? "ChaseID" : "ListID", id}, {is_chase ? "ChaseElements" : "ListElements", elements}});
}

Layout list_layout(const char* name, const char* id, const char* elements, const char* element)
{
    return {QLatin1String(name), {required(id), {&own_container(elements, tag(element)), false}}};
}

// Virtual clips.

Layout vclip_layout()
{
    Layout segment = command("vclip_add_segment");
    segment.name = QStringLiteral("Segment");
    segment.fields.erase(segment.fields.begin()); // the VClipID
    return {QStringLiteral("vclip"),
            {required("VClipID"), required("ClipLength"), optional("ClipID"), optional("TrackSet"),
             optional(own_container("EnabledTracks", tag("TrackType"))),
             optional(own_container("Segments", &own_record("Segment", segment)))}};
}

Refusal take_vclip(ServerState& state, const Element& entry)
{
    const QString name = text(entry, "VClipID");
    if (name.isEmpty())
        return no_name("a virtual clip");
    if (state.vclips.find(name))
        return twice(name);
    VirtualClip clip;
    clip.length = *number(entry, "ClipLength");
    clip.tracks_like = text(entry, "ClipID");
    if (has(entry, "TrackSet"))
        clip.tracks = track_bits(child(entry, "TrackSet"));
    if (has(entry, "EnabledTracks"))
        clip.enabled = track_bits(child(entry, "EnabledTracks"));
    for (const Element& segment : child(entry, "Segments").children) {
        const Segment made = {
            text(segment, "ClipID"),          track_bits(child(segment, "TrackSet")),
            *number(segment, "ClipPosition"), *number(segment, "VClipPosition"),
            *number(segment, "ClipLength"),   to_speed(text(segment, "Speed")).value_or(normal_speed)};
        if (quint64(made.position) + made.length > clip.length)
            return refuse(QStringLiteral("a segment goes beyond the end of the virtual clip"));
        clip.segments.push_back(made);
    }
    return taken(state.vclips.put(name, std::move(clip)));
}

void give_vclips(const ServerState& state, const Put& put)
{
    for (const auto& [name, clip] : state.vclips) {
        std::vector<Element> fields = {{"VClipID", name}, {"ClipLength", decimal(clip.length)}};
        if (!clip.tracks_like.isEmpty()) {
            fields.push_back({"ClipID", clip.tracks_like});
            fields.push_back(track_set("TrackSet", clip.tracks));
        }
        if (clip.enabled != VirtualClip().enabled)
            fields.push_back(track_set("EnabledTracks", clip.enabled));
        std::vector<Element> segments;
        for (const Segment& segment : clip.segments)
            segments.push_back({"Segment",
                                {{"ClipID", segment.clip},
                                 {"ClipPosition", decimal(segment.clip_position)},
                                 track_set("TrackSet", segment.tracks),
                                 {"VClipPosition", decimal(segment.position)},
                                 {"ClipLength", decimal(segment.length)},
                                 {"Speed", speed_text(segment.speed)}}});
        fields.push_back({"Segments", std::move(segments)});
        put(std::move(fields));
    }
}

// Metadata and user dictionary.

Refusal take_metadata(ServerState& state, const Element& entry)
{
    const QString database = text(entry, "MetadataDatabase"), prefix = text(entry, "MetadataPrefix");
    const auto& pairs = child(entry, "MetadataList").children;
    if (pairs.empty())
        return {};
    Shelf<QString>& texts = state.metadata.try_emplace(database, state.budget).first->second;
    const auto put = [&](const Element& pair) {
        return texts.put(prefix + text(pair, "Key"), text(pair, "Value"));
    };
    return taken(std::all_of(pairs.begin(), pairs.end(), put));
}

void give_metadata(const ServerState& state, const Put& put)
{
    for (const auto& [database, texts] : state.metadata) {
        std::vector<Element> pairs;
        for (const auto& [key, value] : texts)
            pairs.push_back({"Metadata", {{"Key", key}, {"Value", value}}});
        put({{"MetadataDatabase", database}, {"MetadataList", std::move(pairs)}});
    }
}

Refusal take_text(ServerState& state, const Element& entry)
{
    return taken(state.userdict.put(text(entry, "Key"), text(entry, "Value")));
}

void give_texts(const ServerState& state, const Put& put)
{
    for (const auto& [key, value] : state.userdict)
        put({{"Key", key}, {"Value", value}});
}

} // namespace

const std::vector<StateGroup>& content_groups()
{
    static const std::vector<StateGroup> groups = {
        {"clips",
         {{"directory",
           {QStringLiteral("directory"), {required("DirectoryName")}},
           take_directory,
           give_directories},
          {"clip", clip_layout(), take_clip, give_clips}},
         [](ServerState& state) { state.clips = {}; }},
        {"play_lists",
         {{"play_list", list_layout("play_list", "ListID", "ListElements", "ListElement"),
           take_list<&ServerState::play_lists>, give_lists<&ServerState::play_lists>}}},
        {"chase_lists",
         {{"chase_list", list_layout("chase_list", "ChaseID", "ChaseElements", "ChaseElement"),
           take_list<&ServerState::chase_lists>, give_lists<&ServerState::chase_lists>}}},
        {"vclips", {{"vclip", vclip_layout(), take_vclip, give_vclips}}},
        {"metadata", {{"database", command("metadata_set"), take_metadata, give_metadata}}},
        {"userdict", {{"entry", command("userdict_set"), take_text, give_texts}}},
    };
    return groups;
}

} // namespace simulator
