// The kinds of entries of a state file, in the protocol's own words wherever it has one.
#include <simulator/state_forms_p.h>

#include <simulator/server_state_p.h>

#include <algorithm>
#include <deque>

namespace simulator {

namespace {

using Put = std::function<void(std::vector<Element>)>;

// Tags and records that the protocol does not have; here until the program ends, as layouts point at them.
Tag& own_tag(const char* name, Kind kind)
{
    static std::deque<Tag> tags;
    return tags.emplace_back(Tag{QLatin1String(name), kind});
}
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

const Tag* tag(const char* name)
{
    return Catalogue::get().tag(QLatin1String(name));
}
Field required(const char* name)
{
    return {tag(name), false};
}
Field optional(const char* name)
{
    return {tag(name), true};
}
Field optional(const Tag& tag)
{
    return {&tag, true};
}

Layout command(const char* name)
{
    return *Catalogue::get().command(QLatin1String(name));
}
Layout record(const char* name)
{
    return *tag(name)->record;
}

Refusal taken(bool has_room)
{
    return has_room ? Refusal() : no_room();
}

Refusal twice(const QString& name)
{
    return refuse(QStringLiteral("%1 is there twice").arg(quoted(name)));
}

Refusal no_name(const char* what)
{
    return refuse(QStringLiteral("%1 needs a name").arg(QLatin1String(what)));
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

unsigned track_bits(const Element& set)
{
    unsigned bits = 0;
    for (const Element& member : set.children)
        bits |= 1u << Catalogue::get().value("TrackType", member.text);
    return bits;
}

Element track_set(const char* name, unsigned bits)
{
    std::vector<Element> set;
    const QStringList& names = *tag("TrackType")->names;
    for (int i = 0; i < names.size(); ++i)
        if (bits >> i & 1)
            set.push_back({"TrackType", names[i]});
    return {QLatin1String(name), std::move(set)};
}

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

// Configuration.

Refusal take_item(ServerState& state, const Element& entry)
{
    const QString name = text(entry, "ConfigurationItemName"), value = text(entry, "ConfigurationItemValue");
    ConfigurationItem* item = state.configuration.find(name);
    if (!item)
        return refuse(QStringLiteral("no such configuration item %1").arg(quoted(name)));
    if (!item->allows(value))
        return refuse(QStringLiteral("%1 cannot be set to %2").arg(name, quoted(value)));
    item->save(value);
    item->effective = value;
    return {};
}

// What nobody has changed is not the state's.
void give_items(const ServerState& state, const Put& put)
{
    const Configuration fresh(state.settings);
    const auto& items = state.configuration.items();
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i].saved != fresh.items()[i].saved)
            put({{"ConfigurationItemName", items[i].name}, {"ConfigurationItemValue", items[i].saved}});
}

// The machine.

Refusal take_temperature(ServerState& state, const Element& entry)
{
    state.machine.temperature = *number(entry, "Temperature10");
    return {};
}

void give_temperature(const ServerState& state, const Put& put)
{
    put({{"Temperature10", decimal(state.machine.temperature)}});
}

Refusal take_disk(ServerState& state, const Element& entry)
{
    state.machine.disk_size = text(entry, "TotalDiskSpace").toULongLong();
    return {};
}

void give_disk(const ServerState& state, const Put& put)
{
    put({{"TotalDiskSpace", decimal(state.machine.disk_size)}});
}

// The last stamp, which may have been that of a clip that is gone: none is given twice.
Refusal take_stamp(ServerState& state, const Element& entry)
{
    state.last_stamp = std::max(state.last_stamp, text(entry, "ContentEditStamp").toULongLong());
    return {};
}

void give_stamp(const ServerState& state, const Put& put)
{
    put({{"ContentEditStamp", decimal(state.last_stamp)}});
}

// The fields of a record come in the order in which the server keeps them.
Refusal take_alert(ServerState& state, const Element& entry)
{
    const QString name = text(entry, "AlertName");
    if (name.isEmpty())
        return no_name("an alert");
    return state.machine.alerts.emplace(name, entry.children).second ? Refusal() : twice(name);
}

void give_alerts(const ServerState& state, const Put& put)
{
    for (const auto& [name, alert] : state.machine.alerts)
        put(alert);
}

Melts& melts_of(ServerState& state, const Element& entry)
{
    const QString client = text(entry, "MeltClientID");
    Melts& melts = state.machine.melts[client.toUInt()];
    if (melts.flags.tag.isEmpty())
        melts.flags = {"MeltFlags", {{"MeltClientID", client}}};
    return melts;
}

Refusal take_melt_flags(ServerState& state, const Element& entry)
{
    melts_of(state, entry).flags = entry;
    return {};
}

void give_melt_flags(const ServerState& state, const Put& put)
{
    for (const auto& [client, melts] : state.machine.melts)
        put(melts.flags.children);
}

Refusal take_melt_item(ServerState& state, const Element& entry)
{
    melts_of(state, entry).items.push_back(entry);
    return {};
}

void give_melt_items(const ServerState& state, const Put& put)
{
    for (const auto& [client, melts] : state.machine.melts)
        for (const Element& item : melts.items)
            put(item.children);
}

Refusal take_step(ServerState& state, const Element& entry)
{
    state.start_script.push_back(
        {text(entry, "step"), text(entry, "step_desc"), text(entry, "fields").toULongLong()});
    return {};
}

void give_steps(const ServerState& state, const Put& put)
{
    for (const StartStep& step : state.start_script)
        put({{"step", step.name}, {"step_desc", step.description}, {"fields", decimal(step.fields)}});
}

void clear_nothing(ServerState&) {}

} // namespace

const std::vector<StateGroup>& state_groups()
{
    static const std::vector<StateGroup> groups = {
        {"clips",
         [](ServerState& state) { state.clips = {}; },
         {{"directory",
           {QStringLiteral("directory"), {required("DirectoryName")}},
           take_directory,
           give_directories},
          {"clip", clip_layout(), take_clip, give_clips}}},
        {"play_lists",
         clear_nothing,
         {{"play_list", list_layout("play_list", "ListID", "ListElements", "ListElement"),
           take_list<&ServerState::play_lists>, give_lists<&ServerState::play_lists>}}},
        {"chase_lists",
         clear_nothing,
         {{"chase_list", list_layout("chase_list", "ChaseID", "ChaseElements", "ChaseElement"),
           take_list<&ServerState::chase_lists>, give_lists<&ServerState::chase_lists>}}},
        {"vclips", clear_nothing, {{"vclip", vclip_layout(), take_vclip, give_vclips}}},
        {"metadata", clear_nothing, {{"database", command("metadata_set"), take_metadata, give_metadata}}},
        {"userdict", clear_nothing, {{"entry", command("userdict_set"), take_text, give_texts}}},
        {"configuration", clear_nothing, {{"item", command("set_configuration"), take_item, give_items}}},
        {"machine",
         clear_nothing,
         {{"stamp", {QStringLiteral("stamp"), {required("ContentEditStamp")}}, take_stamp, give_stamp},
          {"temperature",
           {QStringLiteral("temperature"), {required("Temperature10")}},
           take_temperature,
           give_temperature},
          {"disk", {QStringLiteral("disk"), {required("TotalDiskSpace")}}, take_disk, give_disk}}},
        {"alerts",
         [](ServerState& state) { state.machine.alerts.clear(); },
         {{"Alert", record("Alert"), take_alert, give_alerts}}},
        {"melts",
         [](ServerState& state) { state.machine.melts.clear(); },
         {{"MeltFlags", record("MeltFlags"), take_melt_flags, give_melt_flags},
          {"MeltItem", record("MeltItem"), take_melt_item, give_melt_items}}},
        {"start",
         [](ServerState& state) { state.start_script.clear(); },
         {{"step",
           {QStringLiteral("step"),
            {{&own_tag("step", Kind::String), false},
             {&own_tag("step_desc", Kind::String), false},
             {&own_tag("fields", Kind::U64), false}}},
           take_step,
           give_steps}}},
    };
    return groups;
}

} // namespace simulator
