// A tag is spelled by its name, in small letters and with dashes, unless the table knows what people say.
#include <skuanctl/spelling.h>

namespace {

struct Row
{
    const char* tag; // or Owner.Tag, which goes before
    const char* option;
    const char* placeholder;
};

const Row rows[] = {
    {"Angle", "", "ANGLE"},
    {"AutoEE", "auto", ""},
    {"BlackOnCue", "black", ""},
    {"Channel", "", "CHANNEL"},
    {"ChannelSet", "channels", "CHANNELS"},
    {"ChaseElementAtEnd", "end", ""},
    {"ChaseFromID", "", "FROM"},
    {"ChaseID", "", "CHASE"},
    {"ChaseIndex", "", "INDEX"},
    {"ChaseToID", "", "TO"},
    {"ClipAttrChange.KeyList", "remove", "KEY"},
    {"ClipAttrChange.MetadataList", "metadata", "KEY=VALUE"},
    {"ClipID", "clip", "CLIP"},
    {"ClipLength", "length", "LENGTH"},
    {"ClipPosition", "out", "POSITION"},
    {"ClipScope", "vclip", ""},
    {"ClipStartOffset", "offset", "FIELDS"},
    {"ConfigurationItemAllowedValues", "allowed", ""},
    {"ConfigurationItemBootValue", "boot", ""},
    {"ConfigurationItemEffectiveValue", "value", ""},
    {"ConfigurationItemName", "name", "NAME"},
    {"ConfigurationItemRequiresReboot", "reboot", ""},
    {"ConfigurationItemSavedValue", "saved", ""},
    {"ConfigurationItemValue", "", "VALUE"},
    {"ContentID", "clip", "CLIP"},
    {"DebugString", "", "TEXT"},
    {"DirectoryName", "", "DIRECTORY"},
    {"FollowSpeed", "follow", ""},
    {"Frame0Timecode.DropFrameFlag", "frame0-drop", ""},
    {"Frame0Timecode.FieldNumber", "frame0", "FIELD"},
    {"FromDir", "", "FROM"},
    {"FromID", "", "FROM"},
    {"GotoPosition", "at", "POSITION"},
    {"JogDistance", "jog", "DISTANCE"},
    {"Key", "", "KEY"},
    {"KeyList", "", "KEY"},
    {"ListElementAtEnd", "end", ""},
    {"ListElementAtStart", "start", ""},
    {"ListFromID", "", "FROM"},
    {"ListID", "", "LIST"},
    {"ListIndex", "", "INDEX"},
    {"ListPlayMode", "mode", "MODE"},
    {"ListToID", "", "TO"},
    {"LogClient", "client", "NAME"},
    {"LogError", "error", ""},
    {"LogFilename", "file", "FILE"},
    {"LogLine", "line", "N"},
    {"Loop", "", "LOOP"},
    {"LoopIn", "", "POSITION"},
    {"LoopOut", "", "POSITION"},
    {"MetadataDatabase", "", "DATABASE"},
    {"MetadataList", "", "KEY=VALUE"},
    {"MetadataPrefix", "prefix", "PREFIX"},
    {"ParentClipID", "", "PARENT"},
    {"PlayOrRecord", "", "play|record"},
    {"PrecueCondition", "when", ""},
    {"SonyEditMask", "", "MASK"},
    {"StealClient", "client", "NAME"},
    {"StripeTimecode.DropFrameFlag", "stripe-drop", ""},
    {"StripeTimecode.FieldNumber", "stripe", "FIELD"},
    {"StripeTimecode.Valid", "stripe-valid", ""},
    {"StripeTimecode.VideoStandard", "stripe-standard", ""},
    {"TcStartTrigger", "trigger", "FIELD"},
    {"TimeDelay", "delay", "FIELDS"},
    {"ToDir", "", "TO"},
    {"ToID", "", "TO"},
    {"TrackAttrVector", "track-trim", "TRACK=FIELDS"},
    {"TrackSet", "tracks", "TRACK,TRACK"},
    {"TransitionDuration", "duration", "FIELDS"},
    {"TransitionType", "transition", ""},
    {"VClipDistance", "", "DISTANCE"},
    {"VClipID", "vclip", "VCLIP"},
    {"VClipPosition", "at", "POSITION"},
    {"Value", "", "VALUE"},
    {"export_add.ClipPosition", "at", "POSITION"},
    {"vclip_add_segment.ClipPosition", "", "FROM"},
    {"vclip_add_segment.VClipPosition", "", "TO"},
};

const Row* find(const QString& name)
{
    for (const Row& row : rows)
        if (name == QLatin1String(row.tag))
            return &row;
    return nullptr;
}

/// "TrimStart" becomes "trim-start", "ID8" "id8".
QString with_dashes(const QString& name)
{
    QString text;
    for (int i = 0; i < name.size(); ++i) {
        if (i > 0 && name[i].isUpper() && name[i - 1].isLower())
            text += QLatin1Char('-');
        text += name[i].toLower();
    }
    return text;
}

/// Of an enumeration of a few names, these; else what kind of value it is.
QString placeholder(const Tag& tag)
{
    constexpr int few = 4;
    switch (tag.kind) {
    case Kind::flag:
        return {};
    case Kind::boolean:
        return QStringLiteral("true|false");
    case Kind::enumeration:
        return tag.names.size() <= few ? tag.names.join(QLatin1Char('|')) : tag.name.toUpper();
    case Kind::speed:
        return QStringLiteral("SPEED");
    case Kind::string:
        return QStringLiteral("TEXT");
    default:
        return QStringLiteral("N");
    }
}

} // namespace

Spelling spelling_of(const Tag& tag, const QString& owner)
{
    const Row* row = find(owner + QLatin1Char('.') + tag.name);
    row = row ? row : find(tag.name);
    const QString option = row ? QLatin1String(row->option) : QString();
    const QString shown = row ? QLatin1String(row->placeholder) : QString();
    return {option.isEmpty() ? with_dashes(tag.name) : option, shown.isEmpty() ? placeholder(tag) : shown};
}
