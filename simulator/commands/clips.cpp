// Clips: made, changed, renamed, deleted and asked for.
#include <simulator/commands/clips_p.h>

#include <simulator/commands/channels_p.h>
#include <simulator/commands/clip_info_p.h>
#include <simulator/commands/cues_p.h>
#include <simulator/commands/machine_p.h>
#include <simulator/commands/running_p.h>
#include <simulator/commands/store_changes_p.h>
#include <simulator/server_state_p.h>

namespace simulator {

namespace {

// Of what clients note of a clip.
qint64 weight(const Clip& clip)
{
    qint64 sum = 0;
    for (const Element& attribute : clip.attributes)
        if (!attribute.tag.endsWith(QLatin1String("Stamp")) && !attribute.tag.endsWith(QLatin1String("UUID")))
            sum += weight(attribute);
    return sum;
}

Refusal fixed(const Call& call, const QString& name)
{
    return fixed_clip(call.state, name);
}

void tell_disk_space(ServerState& state, Audience& audience)
{
    const quint64 space = available_space(state);
    if (std::exchange(state.told_disk_space, space) != space)
        audience.report("disk_space_changed", {disk_space(state)});
}

// A name may be used again; a UUID never is, or a child might find another clip for its parent.
Refusal create(Call& call, const QString& name, Clip clip)
{
    const QString stamp = decimal(++call.state.last_stamp);
    clip.set_attribute("ContentEditStamp", stamp);
    clip.set_attribute("ClipUUID", ClipStore::uuid_of(name + QLatin1Char('\n') + stamp));
    const QStringList made = call.state.clips.missing_directories(ClipStore::directory_of(name));
    if (Refusal refusal = with_room(call, entry_weight * (1 + made.size()) + weight(clip), [&] {
            return refusal_of(call.state.clips.create_clip(name, std::move(clip)), "clip", name, name);
        }))
        return refusal;
    tell_created_directories(call, made);
    call.report("clip_created", {{"ClipID", name}});
    tell_disk_space(call.state, call.audience);
    return {};
}

// A recording has the timecode that its first field came with.
void note_input_timecode(const ServerState& state, Clip& clip)
{
    const Element input(QStringLiteral("Timecode"), input_timecode(state));
    if (text(input, "Valid") != QLatin1String("true"))
        return;
    change_attributes(
        clip,
        {"ClipAttrChange",
         {{"TimecodeSource", "rectc"},
          {"Frame0Timecode",
           {{"FieldNumber", text(input, "FieldNumber")}, {"DropFrameFlag", text(input, "DropFrameFlag")}}}}});
}

// With a channel, the clip is what that channel records from now on: as long as it is to be at most.
Refusal create_clip(Call& call)
{
    if (call.has("Channel"))
        if (Refusal refusal = not_free(call, call.deck()))
            return refusal;
    const QString name = call.text("ClipID");
    Clip clip;
    clip.length = call.has("Channel") ? 0 : call.number("ClipLength").value_or(0);
    const quint64 fields =
        call.has("Channel") ? 1 : clip.length; // at once; a recording takes more as it goes
    if (fields * field_size > available_space(call.state))
        return refuse(QStringLiteral("the disks are full"));
    clip.attributes.push_back(tracks_of(child(call.arguments, "TrackSet")));
    if (call.has("Channel"))
        note_input_timecode(call.state, clip);
    if (Refusal refusal = create(call, name, std::move(clip)))
        return refusal;
    if (!call.has("Channel"))
        return {};
    const Deck deck = call.deck();
    record(deck, name, call.number("ClipLength").value_or(0));
    tell_changes(deck);
    return {};
}

// The same pictures, seen from another angle.
Refusal create_child_clip(Call& call)
{
    const QString parent_name = call.text("ParentClipID");
    const Clip* parent = call.state.clips.clip(parent_name);
    if (!parent)
        return no_such_clip(parent_name);
    Clip made = *parent;
    const QString parent_uuid = parent->attribute("ClipUUID");
    made.set_attribute("ParentUUID", parent_uuid.isEmpty() ? ClipStore::uuid_of(parent_name) : parent_uuid);
    made.set_attribute("ReadOnly", truth(false));
    if (call.has("Angle"))
        made.set_attribute("Angle", call.text("Angle"));
    return create(call, call.text("ClipID"), std::move(made));
}

Refusal delete_clip(Call& call)
{
    const QString name = call.text("ClipID");
    for (const auto why_not : {fixed, in_use})
        if (Refusal refusal = why_not(call, name))
            return refusal;
    call.state.budget.give(entry_weight + weight(*call.state.clips.clip(name)));
    call.state.clips.delete_clip(name);
    call.report("clip_deleted", {{"ClipID", name}});
    tell_disk_space(call.state, call.audience);
    return {};
}

Refusal rename_clip(Call& call)
{
    const QString from = call.text("FromID"), to = call.text("ToID");
    for (const auto why_not : {fixed, in_use})
        if (Refusal refusal = why_not(call, from))
            return refusal;
    const QStringList made = call.state.clips.missing_directories(ClipStore::directory_of(to));
    if (Refusal refusal = with_room(call, entry_weight * made.size(), [&] {
            return refusal_of(call.state.clips.rename_clip(from, to), "clip", from, to);
        }))
        return refusal;
    tell_created_directories(call, made);
    call.report("clip_deleted", {{"ClipID", from}});
    call.report("clip_created", {{"ClipID", to}});
    return {};
}

Refusal clip_exists(Call& call)
{
    const QString name = call.text("ClipID");
    call.reply("clipexists", {{"ClipID", name}, {"Exists", truth(call.state.clips.has_clip(name))}});
    return {};
}

Refusal modify_clip_attributes(Call& call)
{
    const QString name = call.text("ClipID");
    if (Refusal refusal = fixed(call, name))
        return refusal;
    Clip& clip = *call.state.clips.clip(name);
    Clip changed = clip;
    change_attributes(changed, child(call.arguments, "ClipAttrChange"));
    const quint64 trims =
        static_cast<quint64>(changed.attribute("TrimStart").toUInt()) + changed.attribute("TrimEnd").toUInt();
    if (trims > clip.length)
        return refuse(QStringLiteral("the trims are longer than the clip %1").arg(quoted(name)));
    if (!call.state.budget.take(weight(changed) - weight(clip)))
        return no_room();
    clip = std::move(changed);
    stamp_clip(call.state, name, "MetaEditStamp");
    call.report("clip_changed", {{"ClipID", name}});
    follow_length(call.state, name);
    for (const Deck deck : all_decks(call.state, call.audience))
        if (deck.channel().cue.plays(name))
            tell_changes(deck);
    return {};
}

Refusal get_clip_info(Call& call)
{
    const QString name = call.text("ClipID");
    const Clip* clip = call.state.clips.clip(name);
    if (!clip)
        return no_such_clip(name);
    call.reply("clipinfo", {clip_info(name, *clip, call.state.configuration.effective("VideoStandard"))});
    return {};
}

// A list of tokens within brackets, which are tokens too.
QStringList bracketed(const QStringList& tokens)
{
    return QStringList(QStringLiteral("(")) + tokens + QStringList(QStringLiteral(")"));
}

// How the clip's file lies on the disks. Of a trimmed clip a stretch of its file is used; one that is being
// recorded has a file that grows, as long as it is by now. All numbers are bytes.
Refusal get_volatile_file_info(Call& call)
{
    const QString name = call.text("ClipID");
    const Clip* clip = call.state.clips.clip(name);
    if (!clip)
        return no_such_clip(name);
    const auto bytes = [](quint64 fields) { return decimal(fields * field_size); };
    QStringList element = bracketed({"file", "/video/" + name + ".mxf"});
    if (is_recorded(call.state, name))
        element = bracketed(QStringList{"grow", bytes(clip->length)} + element);
    if (clip->played_length() != clip->length)
        element = bracketed(
            QStringList{"limited", bytes(clip->played_length()), "false"} +
            bracketed(QStringList{"offset", bytes(clip->attribute("TrimStart").toUInt())} + element));
    std::vector<Element> keys;
    for (const QString& token : bracketed(QStringList("clip") + element))
        keys.push_back({"Key", token});
    call.reply("volatile_file_info", {{"KeyList", keys}});
    return {};
}

} // namespace

Refusal fixed_clip(const ServerState& state, const QString& name)
{
    const Clip* clip = state.clips.clip(name);
    if (!clip)
        return no_such_clip(name);
    return clip->attribute("ReadOnly") == QLatin1String("true")
               ? refuse(QStringLiteral("the clip %1 is read-only").arg(quoted(name)))
               : Refusal();
}

void tell_written(ServerState& state, Audience& audience, const QString& clip)
{
    stamp_clip(state, clip, "ContentEditStamp");
    audience.report("clip_changed", {{"ClipID", clip}});
    tell_disk_space(state, audience);
}

quint32 first_field(const Clip& clip)
{
    const QString source = clip.attribute("TimecodeSource");
    const QLatin1String tag(source == QLatin1String("striped") ? "StripeTimecode"
                            : source == QLatin1String("rectc") ? "Frame0Timecode"
                                                               : "");
    for (const Element& attribute : clip.attributes)
        if (attribute.tag == tag)
            return static_cast<quint32>(text(attribute, "FieldNumber").toInt()) +
                   clip.attribute("TrimStart").toUInt();
    return 0;
}

void stamp_clip(ServerState& state, const QString& clip, const char* tag)
{
    if (Clip* found = state.clips.clip(clip))
        found->set_attribute(tag, decimal(++state.last_stamp));
}

CommandRows clip_commands()
{
    return {
        {"create_clip", create_clip},     {"create_child_clip", create_child_clip},
        {"delete_clip", delete_clip},     {"rename_clip", rename_clip},
        {"clip_exists", clip_exists},     {"modify_clip_attributes", modify_clip_attributes},
        {"get_clip_info", get_clip_info}, {"get_volatile_file_info", get_volatile_file_info},
    };
}

} // namespace simulator
